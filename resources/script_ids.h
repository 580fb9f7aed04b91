// Numbers of the script window's menu commands, shared by the resource
// script and the code.
#pragma once

#define IDM_SCRIPT_NEW 500
#define IDM_SCRIPT_OPEN 502
#define IDM_SCRIPT_SAVE 505
#define IDM_SCRIPT_SAVEAS 506
#define IDM_SCRIPT_PRINT 508
#define IDM_SCRIPT_HIDE 509
#define IDM_SCRIPT_UNDO 510
#define IDM_SCRIPT_CUT 511
#define IDM_SCRIPT_COPY 512
#define IDM_SCRIPT_PASTE 513
#define IDM_SCRIPT_DELETE 514
#define IDM_SCRIPT_EXECUTION 571
