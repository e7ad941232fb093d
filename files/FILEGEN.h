// Lookup files and data files as their editor opens and saves them.
#pragma once

#include "app/TolvanP.h"

#include <cstdint>
#include <string>

inline constexpr int DATA_FILE_EDITED = 0;   // what the portable has collected
inline constexpr int LOOKUP_FILE_EDITED = 1; // what the portable checks its input against

inline constexpr std::size_t FILE_NAME_LIMIT = 8; // characters of the two names below

extern std::string sys_file_name;     // the file's own name, without folder and extension
extern std::string data_program_name; // of a data file: the program that collected it

// Reads any supported file into the emptied store. The number of records; 0 when nothing could be read; -1
// when a checksum is wrong or memory ran out (the records read so far stay). All failures but a plain 0 are
// reported.
std::int64_t read_edit_file(WINDOW owner, const std::string& file_name, int file_type);

// Saves the store in the format of the file type, asking for a lookup file's. 0 when nothing was written
// (reported, or the operator chose so), below 0 when writing failed, else above 0.
int write_edit_file(WINDOW owner, const std::string& file_name, int file_type);

// "Save Lookup File Choice", which is a dialog: 1 for a system file, 2 for a text, 0 for neither.
inline constexpr int LOOKUP_SYSTEM_FILE = 1;
inline constexpr int LOOKUP_ASCII_FILE = 2;
int choose_lookup_format(WINDOW owner);
