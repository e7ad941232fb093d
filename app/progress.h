// The progress box: modeless, and drawn at once, as nobody pumps messages while it is open.
#pragma once

#include <windows.h>

// The box's dialog procedure; its parameter is a STATUS_MODE.
INT_PTR CALLBACK STATUSPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam);
