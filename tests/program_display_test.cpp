#include "program/Prog_display.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <tuple>

namespace {

FIELD_DEFINITION placed(std::tuple<int, int, int, int> range, const std::string& prompt,
                        const std::string& pattern, int bits = 0, int type = INPUT_DATA) {
    FIELD_DEFINITION field;
    std::tie(field.start_row, field.start_col, field.end_row, field.end_col) = range;
    std::tie(field.prompt_string_handle, field.display_pattern_handle) = std::tie(prompt, pattern);
    std::tie(field.bit_values1, field.input_type) = std::tie(bits, type);
    return field;
}

// The lines, each without the empty cells at its end and closed by a bar; other empty cells are dots.
std::string shown(const std::list<FIELD_DEFINITION>& fields, int current, const FIELD_DEFINITION& edited) {
    const DISPLAY display = compose_display(fields, std::next(fields.begin(), current), edited);
    std::string lines;
    for (std::size_t at = 0; at < display.size(); at += DISPLAY_COLUMNS) {
        const std::string line(display.data() + at, DISPLAY_COLUMNS);
        lines += line.substr(0, line.find_last_not_of(EMPTY_CELL) + 1) + '|';
    }
    std::replace(lines.begin(), lines.end(), EMPTY_CELL, '.');
    return lines;
}

} // namespace

TEST(DisplayTest, FieldsOfOneScreenOverwriteEachOtherInOrder) {
    const std::list<FIELD_DEFINITION> fields = {
        placed({0, 0, 3, 19}, "another screen", "", NEW_SCREEN),
        placed({0, 0, 0, 19}, "QTY:", "____", NEW_SCREEN | HEADER_INPUT),
        placed({0, 8, 0, 19}, "M//D", "__//__", 0, INPUT_STAMP),
        placed({0, 6, 1, 5}, "A\rB", "\xFF=="),
        placed({3, 0, 3, 19}, "as stored", "????"),
        placed({1, 3, 1, 5}, "", "#####"),
        placed({0, 0, 3, 19}, "MDY", "", 0, INPUT_STAMP),
        placed({2, 0, 2, 19}, "abcdefghijklmnopqrstuvwxy", "!?"),
        placed({0, 0, 3, 19}, "another screen", "", NEW_SCREEN),
    };
    // The current field, what is edited in its place, and what is shown.
    const std::tuple<int, int, int, const char*> cases[] = {
        {4, 0, INPUT_DATA, "QTY:__A\rB\xFF==|Bin###_|abcdefghijklmnopqrs!||"},
        {4, NEW_SCREEN, INPUT_DATA, "|Bin###_|abcdefghijklmnopqrs!||"},
        {4, 0, INPUT_STAMP, "QTY:__A\rB\xFF==|...###|abcdefghijklmnopqrs!||"},
        {7, 0, INPUT_DATA, "QTY:__A\rB\xFF==|Bin:/__||as stored????|"},
        {1, 0, INPUT_DATA, "anotheA\rB\xFF==en|Bin###_|abcdefghijklmnopqrs!|as stored????|"},
        {0, 0, INPUT_DATA, "|Bin:/__|||"},
    };
    for (const auto& [current, bits, type, lines] : cases)
        EXPECT_EQ(shown(fields, current, placed({1, 0, 1, 9}, "Bin:/", "__", bits, type)), lines);
}

TEST(DisplayTest, NoPositionReachesBeyondTheCells) {
    const std::string text(250, 'x');
    for (const int start : {0, 3, 4, 255})
        for (const int end : {0, 3, 4, 255})
            shown({}, 0, placed({start, start, end, end}, text, text));
    // Where the end is before the start, there is no room for the prompt, and the pattern wraps.
    EXPECT_EQ(shown({}, 0, placed({3, 18, 0, 1}, "prompt", "abcdef")), "cd|||..................ab|");
    EXPECT_EQ(shown({}, 0, placed({255, 255, 255, 255}, "prompt", "ab")), "ab||||");
}

TEST(InputMaskTest, CountsItsInputAndComesFromStampCommands) {
    const std::pair<const char*, unsigned> masks[] = {
        {"", 0}, {"NNNF", 3}, {"NNNN", 251}, {"IAAI", 2}, {"IF", 0}};
    for (const auto& [mask, count] : masks)
        EXPECT_EQ(input_number_from_mask(mask), count) << mask;
    EXPECT_TRUE(valid_inputmask("ANDFI") && !valid_inputmask("a") && !check_for_decimal_inputmask(""));
    const char* const stamps[][3] = {
        {"mdyhis W:SIHYDM", "AAAAAAAAAAAAAAIAIAAAAAAAAAAAAAA", "______________ _:______________"},
        {"M/\r\xFF\xC4", "AAIIII", "__///0D/00/C4"},
    };
    for (const auto& [commands, mask, pattern] : stamps)
        EXPECT_EQ(stamp_inputmask(commands) + ' ' + stamp_displaypattern(commands),
                  std::string(mask) + ' ' + pattern);
}
