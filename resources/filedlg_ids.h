/* Numbers of the file dialogs' templates and of the library's own controls
 * in them; the other controls keep the platform's standard numbers. */
#ifndef VLCORE_FILEDLG_IDS_H
#define VLCORE_FILEDLG_IDS_H

#define IDD_FILE_OPEN 3000
#define IDD_FILE_SAVE 3001
#define IDD_FILE_MULTI 3002
#define IDD_FILE_EXPORT 3003
#define IDD_EXPLORER_SAVE 400
#define IDD_EXPLORER_OPEN 4533
#define IDD_EXPLORER_EXPORT 4534

#define IDC_FD_PUSH 101
#define IDC_FD_COMMENT 103
#define IDC_FD_SHOW_INFO 104
#define IDC_FD_INCLUDE_HEADER 1001
#define IDC_FD_EXPORT_SECTION 1002
#define IDC_FD_SEPARATOR 1003
#define IDC_FD_FILES_TO_OPEN 1537
#define IDC_FD_ADD_FILE 1538
#define IDC_FD_REMOVE 1539
#define IDC_FD_OPTION 3004
#define IDC_FD_PARTIAL_IMPORT 3007
#define IDC_FD_COMMENTS_LABEL 4537

/* The platform's standard controls of a file dialog. */
#define IDC_FD_HELP 1038
#define IDC_FD_READ_ONLY 1040
#define IDC_FD_DIRECTORY 1088
#define IDC_FD_NAME_LABEL 1090
#define IDC_FD_TYPE_LABEL 1089
#define IDC_FD_DRIVE_LABEL 1091
#define IDC_FD_FILES 1120
#define IDC_FD_DIRECTORIES 1121
#define IDC_FD_TYPES 1136
#define IDC_FD_DRIVES 1137
#define IDC_FD_NAME 1152

#endif
