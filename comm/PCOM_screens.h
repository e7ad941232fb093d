// The screens of the communications menu.
#pragma once

#include <windows.h>

// The Send/Receive screen; opened with a TRANSFER_ACTION as parameter, and with auto_receive_flag set for
// auto receive.
INT_PTR CALLBACK SENDRECEIVEPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam);

// The Upgrade Flash screen, on the Send/Receive screen's template; opened with ACTION_UPGRADE as parameter.
INT_PTR CALLBACK UPGRADEPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam);

// Communication Setup. Result 1 after OK, 0 after Cancel.
INT_PTR CALLBACK SETUPPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam);

// The number to dial; its parameter points to a std::string that holds it. Result 1 with the number updated,
// 0 after Cancel.
INT_PTR CALLBACK PHONENUMPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam);

// The number in the first auto-received file's name. Every ending stores it.
INT_PTR CALLBACK EXTENSIONPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam);

// True while a transfer runs. The main window, asked to close, then asks the transfer to end, and closes
// after it.
bool is_transfer_running();
void request_transfer_end();
