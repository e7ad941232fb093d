// The screens of the librarian.
#pragma once

#include <windows.h>

// The librarian: builds a library from files. Result 1.
INT_PTR CALLBACK LIBRARYPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam);

// The choice of a member; its parameter points to a std::vector<std::string> with the rows. The row chosen,
// or -1.
INT_PTR CALLBACK EXTRACTFILEPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam);
