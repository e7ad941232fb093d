// The editor of lookup and data files, and the dialogs of its repetitive edits.
#pragma once

#include <windows.h>

#include <string>

// Runs the editor of a file type (DATA_FILE_EDITED or LOOKUP_FILE_EDITED, see FILEGEN.h) on an empty store,
// which is gone when it closes.
void file_generation(int file_type, HWND hwnd);

// Set by any change to the records or the program name, cleared by a load or a save.
extern bool file_changed_flag;

// The repetitive edits, as dialogs on the store: 1 when the edit was made, as far as memory allowed (the
// operator is told), 0 when it was cancelled.
INT_PTR CALLBACK REPEATADDPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK REPEATINSERTPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK REPEATDELETEPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam);

// The row of the interval list that stands for every n-th record, n from 1.
std::string interval_text(unsigned n);

// The pointer that stands until the mouse moves over a window again.
void show_hourglass();
