// The monitor's window.
#pragma once

#include <windows.h>

inline constexpr char MONITOR_CLASS[] = "MONITOR";

// The window's procedure.
LRESULT CALLBACK MONITORPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// Opens the monitor, or brings the open one forward.
void open_monitor(HWND owner);
