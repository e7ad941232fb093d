// The about box.
#pragma once

#include <windows.h>

INT_PTR CALLBACK TolvanABOUTPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
