/* Ids of the Colour dialog: its template and its controls.  Read by the
 * resource compiler and by C++ alike, so #defines only. */
#ifndef VLCORE_COLOUR_IDS_H
#define VLCORE_COLOUR_IDS_H

#define IDD_COLOR 32002

#define IDC_COLOR_NAME 101
#define IDC_COLOR_LIST 103
#define IDC_COLOR_EDIT 110
#define IDC_COLOR_UPDATE 111
#define IDC_COLOR_ADD 112
#define IDC_COLOR_DELETE 113
#define IDC_COLOR_RED 115
#define IDC_COLOR_GREEN 116
#define IDC_COLOR_BLUE 117
#define IDC_COLOR_SAMPLE 150
#define IDC_COLOR_TYPE_DEFAULT 32004
#define IDC_COLOR_TYPE_PURE 32005
#define IDC_COLOR_TYPE_MONO 32006
#define IDC_COLOR_LABEL 65535

/* The question after an edit confirmed with OK. */
#define IDS_COLOR_SAVE_TITLE 21000
#define IDS_COLOR_SAVE_TEXT 21010

#endif
