// Texts for the portable. Stored text holds the bytes as the portable has them, 0xFF standing for NUL;
// escaped text is what the operator sees and types: a slash and two hexadecimal digits for any byte, "//" for
// a slash.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

// Stored text to escaped text; digits in upper case, 0xFF as "/00".
std::string translate_hex_to_string(std::string_view stored);

// Escaped text to stored text. A malformed token is dropped with the two characters behind its slash.
std::string translate_string_to_hex(std::string_view escaped);

// Escaped text in its normal form: upper-case digits, no malformed tokens. What it stores stays the same.
std::string normal_escaped_text(std::string_view escaped);

// Stored text to the text of a static control: '&' doubled, every byte that cannot be shown as 0x7F.
std::string convert_ampersands_and_nonascii(std::string_view stored);

inline bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

// The number at the start of a stored text, as far as 32 bits hold it; 0 when there is none.
std::int32_t decimal_value(const std::string& stored);

// The catalogue of special characters that the operator picks from.
struct SPECIAL_CHARACTER {
    const char* hex_string; // the escaped token
    const char* ascii_def;  // mnemonic of a control character, or "Tolvan Non-Ascii"
    const char* output;     // what the portable does with the byte
};
extern const std::array<SPECIAL_CHARACTER, 80> CHAR_TABLE;
