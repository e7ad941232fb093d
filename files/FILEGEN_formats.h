// The formats of lookup and data files.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

inline constexpr std::size_t LINE_LIMIT = 251; // characters of a line; a longer one becomes several records

// A file read whole, from the front.
struct TEXT_SOURCE {
    std::string_view bytes;
    std::size_t position = 0;
};

// The next line, cut at its end; at most `str_size` bytes. CR, LF and any two of them are one line end. 0 at
// the end of the file, else 1.
int read_line(TEXT_SOURCE& source, std::string& input_str, std::size_t str_size);

// Adds every byte of a text to an 8-bit sum.
void byte_checksum(std::string_view byte_str, std::uint8_t* checksum);
