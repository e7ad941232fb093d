// The view of the captured text in the monitor's window: its rows and its scroll bar.
#pragma once

#include <windows.h>

// In which 40 columns and 17 rows fit.
SIZE usual_window_size();

// A window of the usual height shows the usual number of rows, if it holds them whole; a taller one shows as
// many as it holds.
void fit_rows(HWND hwnd);

void paint_view(HWND hwnd);

// Has what changed in the view drawn when the messages before it are done.
void show_changes(HWND hwnd);

void show_scroll_bar(HWND hwnd);

// Moves the view as the scroll bar asks (SB_LINEUP ...), by a key, or by a turn of the mouse's wheel.
void scroll_view(HWND hwnd, int request);
void scroll_by_key(HWND hwnd, WPARAM key);
void scroll_by_wheel(HWND hwnd, int turned);
