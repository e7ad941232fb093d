// The main window: its class, its commands, its title and its size.
#pragma once

#include <windows.h>

// The last activation told: whether the program is the active application.
extern bool tolvan_app_active;

extern "C" __declspec(dllexport) LRESULT CALLBACK
    MAINPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// Registers the classes of the main window and of the monitor.
void register_window_classes();

// Creates the main window with its toolbar, hidden, and stores it in hwndmain. False when the system refuses.
bool create_main_window();

// Gives the main window its saved size, and saves the one that it has. A minimised window saves the size that
// it would be restored to.
void read_mainwindow_size();
void write_mainwindow_size();
