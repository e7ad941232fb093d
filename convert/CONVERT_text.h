// Compressed texts of the earlier model's files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

// Reads one field, status byte first, into `dest`. The number of bytes read; -1 when the file has ended
// before it.
int read_compressed_field(std::FILE* file, std::string& dest);

// Expands a field into `dest`, which may be nullptr to measure only. The text's length plus one.
int decompress_string(std::string* dest, std::string_view field);

// Copies `count` bits, the most significant first; bit p is bit 7 - p % 8 of byte p / 8.
void copy_bits(std::uint8_t* dest, std::size_t dest_bit, const std::uint8_t* src, std::size_t src_bit,
               std::size_t count);

// Reads and expands one field. False when the file has ended before it.
bool read_string_data(std::FILE* file, std::string& dest);

// Tables of characters, 0 to 5.
int get_width(int table);                           // bits a code
int is_switch_char(int table, unsigned code);       // the table selected, or 0
int is_escape_char(int table, unsigned code);       // 4, 5, or 0
std::uint8_t expand_char(int table, unsigned code); // 0 when the code has no character
