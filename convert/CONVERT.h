// Files of the earlier Quendal model. Their layouts are not known, so none is converted: the operator is told
// so, and nothing is changed.
#pragma once

#include <cstdint>
#include <string>

// All return 0 (reported).
int open_quendal_program_file(const std::string& file_name);
int open_quendal_setup_file(const std::string& file_name);
std::int64_t read_quendal_lookup_sys_file(const std::string& file_name);

// Set by all of them. A screen that has words of its own for a file that was not read clears it before it
// opens one, and says no more where it is set.
extern bool quendal_file_refused;
