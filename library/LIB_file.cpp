#include "library/LIB.h"

#include "app/checksum.h"
#include "app/desktop.h"
#include "app/files.h"

#include <algorithm>
#include <array>

FILE_START read_file_start(std::FILE* file) {
    std::array<char, sizeof(FILE_START::length) + sizeof(FILE_START::type)> bytes;
    const std::size_t size = seek_file(file, 0) ? std::fread(bytes.data(), 1, bytes.size(), file) : 0;
    BYTE_READER reader{{bytes.data(), size}};
    const std::uint32_t length = read_long(reader);
    return {length, read_byte(reader)};
}

bool fills_file(std::FILE* file, std::uint32_t length) {
    const std::int64_t end = std::int64_t{length} + std::int64_t{CHECKSUM_SIZE};
    return end == file_length(file) || (seek_file(file, end) && is_null_padded(file) == 1);
}

int is_null_padded(std::FILE* file) {
    std::array<char, 4096> block;
    bool any = false;
    for (;;) {
        const std::size_t size = std::fread(block.data(), 1, block.size(), file);
        if (size == 0)
            return any && std::ferror(file) == 0 ? 1 : 0;
        any = true;
        if (std::any_of(block.begin(), block.begin() + size, [](char byte) { return byte != '\0'; }))
            return 0;
    }
}

bool is_library_member_type(unsigned char file_type) {
    return file_type == 'I' || file_type == 'R' || file_type == 'S';
}

std::uint8_t fold_type(std::uint8_t file_type) {
    return static_cast<std::uint8_t>(file_type >= 'a' && file_type <= 'z' ? file_type - 'a' + 'A'
                                                                          : file_type);
}

int extract_library_file(WINDOW owner, std::string&) {
    show_message(owner,
                 "This version cannot take a file out of a library yet.\n"
                 "If the file is no library, it is damaged.",
                 "Open File", MESSAGE_ICON::WARNING);
    return 0;
}

std::int64_t read_library_member(WINDOW owner, std::string name,
                                 const std::function<std::int64_t(std::FILE*)>& read,
                                 const char* cannot_open) {
    const int extracted = extract_library_file(owner, name);
    if (extracted != 1)
        return extracted;
    std::int64_t result = 0;
    if (FILE_HANDLE file = open_file(name, "rb"))
        result = read(file.get());
    else
        show_message(owner, cannot_open, "Open File", MESSAGE_ICON::WARNING);
    static_cast<void>(std::remove(name.c_str())); // best effort: it is only a left-over
    return result;
}
