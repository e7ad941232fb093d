#include "program/Prog_text.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <optional>

namespace {

constexpr char NUL_SUBSTITUTE = '\xFF'; // stands for NUL in stored text
constexpr char CANNOT_SHOW = '\x7F';
constexpr char ESCAPE = '/';
constexpr char HEX_DIGITS[] = "0123456789ABCDEF";
constexpr std::size_t TOKEN_SIZE = 3; // a slash and two digits

void append_token(std::string& escaped, char stored) {
    const auto value = stored == NUL_SUBSTITUTE ? 0U : static_cast<unsigned char>(stored);
    escaped += {ESCAPE, HEX_DIGITS[value >> 4], HEX_DIGITS[value & 0xF]};
}

std::optional<int> hex_value(char digit) {
    if (is_digit(digit))
        return digit - '0';
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    return {};
}

// The byte that a token of a slash and two digits stores, if it is one.
std::optional<char> token_byte(std::string_view token) {
    if (token.size() < TOKEN_SIZE)
        return {};
    const auto high = hex_value(token[1]);
    const auto low = hex_value(token[2]);
    if (!high || !low)
        return {};
    const int value = *high * 16 + *low;
    return value == 0 ? NUL_SUBSTITUTE : static_cast<char>(value);
}

} // namespace

std::string translate_hex_to_string(std::string_view stored) {
    std::string escaped;
    escaped.reserve(stored.size());
    for (const char byte : stored) {
        if (byte == ESCAPE)
            escaped += {ESCAPE, ESCAPE};
        else if (byte >= 0x20 && byte <= 0x7E)
            escaped += byte;
        else
            append_token(escaped, byte);
    }
    return escaped;
}

std::string translate_string_to_hex(std::string_view escaped) {
    std::string stored;
    stored.reserve(escaped.size());
    for (std::size_t i = 0; i < escaped.size();) {
        const std::string_view rest = escaped.substr(i);
        if (rest[0] != ESCAPE) {
            stored += rest[0];
            i += 1;
        } else if (rest.size() > 1 && rest[1] == ESCAPE) {
            stored += ESCAPE;
            i += 2;
        } else {
            if (const auto byte = token_byte(rest))
                stored += *byte;
            i += TOKEN_SIZE;
        }
    }
    return stored;
}

std::string normal_escaped_text(std::string_view escaped) {
    return translate_hex_to_string(translate_string_to_hex(escaped));
}

std::string convert_ampersands_and_nonascii(std::string_view stored) {
    std::string shown;
    shown.reserve(stored.size());
    for (const char byte : stored) {
        if (byte == '&')
            shown += "&&";
        else
            shown += byte >= 0x20 && byte <= 0x7E ? byte : CANNOT_SHOW;
    }
    return shown;
}

std::int32_t decimal_value(const std::string& stored) {
    using LIMITS = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::clamp<long long>(std::strtoll(stored.c_str(), nullptr, 10), LIMITS::min(), LIMITS::max()));
}

const std::array<SPECIAL_CHARACTER, 80> CHAR_TABLE = {{
    {"/00", "NUL", "NUL"},
    {"/01", "SOH", "Left Arrow"},
    {"/02", "STX", "Right Arrow"},
    {"/03", "ETX", "Up Arrow"},
    {"/04", "EOT", "Down Arrow"},
    {"/05", "ENQ", "Home"},
    {"/06", "ACK", "End"},
    {"/07", "BEL", "Del"},
    {"/08", "BS", "Backspace"},
    {"/09", "HT", "Horizontal Tab"},
    {"/0A", "LF", "Line Feed"},
    {"/0B", "VT", "Page Up"},
    {"/0C", "FF", "Page Down"},
    {"/0D", "CR", "Carriage Return"},
    {"/0E", "SO", "Shift On"},
    {"/0F", "SI", "Shift Off"},
    {"/10", "DLE", "INS"},
    {"/11", "DC1", "F1"},
    {"/12", "DC2", "F2"},
    {"/13", "DC3", "F3"},
    {"/14", "DC4", "F4"},
    {"/15", "NAK", "F5"},
    {"/16", "SYN", "F6"},
    {"/17", "ETB", "F7"},
    {"/18", "CAN", "F8"},
    {"/19", "EM", "F9"},
    {"/1A", "SUB", "F10"},
    {"/1B", "ESC", "Escape"},
    {"/1C", "FS", "Ctrl On"},
    {"/1D", "GS", "Ctrl Off"},
    {"/1E", "RS", "Alt On"},
    {"/1F", "US", "Alt Off"},
    {"/8C", "Tolvan Non-Ascii", "Alt On"},
    {"/8D", "Tolvan Non-Ascii", "Alt Off"},
    {"/8E", "Tolvan Non-Ascii", "Ctrl On"},
    {"/8F", "Tolvan Non-Ascii", "Ctrl Off"},
    {"/90", "Tolvan Non-Ascii", "Shift On"},
    {"/91", "Tolvan Non-Ascii", "Shift Off"},
    {"/92", "Tolvan Non-Ascii", "Page Up"},
    {"/93", "Tolvan Non-Ascii", "Page Down"},
    {"/94", "Tolvan Non-Ascii", "Home"},
    {"/95", "Tolvan Non-Ascii", "End"},
    {"/96", "Tolvan Non-Ascii", "Del"},
    {"/97", "Tolvan Non-Ascii", "Insert"},
    {"/98", "Tolvan Non-Ascii", "Left Arrow"},
    {"/99", "Tolvan Non-Ascii", "Right Arrow"},
    {"/9A", "Tolvan Non-Ascii", "Up Arrow"},
    {"/9B", "Tolvan Non-Ascii", "Down Arrow"},
    {"/A0", "Tolvan Non-Ascii", "Sends Data File Name"},
    {"/A1", "Tolvan Non-Ascii", "Sends Header Input #1"},
    {"/A2", "Tolvan Non-Ascii", "Sends Header Input #2"},
    {"/A3", "Tolvan Non-Ascii", "Sends Header Input #3"},
    {"/A4", "Tolvan Non-Ascii", "Sends Header Input #4"},
    {"/A5", "Tolvan Non-Ascii", "Sends Header Input #5"},
    {"/A6", "Tolvan Non-Ascii", "Sends Header Input #6"},
    {"/A7", "Tolvan Non-Ascii", "Sends Header Input #7"},
    {"/A8", "Tolvan Non-Ascii", "Sends Header Input #8"},
    {"/A9", "Tolvan Non-Ascii", "Sends Header Input #9"},
    {"/D1", "Tolvan Non-Ascii", "Transmit Delay 1 Sec."},
    {"/D2", "Tolvan Non-Ascii", "Transmit Delay 2 Sec."},
    {"/D3", "Tolvan Non-Ascii", "Transmit Delay 3 Sec."},
    {"/D4", "Tolvan Non-Ascii", "Transmit Delay 4 Sec."},
    {"/D5", "Tolvan Non-Ascii", "Transmit Delay 5 Sec."},
    {"/D6", "Tolvan Non-Ascii", "Transmit Delay 6 Sec."},
    {"/D7", "Tolvan Non-Ascii", "Transmit Delay 7 Sec."},
    {"/D8", "Tolvan Non-Ascii", "Transmit Delay 8 Sec."},
    {"/D9", "Tolvan Non-Ascii", "Transmit Delay 9 Sec."},
    {"/F0", "Tolvan Non-Ascii", "F10"},
    {"/F1", "Tolvan Non-Ascii", "F1"},
    {"/F2", "Tolvan Non-Ascii", "F2"},
    {"/F3", "Tolvan Non-Ascii", "F3"},
    {"/F4", "Tolvan Non-Ascii", "F4"},
    {"/F5", "Tolvan Non-Ascii", "F5"},
    {"/F6", "Tolvan Non-Ascii", "F6"},
    {"/F7", "Tolvan Non-Ascii", "F7"},
    {"/F8", "Tolvan Non-Ascii", "F8"},
    {"/F9", "Tolvan Non-Ascii", "F9"},
    {"/FA", "Tolvan Non-Ascii", "Pause Until Key is Pressed"},
    {"/FB", "Tolvan Non-Ascii", "Field Total (EOF Text Only)"},
    {"/FC", "Tolvan Non-Ascii", "Immediate Transmit (Suffix Only)"},
}};
