// Import of dBase tables and comma-separated text into the record store: every chosen field of every row
// becomes one record.
#pragma once

#include "app/TolvanP.h"
#include "files/FILEGEN_formats.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

inline constexpr std::size_t IMPORT_NAME_SIZE = 19; // characters: a name is padded with blanks to it

struct FIELD_DESCRIPTOR {
    std::string field_name;
    std::uint8_t field_length = 0; // bytes; of a dBase field
    std::uint8_t import_field = 0; // 1: takes part
};

struct IMPORT_OPTIONS {
    bool strip_lead_spaces = true;
    bool strip_trail_spaces = true;
    bool strip_zeroes = false; // leading ones
    bool strip_trunc = false;  // to 20 characters
};

// "Translate Database File", which is a dialog: sets import_field of each column, and the options. False when
// the operator cancels.
bool choose_import_fields(WINDOW owner, std::vector<FIELD_DESCRIPTOR>& fields, IMPORT_OPTIONS& options);

inline constexpr std::size_t DBASE_HEADER_SIZE = 32; // bytes

// 1 when a file of `size` bytes that starts with these (at least DBASE_HEADER_SIZE, if it has as many) starts
// with a dBase header, else 0.
int is_dbase_file(std::string_view start, std::size_t size);

// Splits a line (without its end) at its commas and returns the number of values, which lie in the line.
//
// A quote means something only where a value starts, up to the next quote. What follows a closing quote
// before the next comma is a value of its own. A comma that ends the line adds a value only when the line
// starts with an empty value and all behind that one are quoted.
std::size_t parse_buffer(std::string_view line, std::vector<std::string_view>& values);

// Both start at the front of the file, import into the store and return the number of records added. An
// error ends the text import with what was added before it (reported). -1 when the operator cancelled, the
// header of the dBase table is cut (not reported), or memory ran out (reported; what was added stays).
std::int64_t read_dbase_file(WINDOW owner, TEXT_SOURCE& source);
std::int64_t read_text_ascii_file(WINDOW owner, TEXT_SOURCE& source);
