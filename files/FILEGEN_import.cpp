#include "files/FILEGEN_import.h"

#include "app/desktop.h"
#include "app/files.h"
#include "files/MEMORY.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <new>
#include <optional>

namespace {

struct ROW {
    std::vector<std::string_view> values; // in the order of the columns
    bool printable = false;               // no byte of it needs a second look
};

constexpr std::size_t TRUNCATED_VALUE = 20; // characters

void show_warning(WINDOW owner, const char* text, const char* caption = "Open File") {
    show_message(owner, text, caption, MESSAGE_ICON::WARNING);
}

void strip_lead_space(std::string_view& value) {
    value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
}

void strip_trail_space(std::string_view& value) {
    value = value.substr(0, value.find_last_not_of(' ') + 1);
}

void strip_zero(std::string_view& value) {
    value.remove_prefix(std::min(value.find_first_not_of('0'), value.size()));
}

std::string_view clean_value(std::string_view value, const IMPORT_OPTIONS& options) {
    if (options.strip_lead_spaces)
        strip_lead_space(value);
    if (options.strip_trail_spaces)
        strip_trail_space(value);
    if (options.strip_zeroes)
        strip_zero(value);
    return options.strip_trunc ? value.substr(0, TRUNCATED_VALUE) : value;
}

void name_field(FIELD_DESCRIPTOR& field, std::string_view name) {
    field.field_name = name.substr(0, IMPORT_NAME_SIZE);
    field.field_name.resize(IMPORT_NAME_SIZE, ' ');
}

std::vector<std::size_t> chosen_columns(const std::vector<FIELD_DESCRIPTOR>& fields) {
    std::vector<std::size_t> columns;
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (fields[i].import_field != 0)
            columns.push_back(i);
    return columns;
}

constexpr unsigned char PRINTABLE_RANGE = '~' - ' ';

// Above PRINTABLE_RANGE when the character is not printable.
unsigned char place_in_range(char character) {
    return static_cast<unsigned char>(character - ' ');
}

// Looks at all characters, so that the compiler can take many at a time.
bool holds_unprintable(std::string_view text) {
    unsigned char highest = 0;
    for (const char character : text)
        highest = std::max(highest, place_in_range(character));
    return highest > PRINTABLE_RANGE;
}

// How many were appended before memory ran out.
std::size_t add_checked_entries(const std::vector<std::string_view>& values) {
    const auto refused =
        std::ranges::find_if(values, [](std::string_view value) { return add_record_entry(value) == 0; });
    return static_cast<std::size_t>(refused - values.begin());
}

// What both imports do once the columns are chosen. `read_row` leaves a value for each column in `row`; it
// returns false when there is no more row.
template <typename READ_ROW>
std::int64_t add_rows(WINDOW owner, const TEXT_SOURCE& source, const std::vector<FIELD_DESCRIPTOR>& fields,
                      const IMPORT_OPTIONS& options, const ROW& row, READ_ROW read_row) {
    PROGRESS progress{{open_status_box(STATUS_OPEN_FILE), {}}, source.size};
    const auto columns = chosen_columns(fields);
    std::vector<std::string_view> chosen(columns.size());
    std::int64_t records = 0;
    while (read_row()) {
        for (std::size_t i = 0; i < columns.size(); ++i)
            chosen[i] = clean_value(row.values[columns[i]], options);
        const std::size_t added = row.printable ? add_printable_entries(chosen) : add_checked_entries(chosen);
        records += static_cast<std::int64_t>(added);
        if (added < chosen.size())
            return report_out_of_memory(owner);
        show_progress(progress, source.position);
    }
    return records;
}

// Runs an import, which may find no memory for its columns or its row.
std::int64_t import_file(WINDOW owner, TEXT_SOURCE& source,
                         std::int64_t (*import_from)(WINDOW, TEXT_SOURCE&)) {
    try {
        return import_from(owner, source);
    } catch (const std::bad_alloc&) {
        show_warning(owner, "Memory Error - Could not allocate memory.");
        return -1;
    }
}

// dBase tables: the header, a descriptor for each field, a terminator of one byte, and the rows. A row is a
// status byte and the fields' bytes; a byte 0x1A stands behind the last row. Numbers are little-endian, as
// the host's are and those of the system's own files are not.

struct DBASE_HEADER {
    std::uint8_t version;
    std::uint8_t last_update[3];
    std::uint32_t records;
    std::uint16_t header_length;
    std::uint16_t record_length; // with the status byte; a claim
    std::uint8_t reserved[20];
};
static_assert(sizeof(DBASE_HEADER) == DBASE_HEADER_SIZE && std::endian::native == std::endian::little);

struct DBASE_FIELD_DESCRIPTOR {
    char field_name[11]; // a NUL ends a shorter one
    char field_type;
    std::uint8_t addr[4];
    std::uint8_t field_length;
    std::uint8_t decimal_length;
    std::uint8_t reserved[14];
};
constexpr std::size_t DBASE_DESCRIPTOR_SIZE = sizeof(DBASE_FIELD_DESCRIPTOR);
static_assert(DBASE_DESCRIPTOR_SIZE == 32);

constexpr std::array<std::uint8_t, 7> DBASE_VERSIONS = {0x03, 0x04, 0x05, 0x83, 0x84, 0x85, 0xF5};
constexpr std::size_t DBASE_TERMINATOR_SIZE = 1;

constexpr char DBASE_DELETED = '*'; // status bytes
constexpr char DBASE_VALID = ' ';
constexpr char DBASE_END = '\x1A';

struct DBASE_TABLE {
    std::size_t field_count;
    std::size_t dbase_record_length;
};

// A large lookup system file starts with a byte like a version too: the highest of its length. No table has
// its own length there.
bool is_lookup_system_file(std::string_view start, std::size_t size) {
    BYTE_READER reader{start};
    return read_long(reader) == size && read_byte(reader) == LOOKUP_FILE_TYPE;
}

std::optional<DBASE_TABLE> read_dbase_header(std::string_view start, std::size_t size) {
    if (start.size() < DBASE_HEADER_SIZE || is_lookup_system_file(start, size))
        return {};
    DBASE_HEADER header;
    std::memcpy(&header, start.data(), sizeof header);
    if (std::find(DBASE_VERSIONS.begin(), DBASE_VERSIONS.end(), header.version) == DBASE_VERSIONS.end() ||
        header.header_length < DBASE_HEADER_SIZE + DBASE_TERMINATOR_SIZE)
        return {};
    return DBASE_TABLE{(header.header_length - DBASE_HEADER_SIZE - DBASE_TERMINATOR_SIZE) /
                           DBASE_DESCRIPTOR_SIZE,
                       header.record_length};
}

std::string_view up_to_nul(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

// False when the source ends inside the descriptors.
bool read_dbase_fields(TEXT_SOURCE& source, std::vector<FIELD_DESCRIPTOR>& fields) {
    for (FIELD_DESCRIPTOR& field : fields) {
        fill_source(source, DBASE_DESCRIPTOR_SIZE + DBASE_TERMINATOR_SIZE);
        const std::string_view bytes = take_bytes(source, DBASE_DESCRIPTOR_SIZE);
        if (bytes.size() < DBASE_DESCRIPTOR_SIZE)
            return false;
        DBASE_FIELD_DESCRIPTOR descriptor;
        std::memcpy(&descriptor, bytes.data(), sizeof descriptor);
        name_field(field, up_to_nul({descriptor.field_name, sizeof descriptor.field_name}));
        field.field_length = descriptor.field_length;
    }
    take_bytes(source, DBASE_TERMINATOR_SIZE);
    return true;
}

// Takes the bytes of the next row that is not deleted, without its status. False when there is none.
bool read_dbase_record(TEXT_SOURCE& source, std::size_t row_size, std::size_t dbase_record_length,
                       std::string_view& bytes) {
    for (;;) {
        fill_source(source, std::max(row_size, dbase_record_length) + 1);
        const std::string_view status = take_bytes(source, 1);
        if (status.empty() || status.front() == DBASE_END)
            return false;
        if (status.front() == DBASE_VALID)
            break;
        if (status.front() == DBASE_DELETED)
            take_bytes(source, std::max(dbase_record_length, std::size_t{1}) - 1);
    }
    bytes = take_bytes(source, row_size);
    return bytes.size() == row_size;
}

void split_dbase_row(std::string_view bytes, const std::vector<FIELD_DESCRIPTOR>& fields, ROW& row) {
    row.printable = !holds_unprintable(bytes);
    row.values.clear();
    for (const FIELD_DESCRIPTOR& field : fields) {
        const std::string_view value = bytes.substr(0, field.field_length);
        row.values.push_back(row.printable ? value : up_to_nul(value));
        bytes.remove_prefix(field.field_length);
    }
}

std::int64_t import_dbase(WINDOW owner, TEXT_SOURCE& source) {
    rewind_source(source);
    fill_source(source, DBASE_HEADER_SIZE);
    const auto table = read_dbase_header(source.rest, source.size);
    if (!table)
        return 0;
    take_bytes(source, DBASE_HEADER_SIZE);
    std::vector<FIELD_DESCRIPTOR> fields(table->field_count);
    IMPORT_OPTIONS options;
    if (!read_dbase_fields(source, fields) || !choose_import_fields(owner, fields, options))
        return -1;
    std::size_t row_size = 0;
    for (const FIELD_DESCRIPTOR& field : fields)
        row_size += field.field_length;
    std::string_view bytes;
    ROW row;
    return add_rows(owner, source, fields, options, row, [&] {
        if (!read_dbase_record(source, row_size, table->dbase_record_length, bytes))
            return false;
        split_dbase_row(bytes, fields, row);
        return true;
    });
}

// Comma-separated text.

constexpr std::size_t ASCII_RECORD_LIMIT = 1024; // characters of a line; bytes of a row, with its NULs

constexpr int ROW_READ = 1;
constexpr int ROW_REFUSED = 0; // reported
constexpr int NO_MORE_ROWS = -2;

int blank_line(std::string_view str) {
    return str.find_first_not_of(' ') == std::string_view::npos ? 1 : 0;
}

// Copies what is printable; `dest` may be where it is copied from. Returns the new length.
std::size_t filter_ascii_string(char* dest, std::string_view source) {
    std::size_t length = 0;
    for (const char character : source)
        if (place_in_range(character) <= PRINTABLE_RANGE)
            dest[length++] = character;
    return length;
}

// Takes what is not printable out of the values, which lie in `line`. The row's very first character stays
// whatever it is.
void filter_values(std::string& line, std::vector<std::string_view>& values) {
    for (std::string_view& value : values) {
        const std::size_t kept = &value == &values.front() && !value.empty() ? 1 : 0;
        char* const place = line.data() + (value.data() - line.data()) + kept;
        value = value.substr(0, kept + filter_ascii_string(place, value.substr(kept)));
    }
}

bool character_at(std::string_view line, std::size_t index, char character) {
    return index < line.size() && line[index] == character;
}

// What the values of a row take up in its buffer, each with a NUL behind it.
std::size_t size_in_buffer(const std::vector<std::string_view>& values) {
    std::size_t size = values.size();
    for (const std::string_view value : values)
        size += value.size();
    return size;
}

// The values of the next row lie in the source or in `copy`.
int read_text_ascii_record(WINDOW owner, TEXT_SOURCE& source, std::string& copy, ROW& row) {
    std::string_view line;
    do {
        const bool at_end = read_line(source, line, ASCII_RECORD_LIMIT) == 0;
        if (source.failed) {
            show_warning(owner, "Unexpected Error in ASCII File.");
            return ROW_REFUSED;
        }
        if (at_end)
            return NO_MORE_ROWS;
        if (line.size() == ASCII_RECORD_LIMIT && !source.rest.empty() && !is_line_end(source.rest.front())) {
            show_warning(owner, "ASCII file contains lines greater than 1024 chars long");
            return ROW_REFUSED;
        }
        row.printable = !holds_unprintable(line);
        if (!row.printable) {
            copy = line;
            std::erase(copy, '\0'); // no value can hold one, and text of two-byte characters is full of them
            line = copy;
        }
    } while (blank_line(line) == 1);
    parse_buffer(line, row.values);
    if (!row.printable)
        filter_values(copy, row.values);
    // A row takes up a NUL more than its line has characters, at most.
    if (line.size() < ASCII_RECORD_LIMIT || size_in_buffer(row.values) <= ASCII_RECORD_LIMIT)
        return ROW_READ;
    show_warning(owner, "Conversion Error - Fields could not fit into buffer.");
    return ROW_REFUSED;
}

std::int64_t import_text(WINDOW owner, TEXT_SOURCE& source) {
    std::string copy;
    ROW row;
    rewind_source(source);
    const int first_row = read_text_ascii_record(owner, source, copy, row);
    if (first_row == NO_MORE_ROWS)
        show_warning(owner, "Empty ASCII File.");
    if (first_row != ROW_READ)
        return 0;

    std::vector<FIELD_DESCRIPTOR> fields(row.values.size());
    for (std::size_t i = 0; i < fields.size(); ++i)
        name_field(fields[i], row.values[i]);
    IMPORT_OPTIONS options;
    if (!choose_import_fields(owner, fields, options))
        return -1;

    rewind_source(source); // the first row is data too
    return add_rows(owner, source, fields, options, row, [&] {
        if (read_text_ascii_record(owner, source, copy, row) != ROW_READ)
            return false;
        row.values.resize(fields.size()); // a column beyond the row's values gets an empty one
        return true;
    });
}

} // namespace

int is_dbase_file(std::string_view start, std::size_t size) {
    return read_dbase_header(start, size) ? 1 : 0;
}

std::int64_t read_dbase_file(WINDOW owner, TEXT_SOURCE& source) {
    return import_file(owner, source, import_dbase);
}

std::size_t parse_buffer(std::string_view line, std::vector<std::string_view>& values) {
    values.clear();
    std::size_t i = 0;
    while (i < line.size()) {
        const bool first = values.empty();
        const bool comma = line[i] == ',';
        const bool quote = line[i] == '"';
        std::size_t begin = i;
        if (quote || (comma && !first))
            ++begin;
        const bool quote_after_comma = comma && !first && character_at(line, begin, '"');
        if (quote_after_comma)
            ++begin;
        const char stop = quote || quote_after_comma ? '"' : ',';
        const std::size_t end = std::min(line.find(stop, begin), line.size());
        i = end;
        if (quote && character_at(line, end + 1, ','))
            ++i;
        if (!first || end > begin) {
            ++i;
            if (!quote_after_comma && character_at(line, i, ','))
                --i; // so that the comma is seen as the next separator
        }
        values.push_back(line.substr(begin, end - begin));
    }
    return values.size();
}

std::int64_t read_text_ascii_file(WINDOW owner, TEXT_SOURCE& source) {
    return import_file(owner, source, import_text);
}
