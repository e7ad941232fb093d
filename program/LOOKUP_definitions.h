// What the two definition dialogs share; nobody else needs it.
#pragma once

#include "program/LOOKUP.h"
#include "program/Prog.h"

#include <windows.h>

#include <string>

// Each runs its dialog on the lookup string `text`. A new definition is written by OK even when it was left
// as it was.
bool define_table(std::string& text, HWND owner, bool is_new);
bool define_file(std::string& text, HWND owner, PROGRAM_HEADER& program, bool is_new);

// Shows the message's edit as the portable will show it.
void update_error_display(HWND hDlg, bool is_table);

// True for a notification that tells of the operator's change: a box clicked or a text typed.
bool is_edit(WPARAM notification);

// The controls that both dialogs have.
void fill_shared_controls(HWND hDlg, const LOOKUP_OPTIONS& lookup, bool is_table);
void read_shared_controls(HWND hDlg, LOOKUP_OPTIONS& lookup);
