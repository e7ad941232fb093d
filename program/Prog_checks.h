// What must hold before a program may be saved.
#pragma once

#include <string>

// 1 and the 1-based number of the first field that overlaps an earlier one on its screen, or 0.
int overlapped_fields(int* field_number);

// True when the lookup data dump target is the field that receives lookup data.
bool CheckLookupDataDumpField();

// The checks on the program as edited; empty when all pass, else the message.
std::string check_fields_before_save();

// Counts the fields and writes the global options into the fields' flags, the increment field's mask and
// its amount. Returns the message of an incomplete option; empty when all is complete.
std::string update_counts_and_flags();
