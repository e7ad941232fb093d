// A field starts with its status byte. Bits 7 to 5 tell the coding, the others the payload's length:
//
//   111         empty
//   000 001 010 110  packed, starting in table 1, 3, 2, 5; bit 4: the length is the next byte, else bits 3-0
//   100         as it is; the length is bits 4-0
//   101         as it is when bits 4-0 are 0, the length is the next byte; else as 011
//   011         one character: the status byte itself, in table 0
#include "convert/CONVERT_text.h"

#include <array>

namespace {

constexpr int SINGLE_TABLE = 0; // whole bytes, for texts of one character
constexpr int DIGITS_TABLE = 1;
constexpr int LOWER_TABLE = 2;
constexpr int UPPER_TABLE = 3;
constexpr int SIGNS_TABLE = 4;
constexpr int BYTES_TABLE = 5;
constexpr std::array WIDTHS = {8, 4, 5, 5, 5, 7};
constexpr unsigned FILLER = 127; // ends a stream of BYTES_TABLE that does not fill its last byte

constexpr unsigned LENGTH_FOLLOWS = 0x10; // in a packed field's status
constexpr unsigned PACKED_LENGTH_MASK = 0x0F;
constexpr unsigned RAW_LENGTH_MASK = 0x1F;

enum class CODING { EMPTY, SINGLE, RAW, PACKED };

struct FIELD_LAYOUT {
    CODING coding = CODING::EMPTY;
    int table = 0;               // the first one of a packed text
    bool length_follows = false; // in the byte behind the status
    std::size_t length = 0;      // of the payload, where it stands in the status
};

FIELD_LAYOUT packed_layout(int table, unsigned status) {
    return {CODING::PACKED, table, (status & LENGTH_FOLLOWS) != 0, status & PACKED_LENGTH_MASK};
}

FIELD_LAYOUT field_layout(std::uint8_t status) {
    const unsigned raw_length = status & RAW_LENGTH_MASK;
    switch (status >> 5) {
    case 0:
        return packed_layout(DIGITS_TABLE, status);
    case 1:
        return packed_layout(UPPER_TABLE, status);
    case 2:
        return packed_layout(LOWER_TABLE, status);
    case 3:
        return {CODING::SINGLE};
    case 4:
        return {CODING::RAW, 0, false, raw_length};
    case 5:
        return raw_length == 0 ? FIELD_LAYOUT{CODING::RAW, 0, true} : FIELD_LAYOUT{CODING::SINGLE};
    case 6:
        return packed_layout(BYTES_TABLE, status);
    default: // also the codes that table 0 has there: a field of that status is empty
        return {};
    }
}

// Takes codes off a packed payload.
struct CODE_READER {
    std::string_view bytes;
    std::size_t position = 0; // bits
};

// False when fewer bits are left than a code of the table has.
bool read_code(CODE_READER& reader, int table, unsigned& code) {
    const auto width = static_cast<std::size_t>(get_width(table));
    if (reader.bytes.size() * 8 - reader.position < width)
        return false;
    std::uint8_t byte = 0;
    copy_bits(&byte, 8 - width, reinterpret_cast<const std::uint8_t*>(reader.bytes.data()), reader.position,
              width);
    reader.position += width;
    code = byte;
    return true;
}

std::string expand_packed(std::string_view payload, int table) {
    std::string text;
    CODE_READER reader{payload};
    for (unsigned code = 0; read_code(reader, table, code);) {
        if (const int selected = is_switch_char(table, code)) {
            table = selected;
        } else if (const int escaped = is_escape_char(table, code)) {
            if (!read_code(reader, escaped, code))
                break;
            text += static_cast<char>(expand_char(escaped, code));
        } else if (table != BYTES_TABLE || code != FILLER) {
            text += static_cast<char>(expand_char(table, code));
        }
    }
    return text;
}

std::string expand_field(std::string_view field) {
    if (field.empty())
        return {};
    const auto status = static_cast<std::uint8_t>(field.front());
    const FIELD_LAYOUT layout = field_layout(status);
    field.remove_prefix(1);
    std::size_t length = layout.length;
    if (layout.length_follows) {
        length = field.empty() ? 0 : static_cast<std::uint8_t>(field.front());
        field = field.substr(field.empty() ? 0 : 1);
    }
    const std::string_view payload = field.substr(0, length);
    switch (layout.coding) {
    case CODING::SINGLE:
        return {static_cast<char>(expand_char(SINGLE_TABLE, status))};
    case CODING::RAW:
        return std::string(payload);
    case CODING::PACKED:
        return expand_packed(payload, layout.table);
    default:
        return {};
    }
}

std::uint8_t expand_single(unsigned code) {
    struct RANGE {
        unsigned first, last;
        std::uint8_t character; // of the first code
    };
    static constexpr RANGE RANGES[] = {{0x60, 0x69, '0'}, {0x6A, 0x7F, 'A'}, {0xA1, 0xA4, 'W'},
                                       {0xA5, 0xBE, 'a'}, {0xBF, 0xBF, ' '}, {0xFD, 0xFF, 0xFD}};
    for (const RANGE& range : RANGES)
        if (code >= range.first && code <= range.last)
            return static_cast<std::uint8_t>(range.character + (code - range.first));
    return 0;
}

} // namespace

int read_compressed_field(std::FILE* file, std::string& dest) {
    dest.clear();
    const int status = std::fgetc(file);
    if (status == EOF)
        return -1;
    dest += static_cast<char>(status);
    const FIELD_LAYOUT layout = field_layout(static_cast<std::uint8_t>(status));
    std::size_t length = layout.length;
    if (layout.length_follows) {
        const int next = std::fgetc(file);
        if (next == EOF)
            return 1;
        dest += static_cast<char>(next);
        length = static_cast<std::size_t>(next);
    }
    const std::size_t start = dest.size();
    dest.resize(start + length);
    dest.resize(start + std::fread(dest.data() + start, 1, length, file));
    return static_cast<int>(dest.size());
}

int decompress_string(std::string* dest, std::string_view field) {
    std::string text = expand_field(field);
    const int size = static_cast<int>(text.size()) + 1;
    if (dest != nullptr)
        *dest = std::move(text);
    return size;
}

void copy_bits(std::uint8_t* dest, std::size_t dest_bit, const std::uint8_t* src, std::size_t src_bit,
               std::size_t count) {
    for (; count > 0; --count, ++dest_bit, ++src_bit) {
        const unsigned mask = 0x80U >> dest_bit % 8;
        const bool is_set = (src[src_bit / 8] & 0x80U >> src_bit % 8) != 0;
        std::uint8_t& byte = dest[dest_bit / 8];
        byte = static_cast<std::uint8_t>(is_set ? byte | mask : byte & ~mask);
    }
}

bool read_string_data(std::FILE* file, std::string& dest) {
    // Texts that start so are marks of the earlier model and stand for no text.
    constexpr char MARKS[] = {'\xFD', '\xFE'};
    std::string field;
    const bool is_read = read_compressed_field(file, field) > 0;
    decompress_string(&dest, field);
    if (!dest.empty() && (dest.front() == MARKS[0] || dest.front() == MARKS[1]))
        dest.clear();
    return is_read;
}

int get_width(int table) {
    return table >= 0 && table < static_cast<int>(WIDTHS.size()) ? WIDTHS[static_cast<std::size_t>(table)]
                                                                 : 0;
}

int is_switch_char(int table, unsigned code) {
    switch (table) {
    case DIGITS_TABLE:
        return code == 12 ? LOWER_TABLE : code == 13 ? UPPER_TABLE : 0;
    case LOWER_TABLE:
        return code == 28 ? UPPER_TABLE : code == 29 ? DIGITS_TABLE : 0;
    case UPPER_TABLE:
        return code == 28 ? DIGITS_TABLE : code == 29 ? LOWER_TABLE : 0;
    default:
        return 0;
    }
}

int is_escape_char(int table, unsigned code) {
    if (table != DIGITS_TABLE && table != LOWER_TABLE && table != UPPER_TABLE)
        return 0;
    const unsigned first = table == DIGITS_TABLE ? 14 : 30;
    return code == first ? SIGNS_TABLE : code == first + 1 ? BYTES_TABLE : 0;
}

std::uint8_t expand_char(int table, unsigned code) {
    // What the codes of tables 1 to 4 stand for, from 0 on; switches and escapes stand behind them.
    static constexpr std::string_view CHARACTERS[] = {"0123456789 .", "abcdefghijklmnopqrstuvwxyz .",
                                                      "ABCDEFGHIJKLMNOPQRSTUVWXYZ .",
                                                      "!\"#$%&'()*+,-./0123456789:;<=>?@"};
    if (table == SINGLE_TABLE)
        return expand_single(code);
    if (table == BYTES_TABLE)
        return static_cast<std::uint8_t>(code <= FILLER ? code : 0);
    if (table < DIGITS_TABLE || table > SIGNS_TABLE)
        return 0;
    const std::string_view characters = CHARACTERS[table - DIGITS_TABLE];
    return static_cast<std::uint8_t>(code < characters.size() ? characters[code] : 0);
}
