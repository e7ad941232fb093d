// The system's file dialogs, as every editor uses them.
#pragma once

#include <windows.h>

#include <span>
#include <string>

struct FILE_FILTER {
    const char* label;
    const char* pattern;
};

struct FILE_DIALOG {
    HWND owner = nullptr;
    std::span<const FILE_FILTER> filters;
    const char* title = nullptr;      // nullptr: the system's own
    std::string name;                 // proposed name; then the chosen path
    std::string* directory = nullptr; // initial folder; the chosen file's folder is stored back into it
    unsigned long filter_index = 1;   // counts from 1; then the chosen one
};

// Both return false when the operator cancels. Opening asks for a file that exists.
bool ask_open_name(FILE_DIALOG& dialog);

// Saving asks before it overwrites. A path without any '.' gets `default_extension` (may be empty); when a
// file of the name so made exists, that is asked about too.
bool ask_save_name(FILE_DIALOG& dialog, const std::string& default_extension);
