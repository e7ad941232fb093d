// The list of fields as the programming window and the field editor work on it.
#pragma once

#include "program/Prog.h"

#include <list>
#include <string>
#include <vector>

using FIELD_HANDLE = std::list<FIELD_DEFINITION>::iterator;

extern int field_list_selection; // the selected row, from 0; the row behind the last field is the end row
extern bool new_field;           // the selected field was just inserted and not saved yet

// The field of the selected row, looked up in the list as it is now; the list's end() on the end row.
FIELD_HANDLE current_handle();

// Inserts a field of defaults before the selected row and selects it as a new field. False, and nothing
// happens, when there are MAX_FIELDS already.
bool insert_field();

// Removes the selected field, if there is one; the row stays selected.
void delete_field();

// One row of the field list for each field, columns parted by tabs, and the end row.
std::vector<std::string> field_list_rows();

// Sets the global data options from the fields' flags, `reset` clearing them first; without it, options that
// no field carries keep their values. A field that receives lookup data clears no_lookup_target.
void derive_global_options(bool reset);

// What the controls of the field editor hold.
struct FIELD_EDITS {
    FIELD_DEFINITION field; // in stored form; of a place that does not fit, the lower byte
    // As typed:
    unsigned start_row = 0;
    unsigned start_col = 0;
    unsigned end_row = 0;
    unsigned end_col = 0;
    unsigned max_input = 0;
    unsigned min_input = 0;
    std::string prompt;     // escaped text
    std::string input_mask; // escaped text
};

// The first check that the edits fail.
EDIT_FAULT find_field_fault(const FIELD_EDITS& edits);

// Replaces the selected field by `edited`, a copy of it with the edits in it, notes its lookup definition as
// the one last edited, and marks the program changed. Nothing happens on the end row.
void store_field(const FIELD_DEFINITION& edited);
