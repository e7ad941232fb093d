#include "files/FILEGEN_import.h"

#include "app/checksum.h"
#include "app/desktop.h"
#include "app/files.h"
#include "files/MEMORY.h"

#include <algorithm>
#include <array>
#include <new>
#include <optional>

namespace {

using VALUES = std::vector<std::string_view>; // of a row, in the order of the columns

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

bool add_chosen_values(const std::vector<FIELD_DESCRIPTOR>& fields, const IMPORT_OPTIONS& options,
                       const VALUES& values, std::int64_t* records) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].import_field == 0)
            continue;
        if (add_record_entry(clean_value(values[i], options)) == 0)
            return false;
        ++*records;
    }
    return true;
}

// What both imports do once the columns are chosen. `read_row` leaves a value for each column in `values`; it
// returns false when there is no more row.
template <typename READ_ROW>
std::int64_t add_rows(WINDOW owner, const TEXT_SOURCE& source, const std::vector<FIELD_DESCRIPTOR>& fields,
                      const IMPORT_OPTIONS& options, const VALUES& values, READ_ROW read_row) {
    PROGRESS progress{{open_status_box(STATUS_OPEN_FILE), {}}, source.bytes.size()};
    std::int64_t records = 0;
    while (read_row()) {
        if (!add_chosen_values(fields, options, values, &records)) {
            show_warning(owner, OUT_OF_MEMORY_TEXT, MEMORY_CAPTION);
            return -1;
        }
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

// dBase tables. Their numbers are little-endian, unlike those of the system's own files.
//
//   header       0 version, 1 last_update (3), 4 records (4), 8 header_length (2), 10 record_length (2),
//                12 reserved (20)
//   descriptors  one a field: 0 field_name (11), 11 field_type, 12 addr (4), 16 field_length,
//                17 decimal_length, 18 reserved (14)
//   terminator   one byte
//   rows         status byte, then the fields' bytes; a byte 0x1A behind the last row

constexpr std::array<unsigned char, 7> DBASE_VERSIONS = {0x03, 0x04, 0x05, 0x83, 0x84, 0x85, 0xF5};
constexpr std::size_t DBASE_HEADER_SIZE = 32;
constexpr std::size_t DBASE_DESCRIPTOR_SIZE = 32;
constexpr std::size_t DBASE_TERMINATOR_SIZE = 1;
constexpr std::size_t DBASE_HEADER_LENGTH = 8; // offsets
constexpr std::size_t DBASE_RECORD_LENGTH = 10;
constexpr std::size_t DBASE_FIELD_LENGTH = 16;
constexpr std::size_t DBASE_NAME_SIZE = 11;

constexpr char DBASE_DELETED = '*';
constexpr std::string_view DBASE_STATUSES = "* \x1A"; // deleted, valid, end of the rows

struct DBASE_TABLE {
    std::size_t field_count;
    std::size_t dbase_record_length; // with the status byte; a claim
};

std::size_t little_endian_word(std::string_view bytes, std::size_t offset) {
    const auto low = static_cast<unsigned char>(bytes[offset]);
    const auto high = static_cast<unsigned char>(bytes[offset + 1]);
    return low | static_cast<std::size_t>(high) << 8;
}

// A large lookup system file starts with a byte like a version too: the highest of its length. No table has
// its own length there.
bool is_lookup_system_file(std::string_view bytes) {
    BYTE_READER reader{bytes};
    return read_long(reader) == bytes.size() && read_byte(reader) == 'R';
}

std::optional<DBASE_TABLE> read_dbase_header(std::string_view bytes) {
    if (bytes.size() < DBASE_HEADER_SIZE || is_lookup_system_file(bytes))
        return {};
    const auto version = static_cast<unsigned char>(bytes.front());
    const std::size_t header_length = little_endian_word(bytes, DBASE_HEADER_LENGTH);
    if (std::find(DBASE_VERSIONS.begin(), DBASE_VERSIONS.end(), version) == DBASE_VERSIONS.end() ||
        header_length < DBASE_HEADER_SIZE + DBASE_TERMINATOR_SIZE)
        return {};
    return DBASE_TABLE{(header_length - DBASE_HEADER_SIZE - DBASE_TERMINATOR_SIZE) / DBASE_DESCRIPTOR_SIZE,
                       little_endian_word(bytes, DBASE_RECORD_LENGTH)};
}

// The next `size` bytes of the source, or none, and then it is at its end.
std::optional<std::string_view> take_bytes(TEXT_SOURCE& source, std::size_t size) {
    const std::string_view bytes = source.bytes.substr(source.position, size);
    source.position += bytes.size();
    if (bytes.size() < size)
        return {};
    return bytes;
}

std::string_view up_to_nul(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

// False when the source ends inside the descriptors.
bool read_dbase_fields(TEXT_SOURCE& source, std::vector<FIELD_DESCRIPTOR>& fields) {
    for (FIELD_DESCRIPTOR& field : fields) {
        const auto descriptor = take_bytes(source, DBASE_DESCRIPTOR_SIZE);
        if (!descriptor)
            return false;
        name_field(field, up_to_nul(descriptor->substr(0, DBASE_NAME_SIZE)));
        field.field_length = static_cast<std::uint8_t>((*descriptor)[DBASE_FIELD_LENGTH]);
    }
    take_bytes(source, DBASE_TERMINATOR_SIZE);
    return true;
}

// Finds the values of the next row that is not deleted. False when there is none.
bool read_dbase_record(TEXT_SOURCE& source, const std::vector<FIELD_DESCRIPTOR>& fields,
                       std::size_t dbase_record_length, VALUES& values) {
    for (;;) {
        source.position = source.bytes.find_first_of(DBASE_STATUSES, source.position);
        source.position = std::min(source.position, source.bytes.size());
        const auto status = take_bytes(source, 1);
        if (!status || status->front() == DBASE_STATUSES.back())
            return false;
        if (status->front() != DBASE_DELETED)
            break;
        take_bytes(source, std::max(dbase_record_length, std::size_t{1}) - 1);
    }
    values.clear();
    for (const FIELD_DESCRIPTOR& field : fields) {
        const auto value = take_bytes(source, field.field_length);
        if (!value)
            return false;
        values.push_back(up_to_nul(*value));
    }
    return true;
}

std::int64_t import_dbase(WINDOW owner, TEXT_SOURCE& source) {
    const auto table = read_dbase_header(source.bytes);
    if (!table)
        return 0;
    source.position = DBASE_HEADER_SIZE;
    std::vector<FIELD_DESCRIPTOR> fields(table->field_count);
    IMPORT_OPTIONS options;
    if (!read_dbase_fields(source, fields) || !choose_import_fields(owner, fields, options))
        return -1;
    VALUES values;
    return add_rows(owner, source, fields, options, values,
                    [&] { return read_dbase_record(source, fields, table->dbase_record_length, values); });
}

// Comma-separated text.

constexpr std::size_t ASCII_RECORD_LIMIT = 1024; // characters of a line; bytes of a row, with its NULs

constexpr int ROW_READ = 1;
constexpr int ROW_REFUSED = 0; // reported
constexpr int NO_MORE_ROWS = -2;

int blank_line(std::string_view str) {
    return str.find_first_not_of(' ') == std::string_view::npos ? 1 : 0;
}

constexpr unsigned char PRINTABLE_RANGE = '~' - ' ';

// Above PRINTABLE_RANGE when the character is not printable.
unsigned char place_in_range(char character) {
    return static_cast<unsigned char>(character - ' ');
}

bool is_unprintable(char character) {
    return place_in_range(character) > PRINTABLE_RANGE;
}

// Looks at all characters, so that the compiler can take many at a time.
bool holds_unprintable(std::string_view text) {
    unsigned char highest = 0;
    for (const char character : text)
        highest = std::max(highest, place_in_range(character));
    return highest > PRINTABLE_RANGE;
}

// Moves the printable characters of [source, end) to its front. Returns their number.
std::size_t filter_ascii_string(char* source, char* end) {
    return static_cast<std::size_t>(std::remove_if(source, end, is_unprintable) - source);
}

bool character_at(std::string_view line, std::size_t index, char character) {
    return index < line.size() && line[index] == character;
}

// What the values of a row take up in its buffer, each with a NUL behind it.
std::size_t row_size(const VALUES& values) {
    std::size_t size = values.size();
    for (const std::string_view value : values)
        size += value.size();
    return size;
}

// The values of the next row lie in `line`.
int read_text_ascii_record(WINDOW owner, TEXT_SOURCE& source, std::string& line, VALUES& values) {
    do {
        if (read_line(source, line, ASCII_RECORD_LIMIT) == 0)
            return NO_MORE_ROWS;
        const std::string_view rest = source.bytes.substr(source.position, 1);
        if (line.size() == ASCII_RECORD_LIMIT && !rest.empty() && rest != "\r" && rest != "\n") {
            show_warning(owner, "ASCII file contains lines greater than 1024 chars long");
            return ROW_REFUSED;
        }
        if (line.find('\0') != std::string::npos)
            std::erase(line, '\0'); // no value can hold one, and text of two-byte characters is full of them
    } while (blank_line(line) == 1);
    parse_buffer(line, values);
    if (row_size(values) <= ASCII_RECORD_LIMIT)
        return ROW_READ;
    show_warning(owner, "Conversion Error - Fields could not fit into buffer.");
    return ROW_REFUSED;
}

std::int64_t import_text(WINDOW owner, TEXT_SOURCE& source) {
    std::string line;
    VALUES values;
    source.position = 0;
    const int first_row = read_text_ascii_record(owner, source, line, values);
    if (first_row == NO_MORE_ROWS)
        show_warning(owner, "Empty ASCII File.");
    if (first_row != ROW_READ)
        return 0;

    std::vector<FIELD_DESCRIPTOR> fields(values.size());
    for (std::size_t i = 0; i < fields.size(); ++i)
        name_field(fields[i], values[i]);
    IMPORT_OPTIONS options;
    if (!choose_import_fields(owner, fields, options))
        return -1;

    source.position = 0; // the first row is data too
    return add_rows(owner, source, fields, options, values, [&] {
        if (read_text_ascii_record(owner, source, line, values) != ROW_READ)
            return false;
        values.resize(fields.size()); // a column beyond the row's values gets an empty one
        return true;
    });
}

} // namespace

int is_dbase_file(std::string_view bytes) {
    return read_dbase_header(bytes) ? 1 : 0;
}

std::int64_t read_dbase_file(WINDOW owner, TEXT_SOURCE& source) {
    return import_file(owner, source, import_dbase);
}

std::size_t parse_buffer(std::string& line, std::vector<std::string_view>& values) {
    const std::string_view text = line;
    const bool filter = holds_unprintable(text);
    values.clear();
    std::size_t i = 0;
    while (i < text.size()) {
        const bool first = values.empty();
        const bool comma = text[i] == ',';
        const bool quote = text[i] == '"';
        std::size_t begin = i;
        if (quote || (comma && !first))
            ++begin;
        const bool quote_after_comma = comma && !first && character_at(text, begin, '"');
        if (quote_after_comma)
            ++begin;
        const std::size_t end =
            std::min(text.find(quote || quote_after_comma ? '"' : ',', begin), text.size());
        i = end;
        if (quote && character_at(text, end + 1, ','))
            ++i;
        if (!first || end > begin) {
            ++i;
            if (!quote_after_comma && character_at(text, i, ','))
                --i; // so that the comma is seen as the next separator
        }
        std::size_t size = end - begin;
        if (filter && size > 0) {
            const std::size_t kept = first ? 1 : 0; // the row's very first character stays whatever it is
            size = kept + filter_ascii_string(line.data() + begin + kept, line.data() + end);
        }
        values.push_back(text.substr(begin, size));
    }
    return values.size();
}

std::int64_t read_text_ascii_file(WINDOW owner, TEXT_SOURCE& source) {
    return import_file(owner, source, import_text);
}
