// The library file: whole system files one behind the other, each known by its own start, numbers big-endian:
//
//   offset  size  content
//        0     4  length word L; 0 ends the library, as does the end of the file
//        4     1  type byte: 'I' program, 'R' lookup file, 'S' setup
//        5     9  name of a lookup file, NUL-padded
//       11     9  name of a program, NUL-padded
//
// The next one follows after L bytes, and after the checksum of programs and setups, which L does not count.
#include "library/LIB.h"

#include "app/checksum.h"
#include "app/desktop.h"
#include "app/files.h"

#include <algorithm>
#include <array>
#include <memory>
#include <new>

namespace {

constexpr std::size_t MEMBER_HEAD_SIZE = 20; // up to the end of either name
constexpr std::size_t MEMBER_NAME_SIZE = 9;
constexpr std::size_t LOOKUP_NAME_OFFSET = 5;
constexpr std::size_t PROGRAM_NAME_OFFSET = 11;
constexpr std::size_t LIBRARY_MEMBER_LIMIT = 10000; // bounds the walk through what is no library

// The name in a member's first bytes, which may be too few to hold it.
std::string member_name(std::string_view head, std::uint8_t type) {
    if (fold_type(type) == 'S')
        return {};
    BYTE_READER reader{head};
    reader.position = fold_type(type) == 'R' ? LOOKUP_NAME_OFFSET : PROGRAM_NAME_OFFSET;
    const std::string_view name = read_block(reader, MEMBER_NAME_SIZE);
    return std::string(name.substr(0, name.find('\0')));
}

// What the operator reads. A damaged name must not break the row.
std::string member_row(const LIBRARY_MEMBER& member) {
    if (fold_type(member.type) == 'S')
        return "Setup";
    std::string name = member.name;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return (c >= '\0' && c < ' ') || c == '\x7F'; }, '?');
    return (fold_type(member.type) == 'R' ? "Lookup (" : "Program (") + name + ")";
}

void remove_file(const std::string& name) {
    static_cast<void>(std::remove(name.c_str())); // best effort: it is only a left-over
}

struct FILE_REMOVER {
    void operator()(const std::string* name) const {
        remove_file(*name);
    }
};

int refuse_extraction(WINDOW owner) {
    show_message(owner, "Cannot take the file out of the library.\nThe temporary folder may be full.",
                 "Open File", MESSAGE_ICON::WARNING);
    return -1;
}

bool copy_member(std::FILE* library, const LIBRARY_MEMBER& member, const std::string& name) {
    FILE_HANDLE file = open_file(name, "wb");
    if (!file || !seek_file(library, member.start))
        return false;
    std::array<char, 4096> block;
    for (std::int64_t left = member.size; left > 0;) {
        const auto wanted = static_cast<std::size_t>(std::min(left, static_cast<std::int64_t>(block.size())));
        const std::size_t size = std::fread(block.data(), 1, wanted, library);
        if (size != wanted || std::fwrite(block.data(), 1, size, file.get()) != size)
            return false;
        left -= static_cast<std::int64_t>(size);
    }
    // What the library still holds goes out at the close: a full disk may show only there.
    return std::fclose(file.release()) == 0;
}

} // namespace

FILE_START read_file_start(std::FILE* file) {
    std::array<char, sizeof(FILE_START::length) + sizeof(FILE_START::type)> bytes;
    const std::size_t size = seek_file(file, 0) ? std::fread(bytes.data(), 1, bytes.size(), file) : 0;
    BYTE_READER reader{{bytes.data(), size}};
    const std::uint32_t length = read_long(reader);
    return {length, read_byte(reader)};
}

std::uint8_t fold_type(std::uint8_t file_type) {
    return static_cast<std::uint8_t>(file_type >= 'a' && file_type <= 'z' ? file_type - 'a' + 'A'
                                                                          : file_type);
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

bool fills_file(std::FILE* file, std::uint32_t length) {
    const std::int64_t end = std::int64_t{length} + std::int64_t{CHECKSUM_SIZE};
    return end == file_length(file) || (seek_file(file, end) && is_null_padded(file) == 1);
}

bool is_library_member_type(unsigned char file_type) {
    return file_type == 'I' || file_type == 'R' || file_type == 'S';
}

std::int64_t size_by_length(std::uint32_t length, std::uint8_t type) {
    const bool counts_checksum = fold_type(type) == 'R';
    return std::int64_t{length} + (counts_checksum ? 0 : std::int64_t{CHECKSUM_SIZE});
}

bool read_library_members(std::FILE* file, bool folds_type, std::vector<LIBRARY_MEMBER>& members) {
    members.clear();
    const std::int64_t end = file_length(file);
    std::int64_t start = 0;
    while (seek_file(file, start)) {
        std::array<char, MEMBER_HEAD_SIZE> head;
        const std::size_t head_size = std::fread(head.data(), 1, head.size(), file);
        BYTE_READER reader{{head.data(), head_size}};
        const std::uint32_t length = read_long(reader);
        if (reader.past_end || length == 0)
            return std::ferror(file) == 0;
        const std::uint8_t type = read_byte(reader);
        if (!is_library_member_type(folds_type ? fold_type(type) : type) ||
            members.size() == LIBRARY_MEMBER_LIMIT)
            return false;
        const std::int64_t size = size_by_length(length, type);
        const auto known_size = std::min(static_cast<std::int64_t>(head_size), size);
        members.push_back({type,
                           member_name(reader.bytes.substr(0, static_cast<std::size_t>(known_size)), type),
                           start, std::min(size, end - start)});
        start += size; // at least a byte further; past the end there is nothing to read
    }
    return false;
}

int extract_library_file(WINDOW owner, std::string& name) {
    FILE_HANDLE library = open_file(name, "rb");
    std::vector<LIBRARY_MEMBER> members;
    if (!library || !read_library_members(library.get(), true, members))
        return 0;
    std::vector<std::string> rows(members.size());
    std::transform(members.begin(), members.end(), rows.begin(), member_row);
    const int row = choose_library_member(owner, rows);
    if (row < 0 || static_cast<std::size_t>(row) >= members.size())
        return -1;
    std::string extracted = temporary_file_name();
    if (!copy_member(library.get(), members[static_cast<std::size_t>(row)], extracted)) {
        remove_file(extracted);
        return refuse_extraction(owner);
    }
    name = std::move(extracted);
    return 1;
}

std::int64_t read_library_member(WINDOW owner, const std::string& library,
                                 const std::function<std::int64_t(std::FILE*)>& read) {
    try {
        std::string name = library;
        const int extracted = extract_library_file(owner, name);
        if (extracted != 1)
            return extracted;
        const std::unique_ptr<const std::string, FILE_REMOVER> left_over(&name); // outlives the open file
        const FILE_HANDLE file = open_file(name, "rb");
        return file ? read(file.get()) : refuse_extraction(owner);
    } catch (const std::bad_alloc&) {
        return report_out_of_memory(owner);
    }
}
