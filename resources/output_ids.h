/* Resource and control ids of the output devices: the status dialog. */
#ifndef VLCORE_OUTPUT_IDS_H
#define VLCORE_OUTPUT_IDS_H

#define IDD_STATUS 200
#define IDC_STATUS_TITLE 101
#define IDC_STATUS_PERCENT 201
#define IDC_STATUS_BAR 202
#define IDC_STATUS_PERCENT_SIGN 203
#define IDC_STATUS_CANCEL 204
#define IDC_STATUS_END 205

#endif
