// Controls of the dialogs.
#pragma once

#ifndef IDC_STATIC
#define IDC_STATIC (-1) // labels and frames
#endif

// Progress box
#define IDC_STATUS_TEXT 1001
#define IDC_STATUS_BAR 1002

// Communication Setup
#define IDC_COMM_INTERFACE 1101
#define IDC_COMM_PORT 1102
#define IDC_COMM_BAUDRATE 1103
#define IDC_COMM_DATABITS 1104
#define IDC_COMM_STOPBITS 1105
#define IDC_COMM_PARITY 1106
#define IDC_COMM_FLOW 1107
#define IDC_COMM_PROTOCOL 1108
#define IDC_COMM_RETRIES 1109
#define IDC_COMM_RETRIES_SPIN 1110
#define IDC_COMM_FILEMODE 1111
#define IDC_COMM_DIALMETHOD 1112
#define IDC_COMM_MODEM_INIT 1113
#define IDC_COMM_DEFAULTS 1114

// Phone number prompt
#define IDC_PHONE_NUMBER 1121

// Send/Receive screen; its Send/Receive button is IDOK, its Close button IDCANCEL
#define IDC_SR_INTERFACE 1131
#define IDC_SR_BAUDRATE 1132
#define IDC_SR_LINE 1133
#define IDC_SR_PORT 1134
#define IDC_SR_PROTOCOL 1135
#define IDC_SR_FILEMODE 1136
#define IDC_SR_FILE 1137
#define IDC_SR_BROWSE 1138
#define IDC_SR_LABEL 1140 // the first of six rows
#define IDC_SR_VALUE 1150 // the first of six rows

// Starting-number prompt
#define IDC_EXTENSION 1161
#define IDC_EXTENSION_SPIN 1162

// Programming window (from 1201)

// Global Data Options (from 1231)

// Bar Code Types (from 1251)

// Special ASCII Characters (from 1271)

// Field Definition (from 1301)

// Lookup Choice
#define IDC_CHOICE_FILE 1401
#define IDC_CHOICE_TABLE 1402

// Lookup Table Definition and Lookup File Definition
#define IDC_LOOKUP_ACCEPT 1411
#define IDC_LOOKUP_PARTIAL 1412
#define IDC_LOOKUP_MESSAGE 1413
#define IDC_LOOKUP_PREVIEW 1414 // the first of two lines

// Lookup Table Definition
#define IDC_TABLE_ENTRY 1421 // the first of six
#define IDC_TABLE_SCROLL 1427
#define IDC_TABLE_INSERT 1428
#define IDC_TABLE_DELETE 1429
#define IDC_TABLE_ADD 1430

// Lookup File Definition
#define IDC_LOOKUP_OPTIONAL 1441
#define IDC_LOOKUP_BROWSE 1442
#define IDC_LOOKUP_NAME 1443
#define IDC_LOOKUP_FIELDS 1444
#define IDC_LOOKUP_COMPARE 1445
#define IDC_LOOKUP_DISPLAY 1446
#define IDC_LOOKUP_START_ROW 1447
#define IDC_LOOKUP_END_ROW 1448
#define IDC_LOOKUP_ADD_DISPLAY 1449
#define IDC_LOOKUP_AUTO_ADVANCE 1450
#define IDC_LOOKUP_TARGET 1451
#define IDC_LOOKUP_NO_VIEW 1452
