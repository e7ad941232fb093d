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

// Programming window
#define IDC_SOF_TEXT 1201
#define IDC_SOF_DELAY 1202
#define IDC_EOF_TEXT 1203
#define IDC_EOF_DELAY 1204
#define IDC_GLOBAL_OPTIONS 1205
#define IDC_RECEIVED_FILES_ONLY 1206
#define IDC_ALLOW_APPEND 1207
#define IDC_AUTO_ALPHA 1208
#define IDC_FIELD_LIST 1209
#define IDC_EDIT_FIELD 1210
#define IDC_INSERT_FIELD 1211
#define IDC_DELETE_FIELD 1212

// Global Data Options
#define IDC_GLOBAL_COMPARE 1231
#define IDC_GLOBAL_INCREMENT 1232
#define IDC_GLOBAL_AMOUNT 1233
#define IDC_GLOBAL_DUP_WARNING 1234
#define IDC_GLOBAL_FIELD_ONE 1235
#define IDC_GLOBAL_FIELD_TWO 1236
#define IDC_GLOBAL_RESULT 1237
#define IDC_GLOBAL_ADD 1238 // the actions in the order of the operators
#define IDC_GLOBAL_SUBTRACT 1239
#define IDC_GLOBAL_MULTIPLY 1240
#define IDC_GLOBAL_DIVIDE 1241

// Bar Code Types; its Exit button is IDOK
#define IDC_BAR_ALL 1251
#define IDC_BAR_CODE39 1252
#define IDC_BAR_UPC_A 1253
#define IDC_BAR_UPC_E 1254
#define IDC_BAR_EAN13 1255
#define IDC_BAR_EAN8 1256
#define IDC_BAR_I2OF5 1257
#define IDC_BAR_CODABAR 1258
#define IDC_BAR_CODE128 1259
#define IDC_BAR_CODE93 1260
#define IDC_BAR_MSI_PLESSEY 1261
#define IDC_BAR_CODE11 1262

// Special ASCII Characters; its Done button is IDOK
#define IDC_SPECIAL_TEXT 1271
#define IDC_SPECIAL_LIST 1272
#define IDC_SPECIAL_ADD 1273

// Field Definition (from 1301)

// Lookup Choice (from 1401)

// Lookup Table Definition (from 1411)

// Lookup File Definition (from 1441)
