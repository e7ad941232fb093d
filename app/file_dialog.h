// The system's file dialogs, as every editor uses them.
#pragma once

#include <windows.h>

#include <functional>
#include <span>
#include <string>

struct FILE_FILTER {
    const char* label;
    const char* pattern;
};

struct FILE_DIALOG {
    HWND owner = nullptr;
    std::span<const FILE_FILTER> filters = {};
    const char* title = nullptr;      // nullptr: the system's own
    std::string name = {};            // proposed name; then the chosen path
    std::string* directory = nullptr; // initial folder; the chosen file's folder is stored back into it
    unsigned long filter_index = 1;   // counts from 1; then the chosen one
    bool file_must_exist = true;      // opening only
    bool asks_to_replace = true;      // saving only: whether a file that exists is asked about
    // Else the chosen file's folder becomes the process's current one.
    bool keeps_current_folder = false;
};

// All return false when the operator cancels.
bool ask_open_name(FILE_DIALOG& dialog);

// Saving asks before it overwrites. A path without any '.' gets `default_extension` (may be empty); when a
// file of the name so made exists, that is asked about too, and a No leads back to the dialog.
bool ask_save_name(FILE_DIALOG& dialog, const std::string& default_extension);

// The same with another rule for the name: `completed_name` gives the path to use for what was chosen.
bool ask_save_name(FILE_DIALOG& dialog,
                   const std::function<std::string(const FILE_DIALOG& chosen)>& completed_name);
