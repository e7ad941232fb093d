// Library files: whole program, lookup and setup files one behind the other.
#pragma once

#include "app/TolvanP.h"

#include <cstdio>
#include <string>

// 1 when at least one byte stands between the file's position and its end and all of them are NUL, else 0.
// A block transfer pads a file so.
int is_null_padded(std::FILE* file);

// True when a file of this type byte can be a member of a library.
bool is_library_member_type(unsigned char file_type);

// Lets the operator pick a member of the library `name` and leaves it in a temporary file whose path replaces
// `name`. Returns 1; -1 when the operator cancels; 0 when the library is invalid or cannot be opened
// (reported).
int extract_library_file(WINDOW owner, std::string& name);
