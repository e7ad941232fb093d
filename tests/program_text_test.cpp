#include "program/Prog_text.h"

#include <gtest/gtest.h>

TEST(EscapedTextTest, StoresWhatIsTypedAndShowsWhatIsStored) {
    const char* const cases[][3] = {
        {"/0d/0Aa//b", "\r\na/b", "/0D/0Aa//b"},
        {"/00/Ff/aB", "\xFF\xFF\xAB", "/00/00/AB"},
        {"/7E/20/7F\xE9/1F/80", "~ \x7F\xE9\x1F\x80", "~ /7F/E9/1F/80"},
        {"AB/4", "AB", "AB"}, // a malformed token goes, with two characters behind its slash
        {"/G1x/1Zx", "xx", "xx"},
        {"///41", "/A", "//A"},
        {"/@0/`0/:0", "", ""},
    };
    for (const auto& [typed, stored, shown] : cases) {
        EXPECT_EQ(translate_string_to_hex(typed), stored) << typed;
        EXPECT_EQ(translate_hex_to_string(stored), shown) << typed;
    }
}

TEST(StaticTextTest, DoublesAmpersandsAndBlanksOutWhatCannotBeShown) {
    EXPECT_EQ(convert_ampersands_and_nonascii("A&/&&\r ~\x7F\xFF\x1F\x80"), "A&&/&&&&\x7F ~\x7F\x7F\x7F\x7F");
}

TEST(CharTableTest, RowsStandInTheOrderOfTheirTokens) {
    EXPECT_STREQ(CHAR_TABLE[58].output, "Transmit Delay 1 Sec.");
    for (std::size_t row = 1; row < CHAR_TABLE.size(); ++row)
        EXPECT_LT(std::string(CHAR_TABLE[row - 1].hex_string), CHAR_TABLE[row].hex_string);
}
