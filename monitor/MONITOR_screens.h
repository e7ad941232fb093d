// The monitor's window, its prompts and its print.
#pragma once

#include "monitor/MONITOR.h"

#include <windows.h>

inline constexpr char MONITOR_CLASS[] = "MONITOR";

// The window's procedure.
LRESULT CALLBACK MONITORPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// Opens the monitor, or brings the open one forward.
void open_monitor(HWND owner);

// Rewrites an item of the window's settings menu from the record and saves that setting.
void update_com_menu(HWND window, MONITOR_ITEM item);

// The settings' prompts, all of DLG_MON_SETTING. They return 1 when a choice was stored.
INT_PTR CALLBACK PORTPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK BAUDRATEPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK DATABITSPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK STOPBITSPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK PARITYPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK XONPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK FUNCPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK SPECIALPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK TRANSCRPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// The about box.
INT_PTR CALLBACK MONABOUTPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// Asks for a printer and prints the whole list there.
void print_captured_text(HWND owner);
