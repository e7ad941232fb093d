#include "setup/SETUP_formats.h"

#include <charconv>
#include <cstdio>

namespace {

struct PATTERN {
    const char* text;
    bool zero_is_off;
};
constexpr PATTERN PATTERNS[] = {
    // in the order of VALUE_FORMAT
    {"%u", false}, {"%u.%us", false}, {" %us", true}, {"%02um", true}, {"%02ums", false}, {"%02XH", false},
};
constexpr char OFF[] = "OFF";
constexpr std::size_t LONGEST_TEXT = 16; // of any 32-bit value

// The codes between the characters, the cursor keys and the function keys.
struct GAP {
    unsigned first;
    unsigned last;
};
constexpr GAP TERMINATION_GAPS[] = {{0x80, 0x8B}, {0x9C, 0xEF}};

} // namespace

std::string format_value(unsigned value, VALUE_FORMAT format) {
    const PATTERN& pattern = PATTERNS[static_cast<int>(format)];
    if (value == 0 && pattern.zero_is_off)
        return OFF;
    const bool tenths = format == VALUE_FORMAT::TENTHS;
    char text[LONGEST_TEXT];
    const int length =
        std::snprintf(text, sizeof text, pattern.text, tenths ? value / 10 : value, value % 10);
    return {text, static_cast<std::size_t>(length)};
}

unsigned read_value(std::string_view text, VALUE_FORMAT format) {
    const bool hexadecimal = format == VALUE_FORMAT::HEXADECIMAL;
    std::string digits; // lead, point and unit left out; of OFF nothing is left
    for (const char c : text)
        if ((c >= '0' && c <= '9') || (hexadecimal && c >= 'A' && c <= 'F'))
            digits += c;
    unsigned value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value, hexadecimal ? 16 : 10);
    return value;
}

std::optional<unsigned> step_termination_code(unsigned code, int direction, const STEP_RANGE& range) {
    const std::optional<unsigned> next = step_value(code, direction, range);
    for (const GAP& gap : TERMINATION_GAPS)
        if (next && *next >= gap.first && *next <= gap.last)
            return direction > 0 ? gap.last + 1 : gap.first - 1;
    return next;
}
