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
    std::int32_t offset = 0;       // of its value in the row
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

// 1 when the bytes start with a dBase header, else 0.
int is_dbase_file(std::string_view bytes);

// Both import into the store and return the number of records added, or -1 when cancelled or out of memory,
// or 0 after an error (reported; what was added stays).
std::int64_t read_dbase_file(WINDOW owner, TEXT_SOURCE& source);
std::int64_t read_text_ascii_file(WINDOW owner, TEXT_SOURCE& source);
