// Commands, dialogs and other resources. Command identifiers double as identifiers of their tooltip strings.
#pragma once

#define ICON_MAIN 1
#define MENU_MAIN 1
#define MENU_SENDRECEIVE 2
#define MENU_MONITOR 3
#define MENU_FILE 4 // of the programming window and the librarian
#define MENU_EDIT 5 // the context menu of escaped-text edits
#define MENU_FILE_EDITOR 6
#define BITMAP_MAIN_TOOLBAR 31
#define BITMAP_FILE_TOOLBAR 32
#define ID_MAIN_TOOLBAR 17
#define ID_FILE_TOOLBAR 18

// Commands of the main window
#define CMD_PROGRAMMING 101
#define CMD_LOOKUP_EDITOR 102
#define CMD_DATA_EDITOR 103
#define CMD_LIBRARIAN 105
#define CMD_EXIT 106
#define CMD_COMM_SETUP 107
#define CMD_SEND 108
#define CMD_RECEIVE 109
#define CMD_AUTO_RECEIVE 110
#define CMD_NON_PORTABLE 111
#define CMD_WEDGE 112
#define CMD_SETUP_TRANSMIT 114
#define CMD_SETUP_OTHER 115
#define CMD_OPEN_SETUP 116
#define CMD_SAVE_SETUP 117
#define CMD_RESET_SETUP 118
#define CMD_CODE39 119
#define CMD_UPC 120
#define CMD_EAN 121
#define CMD_ADDONS 122
#define CMD_I2OF5 123
#define CMD_CODABAR 124
#define CMD_CODE128 125
#define CMD_CODE93 126
#define CMD_MSI_PLESSEY 127
#define CMD_CODE11 128
#define CMD_TERMCHAR 129
#define CMD_AMBLES 130
#define CMD_BAR_EDIT 131
#define CMD_BAR_BEEPER 132
#define CMD_LASER_CCD 133
#define CMD_BAR_OTHER 134
#define CMD_UPGRADE 135
#define CMD_MONITOR 136
#define CMD_HELP_TOPICS 155
#define CMD_ABOUT 156

// Commands of the programming window and the librarian, whose Exit is CMD_EXIT, and of the file editor, whose
// Close is IDCANCEL
#define CMD_SAVE 152
#define CMD_OPEN 153
#define CMD_NEW 154

// Commands of the context menu of escaped-text edits
#define CMD_UNDO 157
#define CMD_CUT 158
#define CMD_COPY 159
#define CMD_PASTE 160
#define CMD_CLEAR 161
#define CMD_SELECT_ALL 162
#define CMD_SPECIAL_ASCII 163

// Command of the Send/Receive screen's menu
#define CMD_SENDRECEIVE_SETUP 160

// Commands of the monitor, whose Open and Save are CMD_OPEN and CMD_SAVE
#define CMD_MON_CAPTURE 171
#define CMD_MON_PRINT 172
#define CMD_MON_CLOSE 173
#define CMD_MON_ABOUT 174
#define CMD_MON_SETTING 180 // the first of nine, in the order of MONITOR_ITEM

// Dialogs
#define DLG_ABOUT 200
#define DLG_STATUS 201
#define DLG_COMM_SETUP 210
#define DLG_PHONE_NUMBER 211
#define DLG_SEND_RECEIVE 212
#define DLG_EXTENSION 213
#define DLG_PROGRAMMING 220
#define DLG_FIELD 221
#define DLG_GLOBAL_DATA 222
#define DLG_BAR_TYPES 223
#define DLG_SPECIAL 224
#define DLG_LOOKUP_CHOICE 225
#define DLG_LOOKUP_TABLE 226
#define DLG_LOOKUP_FILE 227
#define DLG_CODE39 230
#define DLG_UPC 231
#define DLG_EAN 232
#define DLG_ADDONS 233
#define DLG_I2OF5 234
#define DLG_CODABAR 235
#define DLG_CODE128 236
#define DLG_CODE93 237
#define DLG_MSI_PLESSEY 238
#define DLG_CODE11 239
#define DLG_TERMCHAR 240
#define DLG_AMBLES 241
#define DLG_BAR_EDIT 242
#define DLG_BAR_BEEPER 243
#define DLG_LASER_CCD 244
#define DLG_BAR_OTHER 245
#define DLG_SETUP_TRANSMIT 246
#define DLG_SETUP_OTHER 247
#define DLG_WEDGE 248
#define DLG_NON_PORTABLE 249
#define DLG_FILE_EDITOR 250
#define DLG_REPEAT_ADD 251
#define DLG_REPEAT_INSERT 252
#define DLG_REPEAT_DELETE 253
#define DLG_IMPORT 254
#define DLG_LOOKUP_FORMAT 255
#define DLG_LIBRARIAN 260
#define DLG_EXTRACT 261
#define DLG_MON_SETTING 270
#define DLG_MON_ABOUT 271
