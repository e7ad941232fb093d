// The program file (".PGT").
#pragma once

#include "app/TolvanP.h"

#include <string>

// Opens a program file, or one that the operator picks out of a library, into the empty program. Returns 1;
// -1 when the checksum is wrong (reported, the fields stay loaded); 0 when the file cannot be opened
// (reported) or is not a program; or what the library or earlier-model reader returned.
int open_program_file(WINDOW owner, const std::string& file_name);

// Runs the save checks, brings counts and flags up to date and writes the file. Returns 1, or 0 when a check
// fails, the file cannot be written or memory runs out (all reported; an old file is then as it was). A save
// refused after the flag pass has already rewritten flags, masks and conditions.
int save_program_file(const std::string& file_name);
