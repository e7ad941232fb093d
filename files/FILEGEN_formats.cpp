// The lookup system file, numbers big-endian:
//
//   offset  size  content
//        0     4  length of the whole file
//        4     1  type byte 'R'
//        5     9  sys_file_name, NUL-padded
//       14     2  reserved, 0
//       16     4  number of records
//       20     2  checksum over all but the type byte and itself
//       22     -  each record: 0xFF, its checksum (0xFF + n + its bytes), n in one byte, n bytes of text
//
// The text form, lines ended by CR LF: "D" of a data file or "L" of a lookup file, sys_file_name,
// data_program_name (empty in a lookup file), and a line for each record.
#include "files/FILEGEN_formats.h"

#include "app/checksum.h"
#include "app/desktop.h"
#include "app/files.h"
#include "files/FILEGEN.h"
#include "files/MEMORY.h"

#include <algorithm>
#include <limits>
#include <memory>

namespace {

constexpr std::size_t PROGRESS_STEP = std::size_t{64} << 10; // bytes between two updates of the progress box
constexpr std::size_t PIECE_SIZE = std::size_t{64} << 10;    // bytes that a source reads at once

constexpr std::string_view LINE_END = "\r\n";
constexpr std::size_t RECORD_COUNT_OFFSET = 16;
constexpr std::uint8_t RECORD_MARKER = 0xFF;
constexpr std::size_t LONGEST_SYSTEM_RECORD = 255; // characters: the length is one byte
constexpr std::uint64_t LONGEST_SYSTEM_FILE = std::numeric_limits<std::uint32_t>::max(); // bytes

// The header's count drives the loop: what a block transfer pads a file with makes no records. 1; 0 when the
// file ends too early; -1 when memory ran out (reported).
int load_system_records(WINDOW owner, BYTE_READER& reader, std::uint32_t count) {
    PROGRESS progress{{open_status_box(STATUS_READ_LOOKUP), {}}, reader.bytes.size()};
    for (std::uint32_t done = 0; done < count; ++done) {
        read_byte(reader); // the marker
        read_byte(reader); // the record's checksum: that of the file covers it
        const std::string_view text = read_block(reader, read_byte(reader));
        if (reader.past_end)
            return 0;
        if (add_record_entry(text) == 0)
            return report_out_of_memory(owner);
        show_progress(progress, reader.position);
    }
    return 1;
}

void append_system_record(std::string& image, std::string_view text) {
    const auto length = static_cast<std::uint8_t>(text.size());
    auto checksum = static_cast<std::uint8_t>(RECORD_MARKER + length);
    byte_checksum(text, &checksum);
    append_byte(image, RECORD_MARKER);
    append_byte(image, checksum);
    append_byte(image, length);
    image += text;
}

// Appends the records up to the first that is too long; `count` becomes the number of those appended. False
// when there is such a one.
bool append_system_records(std::string& image, std::uint32_t* count) {
    *count = 0;
    for (char* record = goto_first_record(); *record != END_OF_RECORDS; record = goto_next_record(record)) {
        const std::string_view text(record);
        if (text.size() > LONGEST_SYSTEM_RECORD)
            return false;
        append_system_record(image, text);
        ++*count;
    }
    return true;
}

int refuse_line(WINDOW owner, std::uint32_t number) {
    show_message(owner,
                 "Line " + std::to_string(number) +
                     " is longer than 255 characters.\nA lookup system file cannot hold it.",
                 "Lookup File", MESSAGE_ICON::WARNING);
    return -1;
}

} // namespace

TEXT_SOURCE open_source(std::FILE* file) {
    TEXT_SOURCE source{.file = file, .piece = {}, .rest = {}};
    source.size = static_cast<std::size_t>(std::max(file_length(file), std::int64_t{0}));
    rewind_source(source);
    return source;
}

void rewind_source(TEXT_SOURCE& source) {
    std::rewind(source.file);
    source.position = 0;
    source.rest = {};
}

void fill_source(TEXT_SOURCE& source, std::size_t wanted) {
    if (source.rest.size() >= wanted || std::feof(source.file) != 0)
        return;
    const std::size_t kept = source.rest.size();
    std::copy(source.rest.begin(), source.rest.end(), source.piece.begin());
    source.piece.resize(wanted + PIECE_SIZE);
    char* const unread = source.piece.data() + kept;
    const std::size_t read = std::fread(unread, 1, source.piece.size() - kept, source.file);
    source.rest = {source.piece.data(), kept + read};
    source.failed |= std::ferror(source.file) != 0;
}

std::string_view take_bytes(TEXT_SOURCE& source, std::size_t size) {
    const std::string_view bytes = source.rest.substr(0, size);
    source.rest.remove_prefix(bytes.size());
    source.position += bytes.size();
    return bytes;
}

int read_line(TEXT_SOURCE& source, std::string_view& input_str, std::size_t str_size) {
    fill_source(source, str_size + 2); // with its line end
    const std::string_view bytes = source.rest;
    if (bytes.empty())
        return 0;
    std::string_view line = bytes.substr(0, str_size);
    line = line.substr(0, line.find('\n'));
    line = line.substr(0, line.find('\r'));
    input_str = line;
    std::size_t taken = line.size();
    // A full line leaves the line end behind it to the next call.
    if (line.size() < str_size)
        while (taken < std::min(bytes.size(), line.size() + 2) && is_line_end(bytes[taken]))
            ++taken;
    take_bytes(source, taken);
    return 1;
}

void write_line(std::string& image, std::string_view output_str) {
    image += output_str;
    image += LINE_END;
}

void byte_checksum(std::string_view byte_str, std::uint8_t* checksum) {
    for (const char byte : byte_str)
        *checksum = static_cast<std::uint8_t>(*checksum + static_cast<std::uint8_t>(byte));
}

void show_progress(PROGRESS& progress, std::size_t position) {
    if (position < progress.next_update)
        return;
    update_status_bar(progress.box.get(), static_cast<std::int64_t>(position),
                      static_cast<std::int64_t>(progress.size));
    progress.next_update = position + PROGRESS_STEP;
}

std::int64_t read_tolvan_ascii_file(WINDOW owner, TEXT_SOURCE& source) {
    PROGRESS progress{{open_status_box(STATUS_READ_TEXT), {}}, source.size};
    std::int64_t count = 0;
    for (std::string_view line; read_line(source, line, LINE_LIMIT) == 1; ++count) {
        if (add_record_entry(line) == 0)
            return report_out_of_memory(owner);
        show_progress(progress, source.position);
    }
    return count;
}

void write_ascii_file(std::string& image) {
    for (char* record = goto_first_record(); *record != END_OF_RECORDS; record = goto_next_record(record))
        write_line(image, record);
}

std::int64_t read_lookup_sys_file(WINDOW owner, std::FILE* hfile) {
    const auto image = read_whole_file(hfile);
    if (!image)
        return 0;
    BYTE_READER reader{*image};
    read_long(reader); // the length, which only the checksum needs
    if (read_byte(reader) != LOOKUP_FILE_TYPE)
        return 0;
    const std::string_view name = read_block(reader, FILE_NAME_LIMIT + 1);
    read_word(reader); // reserved
    const std::uint32_t count = read_long(reader);
    read_word(reader); // the checksum
    if (reader.past_end)
        return 0;
    sys_file_name = name.substr(0, std::min(name.find('\0'), FILE_NAME_LIMIT));
    const int loaded = load_system_records(owner, reader, count);
    if (loaded != 1)
        return loaded;
    if (!isvalid_checksum(hfile, LOOKUP_CHECKSUM)) {
        show_message(owner, "Invalid Checksum in Lookup File!", "Invalid Checksum", MESSAGE_ICON::WARNING);
        return -1;
    }
    return count;
}

int write_lookup_sys_file(WINDOW owner, const std::string& file_name) {
    std::string name = sys_file_name.substr(0, FILE_NAME_LIMIT);
    name.resize(FILE_NAME_LIMIT + 1);
    std::string image;
    append_long(image, 0); // the length, known at the end
    append_byte(image, LOOKUP_FILE_TYPE);
    image += name;
    append_word(image, 0); // reserved
    append_long(image, 0); // the number of records
    append_word(image, 0); // the checksum
    std::uint32_t count = 0;
    if (!append_system_records(image, &count))
        return refuse_line(owner, count + 1);
    if (std::uint64_t{image.size()} > LONGEST_SYSTEM_FILE)
        return -1;
    put_long(image, 0, static_cast<std::uint32_t>(image.size()));
    put_long(image, RECORD_COUNT_OFFSET, count);
    return save_with_checksum(file_name, image, LOOKUP_CHECKSUM) ? 1 : -1;
}
