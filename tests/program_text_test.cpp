#include "program/Prog_text.h"

#include <gtest/gtest.h>

TEST(EscapedTextTest, ShowsStoredTextAndStoresWhatIsTyped) {
    struct {
        const char* escaped;
        const char* stored;
        const char* shown_back; // nullptr: as typed
    } const cases[] = {
        {"", "", nullptr},
        {"Item: ~ }", "Item: ~ }", nullptr},
        {"/0D/0A", "\r\n", nullptr},
        {"a//b", "a/b", nullptr},
        {"/00", "\xFF", nullptr},
        {"/FF", "\xFF", "/00"},
        {"/0d", "\r", "/0D"},
        {"/aB", "\xAB", "/AB"},
        {"/7E/20/7F", "~ \x7F", "~ /7F"},
        {"\xE9", "\xE9", "/E9"},
        {"AB/", "AB", "AB"},
        {"AB/4", "AB", "AB"},
        {"/G1x", "x", "x"},
        {"/1Zx", "x", "x"},
        {"/G/0D", "0D", "0D"},
        {"/1/41", "41", "41"},
        {"///41", "/A", "//A"},
        {"/@0/`0/:0", "", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(translate_string_to_hex(c.escaped), c.stored) << c.escaped;
        EXPECT_EQ(translate_hex_to_string(c.stored), c.shown_back != nullptr ? c.shown_back : c.escaped);
    }
}

TEST(EscapedTextTest, EveryByteSurvivesTheRoundTrip) {
    for (int byte = 1; byte < 256; ++byte) {
        const std::string stored = {'a', static_cast<char>(byte), '0', static_cast<char>(byte), '/'};
        const std::string escaped = translate_hex_to_string(stored);
        EXPECT_EQ(translate_string_to_hex(escaped), stored);
        for (const char c : escaped)
            EXPECT_TRUE(c >= 0x20 && c <= 0x7E) << byte;
    }
}

TEST(StaticTextTest, DoublesAmpersandsAndBlanksOutWhatCannotBeShown) {
    EXPECT_EQ(convert_ampersands_and_nonascii("A&B/&&"), "A&&B/&&&&");
    EXPECT_EQ(convert_ampersands_and_nonascii("\r\x98 ~\x7F\xFF\x1F\x80"), "\x7F\x7F ~\x7F\x7F\x7F\x7F");
    EXPECT_EQ(convert_ampersands_and_nonascii(""), "");
}

TEST(CharTableTest, RowsStandWhereTheOperatorExpectsThem) {
    struct {
        std::size_t row;
        const char* hex_string;
        const char* ascii_def;
        const char* output;
    } const cases[] = {
        {0, "/00", "NUL", "NUL"},
        {11, "/0B", "VT", "Page Up"},
        {26, "/1A", "SUB", "F10"},
        {31, "/1F", "US", "Alt Off"},
        {32, "/8C", "Tolvan Non-Ascii", "Alt On"},
        {47, "/9B", "Tolvan Non-Ascii", "Down Arrow"},
        {48, "/A0", "Tolvan Non-Ascii", "Sends Data File Name"},
        {57, "/A9", "Tolvan Non-Ascii", "Sends Header Input #9"},
        {58, "/D1", "Tolvan Non-Ascii", "Transmit Delay 1 Sec."},
        {67, "/F0", "Tolvan Non-Ascii", "F10"},
        {76, "/F9", "Tolvan Non-Ascii", "F9"},
        {79, "/FC", "Tolvan Non-Ascii", "Immediate Transmit (Suffix Only)"},
    };
    for (const auto& c : cases) {
        EXPECT_STREQ(CHAR_TABLE[c.row].hex_string, c.hex_string);
        EXPECT_STREQ(CHAR_TABLE[c.row].ascii_def, c.ascii_def);
        EXPECT_STREQ(CHAR_TABLE[c.row].output, c.output);
    }
    for (std::size_t row = 1; row < CHAR_TABLE.size(); ++row)
        EXPECT_LT(std::string(CHAR_TABLE[row - 1].hex_string), CHAR_TABLE[row].hex_string);
}
