#include "monitor/MONITOR_screens.h"

LRESULT CALLBACK MONITORPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

void open_monitor(HWND) {}
