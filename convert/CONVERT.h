// Files of the earlier Quendal model.
#pragma once

#include <cstdint>
#include <string>

// Read an earlier-model program or setup file into the current records. Return 1 when it was read, else 0
// (reported).
int open_quendal_program_file(const std::string& file_name);
int open_quendal_setup_file(const std::string& file_name);

// Reads an earlier-model lookup file into the record store. The number of records, or 0 (reported).
std::int64_t read_quendal_lookup_sys_file(const std::string& file_name);
