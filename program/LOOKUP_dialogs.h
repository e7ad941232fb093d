// The dialogs that define a field's lookup.
#pragma once

#include "program/Prog.h"

#include <windows.h>

#include <string>

// Each lets the operator define a lookup, starting from the escaped lookup string `text`, and puts the new
// string into it, in normal form. False, and `text` is as it was, when nothing new came back. The file dialog
// also edits "Disable View Lookup" of the program header.
bool get_lookup_str(std::string& text, HWND owner, PROGRAM_HEADER& program); // asks which kind
bool get_lookup_table_string(std::string& text, HWND owner);
bool get_lookup_file_string(std::string& text, HWND owner, PROGRAM_HEADER& program);
