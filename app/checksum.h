// The 16-bit CRC of the system's files and of XMODEM blocks: polynomial 0x1021, most significant bit first,
// starting at 0, no final XOR.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

inline constexpr std::size_t CHECKSUM_SIZE = 2; // bytes, big-endian

// What a checksum covers and where it stands depends on the kind of file. L is the file's length word.
enum CHECKSUM_TYPE {
    PROGRAM_CHECKSUM = 0, // covers 5 to L-1, stands at L
    SETUP_CHECKSUM = 1,   // covers 0 to L-1, stands at L
    LOOKUP_CHECKSUM = 2,  // covers 0 to 3, 5 to 19 and 22 to L-1, stands at 20; L is the whole file's length
};

// Folds one byte into the running checksum.
void crc_16(std::uint8_t c, std::uint16_t* checksum);

// The same for XMODEM blocks, where the running value is passed by reference.
void crc_update(std::uint8_t byte, std::uint16_t& crc);

// Folds a run of bytes; the same result as crc_16 for each in turn, several times as fast.
void crc_block(std::string_view bytes, std::uint16_t* checksum);

// Byte order of the system's files is big-endian: readers read raw bytes and swap, writers swap and write.
void swap_word(std::uint16_t* word_value);
void swap_long(std::uint32_t* long_value);

// True when the stored checksum of an open, readable file equals the computed one; shows the progress box
// (mode 4) meanwhile. A length word that the file cannot hold makes the file invalid. Leaves the position
// just past the stored checksum. Reports nothing: the caller has the message.
bool isvalid_checksum(std::FILE* hfile, int checksum_type);

// Computes the checksum of a file just written, whose length word is right, and stores it. False when the
// file could not be opened, read or written; reports nothing.
bool write_checksum(const std::string& file_name, int checksum_type);
