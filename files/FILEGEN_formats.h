// The formats of lookup and data files. Readers add to the record store, writers take all of it.
#pragma once

#include "app/TolvanP.h"
#include "app/desktop.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

inline constexpr std::size_t LINE_LIMIT = 251; // characters of a line; a longer one becomes several records
inline constexpr char LOOKUP_FILE_TYPE = 'R';  // type byte of a lookup system file

// An open file read from the front, in large pieces. What is taken lies in the piece at hand: it is gone when
// the source is filled again.
struct TEXT_SOURCE {
    std::FILE* file;
    std::size_t size = 0;     // bytes of the file
    std::size_t position = 0; // bytes taken
    std::string piece;
    std::string_view rest; // of the piece: what is still to be taken
    bool failed = false;   // sticky: the file could not be read to its end
};
TEXT_SOURCE open_source(std::FILE* file);
void rewind_source(TEXT_SOURCE& source);

// Makes `rest` hold at least `wanted` bytes, or all that the file still has.
void fill_source(TEXT_SOURCE& source, std::size_t wanted);

// The next `size` bytes, or those that are left, without filling the source.
std::string_view take_bytes(TEXT_SOURCE& source, std::size_t size);

inline bool is_line_end(char character) {
    return character == '\r' || character == '\n';
}

// The next line, cut at its end; at most `str_size` bytes. CR, LF and any two of them are one line end. 0 at
// the end of the file, else 1.
int read_line(TEXT_SOURCE& source, std::string_view& input_str, std::size_t str_size);

// Appends a text and a line end to a file image.
void write_line(std::string& image, std::string_view output_str);

// Adds every byte of a text to an 8-bit sum.
void byte_checksum(std::string_view byte_str, std::uint8_t* checksum);

// Every remaining line becomes a record. The number of records, or -1 when memory ran out (reported).
std::int64_t read_tolvan_ascii_file(WINDOW owner, TEXT_SOURCE& source);

// Appends every record as a line to a file image.
void write_ascii_file(std::string& image);

// Reads an open lookup system file from its start, with its name. The number of records; 0 when it is none or
// ends too early; -1 when memory ran out or the checksum is wrong (reported; the records stay).
std::int64_t read_lookup_sys_file(WINDOW owner, std::FILE* hfile);

// Saves the store as a lookup system file. 1, or -1 when a record is too long for it (reported) or writing
// failed; an old file is then as it was.
int write_lookup_sys_file(WINDOW owner, const std::string& file_name);

struct BOX_CLOSER {
    void operator()(STATUS_BOX* box) const {
        close_status_box(box);
    }
};

// The progress box of a reader, and when it is shown anew. Telling it each record costs next to nothing.
struct PROGRESS {
    std::unique_ptr<STATUS_BOX, BOX_CLOSER> box;
    std::size_t size; // bytes
    std::size_t next_update = 0;
};
void show_progress(PROGRESS& progress, std::size_t position);
