// The controls of the field editor: what they hold of the field, which keys they take, when they are
// disabled, and the help they show.
#pragma once

#include "program/Prog_fields.h"

#include <windows.h>

#include <span>
#include <string>

struct FIELD_CONTROL {
    int id;
    int updown; // beside it, and enabled with it; 0 for none
    WNDPROC filter;
    const char* off_for_types;     // the input types that disable it
    const char* off_for_sources;   // the input sources; nullptr when a new source leaves it as it is
    const char* help;              // of several lines, with '\r' between them
    const char* choices = nullptr; // stand below the help, an empty line between them
};
extern const std::span<const FIELD_CONTROL> FIELD_CONTROLS;

// Gives the controls their keys and limits, and takes the keys back.
void prepare_field_controls(HWND dialog);
void release_field_controls(HWND dialog);

// From the field into its controls, and back into a copy of the selected field.
void fill_controls(HWND dialog, const FIELD_DEFINITION& field);
FIELD_EDITS read_edits(HWND dialog);

// The letter of what is selected. A file may hold a letter that has no entry: then none is selected, and the
// answer is NUL, which is no letter.
char chosen_type(HWND dialog);
char chosen_source(HWND dialog);
void choose_data_type(HWND dialog);

bool is_text_edit(int control); // of escaped text

// Steps the number beside an up-down; the answer is its edit.
int step_number(HWND dialog, int updown, int direction);

// What the operator reads while the control has the focus.
std::string field_control_help(HWND dialog, int control);
