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

// Field Definition; its Done button is IDOK, its Cancel button IDCANCEL
#define IDC_FIELD_TYPE 1301
#define IDC_FIELD_SOURCE 1302
#define IDC_FIELD_FORMAT 1303
#define IDC_FIELD_PROMPT_LABEL 1304
#define IDC_FIELD_PROMPT 1305
#define IDC_FIELD_PATTERN 1306
#define IDC_FIELD_MASK 1307
#define IDC_FIELD_DEFAULT 1308
#define IDC_FIELD_LOOKUP 1309
#define IDC_FIELD_DEFINE 1310
#define IDC_FIELD_PREFIX 1311
#define IDC_FIELD_PREFIX_DELAY 1312
#define IDC_FIELD_SUFFIX 1313
#define IDC_FIELD_SUFFIX_DELAY 1314
#define IDC_FIELD_START_ROW 1315
#define IDC_FIELD_START_ROW_SPIN 1316
#define IDC_FIELD_START_COL 1317
#define IDC_FIELD_START_COL_SPIN 1318
#define IDC_FIELD_END_ROW 1319
#define IDC_FIELD_END_ROW_SPIN 1320
#define IDC_FIELD_END_COL 1321
#define IDC_FIELD_END_COL_SPIN 1322
#define IDC_FIELD_MAX 1323
#define IDC_FIELD_MAX_SPIN 1324
#define IDC_FIELD_MIN 1325
#define IDC_FIELD_MIN_SPIN 1326
#define IDC_FIELD_HEADER 1327
#define IDC_FIELD_NEW_SCREEN 1328
#define IDC_FIELD_REQUIRE 1329
#define IDC_FIELD_AUTO_ADVANCE 1330
#define IDC_FIELD_UPPER_CASE 1331
#define IDC_FIELD_DUPLICATES 1332
#define IDC_FIELD_TRANSMIT 1333
#define IDC_FIELD_CALCULATION 1334
#define IDC_FIELD_TOTAL 1335
#define IDC_FIELD_BARCODE_APPEND 1336
#define IDC_FIELD_BARCODE_ADVANCE 1337
#define IDC_FIELD_BARCODE_TYPES 1338
#define IDC_FIELD_PREVIOUS 1339
#define IDC_FIELD_NEXT 1340
#define IDC_FIELD_HELP 1341
#define IDC_FIELD_DISPLAY 1350 // the first of four lines

// Lookup Choice (from 1401)

// Lookup Table Definition (from 1411)

// Lookup File Definition (from 1441)
