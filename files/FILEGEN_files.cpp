// Opening and saving for the editor: which kind of file it is, who reads it, and in which form it is saved.
#include "files/FILEGEN.h"

#include "app/desktop.h"
#include "app/files.h"
#include "app/paths.h"
#include "convert/CONVERT.h"
#include "files/FILEGEN_formats.h"
#include "files/FILEGEN_import.h"
#include "files/MEMORY.h"
#include "library/LIB.h"

#include <algorithm>
#include <new>

std::string sys_file_name;
std::string data_program_name;

namespace {

constexpr char OPEN_CAPTION[] = "Open File";
constexpr std::size_t QUENDAL_MARK_OFFSET = 2;
constexpr char QUENDAL_MARK = '{';
constexpr std::size_t FILE_START_SIZE = 5; // bytes of length word and type byte

enum class EDIT_FILE { DBASE, OWN_TEXT, LOOKUP_SYSTEM, LIBRARY, QUENDAL, FREE_TEXT };

char own_text_letter(int file_type) {
    return file_type == DATA_FILE_EDITED ? 'D' : 'L';
}

std::uint8_t fold(char c) {
    return fold_type(static_cast<std::uint8_t>(c));
}

// The portable's own text form says on its first line what it is.
bool is_own_text(std::string_view start, int file_type) {
    return !start.empty() && static_cast<char>(fold(start.front())) == own_text_letter(file_type) &&
           (start.size() == 1 || is_line_end(start[1]));
}

bool is_text_character(char c) {
    return (c >= ' ' && c <= '~') || c == '\t' || c == '\r' || c == '\n';
}

// A file with the type byte of a system file ends where its length word says, but for NULs behind it; else it
// is the first member of a library. Program and setup files do not count their checksum.
EDIT_FILE recognise_by_length(const TEXT_SOURCE& source, std::uint8_t type) {
    BYTE_READER reader{source.rest};
    const std::int64_t end = size_by_length(read_long(reader), type);
    const auto size = static_cast<std::int64_t>(source.size);
    if (end == size)
        return EDIT_FILE::LOOKUP_SYSTEM;
    if (end < size) {
        const bool padded = seek_file(source.file, end) && is_null_padded(source.file) == 1;
        return padded ? EDIT_FILE::LOOKUP_SYSTEM : EDIT_FILE::LIBRARY;
    }
    // A text may well have such a letter there, which makes its first characters an absurd length.
    const std::string_view start = source.rest.substr(0, FILE_START_SIZE);
    return std::all_of(start.begin(), start.end(), is_text_character) ? EDIT_FILE::FREE_TEXT
                                                                      : EDIT_FILE::LOOKUP_SYSTEM;
}

// The tests stand in the order in which they count.
EDIT_FILE recognise(const TEXT_SOURCE& source, int file_type) {
    const std::string_view bytes = source.rest;
    if (is_dbase_file(bytes, source.size) == 1)
        return EDIT_FILE::DBASE;
    if (is_own_text(bytes, file_type))
        return EDIT_FILE::OWN_TEXT;
    if (file_type == DATA_FILE_EDITED)
        return EDIT_FILE::FREE_TEXT;
    const bool marked = bytes.size() > QUENDAL_MARK_OFFSET && bytes[QUENDAL_MARK_OFFSET] == QUENDAL_MARK;
    const std::uint8_t type = bytes.size() >= FILE_START_SIZE ? fold(bytes[FILE_START_SIZE - 1]) : 0;
    if (type != LOOKUP_FILE_TYPE && (marked || !is_library_member_type(type)))
        return marked ? EDIT_FILE::QUENDAL : EDIT_FILE::FREE_TEXT;
    const EDIT_FILE kind = recognise_by_length(source, type);
    // With the mark it is taken for one file, as a length may hold that byte too.
    return marked && kind == EDIT_FILE::LIBRARY ? EDIT_FILE::LOOKUP_SYSTEM : kind;
}

void set_name_from_path(const std::string& file_name) {
    sys_file_name = path_base_name(file_name).substr(0, FILE_NAME_LIMIT);
}

// Takes the next line for a name. False when there is none or it is too long for one.
bool read_name_line(TEXT_SOURCE& source, std::string& name) {
    std::string_view line;
    if (read_line(source, line, LINE_LIMIT) == 0 || line.size() > FILE_NAME_LIMIT)
        return false;
    name = line;
    return true;
}

std::int64_t read_own_text(WINDOW owner, TEXT_SOURCE& source, int file_type) {
    std::string_view letter;
    std::string program_name;
    read_line(source, letter, LINE_LIMIT);
    if (!read_name_line(source, sys_file_name) || !read_name_line(source, program_name))
        return 0;
    if (file_type == DATA_FILE_EDITED)
        data_program_name = program_name;
    return read_tolvan_ascii_file(owner, source);
}

std::int64_t refuse_open(WINDOW owner) {
    show_message(owner, "Cannot Open File!", OPEN_CAPTION, MESSAGE_ICON::WARNING);
    return 0;
}

std::int64_t read_recognised(WINDOW owner, const std::string& file_name, TEXT_SOURCE& source, int file_type,
                             EDIT_FILE kind) {
    if (kind == EDIT_FILE::DBASE || kind == EDIT_FILE::FREE_TEXT) // which hold no name of their own
        set_name_from_path(file_name);
    if (kind != EDIT_FILE::DBASE)
        data_program_name.clear();
    switch (kind) {
    case EDIT_FILE::DBASE:
        return read_dbase_file(owner, source);
    case EDIT_FILE::OWN_TEXT:
        return read_own_text(owner, source, file_type);
    case EDIT_FILE::LOOKUP_SYSTEM:
        return read_lookup_sys_file(owner, source.file);
    case EDIT_FILE::LIBRARY:
        return read_library_member(
            owner, file_name, [owner](std::FILE* member) { return read_lookup_sys_file(owner, member); });
    case EDIT_FILE::QUENDAL:
        return read_quendal_lookup_sys_file(file_name);
    default:
        return read_text_ascii_file(owner, source);
    }
}

// What could be read of a failing disk is not the file: it is not shown as if it were. Only the import of
// text keeps the rows before the failure, which it has reported.
std::int64_t read_whole_or_nothing(WINDOW owner, const std::string& file_name, int file_type) {
    const FILE_HANDLE file = open_file(file_name, "rb");
    if (!file)
        return refuse_open(owner);
    TEXT_SOURCE source = open_source(file.get());
    fill_source(source, DBASE_HEADER_SIZE);
    if (source.failed)
        return refuse_open(owner);
    const EDIT_FILE kind = recognise(source, file_type);
    rewind_source(source);
    const std::int64_t result = read_recognised(owner, file_name, source, file_type, kind);
    return source.failed && kind != EDIT_FILE::FREE_TEXT ? refuse_open(owner) : result;
}

void report_changed_records(WINDOW owner) {
    show_message(owner,
                 "Records with characters that a record cannot hold: " + std::to_string(changed_records) +
                     ".\nThe characters were replaced or cut off.",
                 OPEN_CAPTION, MESSAGE_ICON::WARNING);
}

int save_text(const std::string& file_name, int file_type) {
    std::string image;
    write_line(image, std::string(1, own_text_letter(file_type)));
    write_line(image, sys_file_name);
    write_line(image, file_type == DATA_FILE_EDITED ? data_program_name : "");
    write_ascii_file(image);
    return save_whole_file(file_name, image) ? 1 : -1;
}

int save_in_format(WINDOW owner, const std::string& file_name, int file_type, int format) {
    try {
        set_name_from_path(file_name);
        return format == LOOKUP_SYSTEM_FILE ? write_lookup_sys_file(owner, file_name)
                                            : save_text(file_name, file_type);
    } catch (const std::bad_alloc&) {
        return report_out_of_memory(owner);
    }
}

} // namespace

std::int64_t read_edit_file(WINDOW owner, const std::string& file_name, int file_type) {
    changed_records = 0;
    std::int64_t result = 0;
    try {
        result = read_whole_or_nothing(owner, file_name, file_type);
    } catch (const std::bad_alloc&) {
        result = report_out_of_memory(owner);
    }
    if (result == 0) // what a damaged file began with is not kept
        free_memchunks();
    else if (changed_records > 0)
        report_changed_records(owner);
    return result;
}

int write_edit_file(WINDOW owner, const std::string& file_name, int file_type) {
    const bool is_new = !open_file(file_name, "rb");
    // Appending shows that the file can be written, and leaves the old one as it is.
    if (!open_file(file_name, "ab")) {
        show_message(owner, "Cannot Save File.\nFile Creation Error!", "Save File", MESSAGE_ICON::WARNING);
        return 0;
    }
    const int format = file_type == DATA_FILE_EDITED ? LOOKUP_ASCII_FILE : choose_lookup_format(owner);
    if (format != LOOKUP_SYSTEM_FILE && format != LOOKUP_ASCII_FILE) {
        open_file(file_name, "wb"); // choosing neither leaves an emptied file
        return 0;
    }
    const int result = save_in_format(owner, file_name, file_type, format);
    if (result < 0 && is_new)
        static_cast<void>(std::remove(file_name.c_str())); // nothing was saved, so no file is to show
    return result;
}
