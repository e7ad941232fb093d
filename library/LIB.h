// Library files: whole program, lookup and setup files one behind the other.
#pragma once

#include "app/TolvanP.h"

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>

// How every program, setup and lookup file starts. Bytes that a short file lacks count as 0.
struct FILE_START {
    std::uint32_t length; // the length word
    std::uint8_t type;    // the type byte
};
FILE_START read_file_start(std::FILE* file);

// A type byte, or the letter of a text, in upper case: setup and lookup files are taken with either.
std::uint8_t fold_type(std::uint8_t file_type);

// 1 when at least one byte stands between the file's position and its end and all of them are NUL, else 0.
// A block transfer pads a file so.
int is_null_padded(std::FILE* file);

// True when a program or setup file with this length word fills the whole file, but for NULs behind it.
// Otherwise it may be the first member of a library.
bool fills_file(std::FILE* file, std::uint32_t length);

// True when a file of this type byte can be a member of a library.
bool is_library_member_type(unsigned char file_type);

// Lets the operator pick a member of the library `name` and leaves it in a temporary file whose path replaces
// `name`. Returns 1; -1 when the operator cancels; 0 when the library is invalid or cannot be opened
// (reported).
int extract_library_file(WINDOW owner, std::string& name);

// Lets the operator pick a member of the library `name` and has it read; what was extracted is deleted
// whatever comes of it. Returns what `read` returns or, without a member to read, what extract_library_file
// returned; 0 when the member cannot be opened, which is reported with the text `cannot_open`.
std::int64_t read_library_member(WINDOW owner, std::string name,
                                 const std::function<std::int64_t(std::FILE*)>& read,
                                 const char* cannot_open);
