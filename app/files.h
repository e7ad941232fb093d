// Whole files in and out, and the big-endian bytes inside them.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct FILE_CLOSER {
    void operator()(std::FILE* file) const {
        static_cast<void>(std::fclose(file)); // a writer closes for itself and looks at the result
    }
};
using FILE_HANDLE = std::unique_ptr<std::FILE, FILE_CLOSER>;

// Opens a file with the standard library's mode letters; an empty handle on failure.
FILE_HANDLE open_file(const std::string& name, const char* mode);

// The length in bytes of an open file; its position is kept. -1 when the file cannot tell.
std::int64_t file_length(std::FILE* file);

// Moves to `position`, which may lie past 2 GiB. False when the file refuses.
bool seek_file(std::FILE* file, std::int64_t position);

// All bytes of an open file from its start; nothing when they could not all be read. std::bad_alloc passes.
std::optional<std::string> read_whole_file(std::FILE* file);

// Writes `bytes` to a new sibling of `name`, stamps its checksum of the given type, and only then puts it in
// place of `name`. False when any step fails: the old file is then as it was and the sibling is gone.
bool save_with_checksum(const std::string& name, std::string_view bytes, int checksum_type);

// The same for a file that carries no checksum.
bool save_whole_file(const std::string& name, std::string_view bytes);

// Reads a file image from the front. Reading past the end yields zeros, ends a text, and is remembered.
struct BYTE_READER {
    std::string_view bytes;
    std::size_t position = 0;
    bool past_end = false; // sticky: some read wanted more bytes than there were
};
std::uint8_t read_byte(BYTE_READER& reader);
std::uint16_t read_word(BYTE_READER& reader); // big-endian
std::uint32_t read_long(BYTE_READER& reader); // big-endian

// The bytes up to the next NUL, which is consumed. They lie in the reader's image.
std::string_view read_string(BYTE_READER& reader);

// The next `size` bytes, or those that are left. They lie in the reader's image.
std::string_view read_block(BYTE_READER& reader, std::size_t size);

// Appends to a file image; numbers big-endian, a text with its NUL.
void append_byte(std::string& image, std::uint8_t value);
void append_word(std::string& image, std::uint16_t value);
void append_long(std::string& image, std::uint32_t value);
void append_text(std::string& image, std::string_view text);

// Overwrites four bytes of an image at `position`, big-endian.
void put_long(std::string& image, std::size_t position, std::uint32_t value);
