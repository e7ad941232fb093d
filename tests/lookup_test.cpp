#include "program/LOOKUP.h"
#include "program/Prog.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

namespace {

std::string rewritten(char kind, std::string_view text) {
    return kind == 'T' ? lookup_table_text(parse_lookup_table(text))
                       : lookup_file_text(parse_lookup_file(text));
}

TEST(LookupTest, AStringIsReadByItsRulesAndWrittenInOrder) {
    const std::string full = "T," + std::string(245, 'x');
    const std::tuple<char, std::string, std::string> cases[] = {
        {'T', "TA,RED,GREEN,?Bad, or?", "TA,RED,GREEN,?Bad, or?"},
        {'T', "t,A,B", "T,A,B"},
        {'T', "TXpza", "TAP"},
        {'T', "T,,?m", "T,?m"}, // the comma before the '?' belongs to the message
        {'T', "T,A?,B", "T,A,?,B"},
        {'T', "T?P,A", "T,?P,A"},
        {'T', "F,A", "T"},
        {'T', full + "AB,CDE", full + "AB,"},
        {'F', "fopasd0,x,003,9,1,00,3", "FD0SAPO,x,003,9,1,00,3"},
        {'F', "FD123", "FD12,,1,1,1,1,1"},
        {'F', "FS,P", "F,P,1,1,1,1,1"}, // "Auto Advance" goes with the display field only
        {'F', "F,LONGERNAME,,0,x,,4,9,9,?m", "F,LONGERNA,1,1,1,1,1,?m"},
        {'F', "F,K/C4SEH/C4USER", "F,K/C4SEH/C4US,1,1,1,1,1"}, // eight characters as the portable counts
    };
    for (const auto& [kind, text, written] : cases)
        EXPECT_EQ(rewritten(kind, text), written) << text;
    EXPECT_EQ(lookup_table_text({{true, true, "m"}, {""}}), "TAP,,,?m") << "one empty entry";
}

TEST(LookupTest, WhatIsReadFromAnyTextStaysAsItIs) {
    std::mt19937 random(7);
    for (int i = 0; i < 10000; ++i) {
        const char kind = "TF"[i % 2];
        std::string text(1, kind);
        for (auto left = random() % 260; left > 0; --left)
            text += "TFAPDSO,,,??0123xy\xE9/&"[random() % 21];
        const std::string written = rewritten(kind, text);
        EXPECT_EQ(rewritten(kind, written), written) << text;
        EXPECT_LE(written.size(), LOOKUP_LIMIT) << text;
    }
}

TEST(LookupTest, MarksInTypedTextBreakNoString) {
    LOOKUP_TABLE table = parse_lookup_table("T,A,B,C");
    replace_lookup_entry(table, 1, "b,,c?d,e");
    EXPECT_EQ(lookup_table_text(table), "T,A,b,,c,C");
    replace_lookup_entry(table, 0, "x/0d/");
    EXPECT_EQ(lookup_table_text(table), "T,x/0D,b,,c,C");
    table = parse_lookup_table("T,A,B,?message");
    replace_lookup_entry(table, 0, std::string(200, '\xE9'));
    EXPECT_EQ(lookup_table_text(table).size(), 250) << "whole tokens, and all that stands behind them";
    EXPECT_TRUE(lookup_table_text(table).ends_with("/E9,B,?message"));
    LOOKUP_FILE file = parse_lookup_file("FD3,");
    std::tie(file.target_field, file.name, file.end_row) = std::tuple("007", "A,B", "2?3");
    EXPECT_EQ(lookup_file_text(file), "FD7,A,1,1,1,1,2");
}

TEST(LookupTest, AFileIsCheckedInOrderAndItsTargetNoted) {
    const std::tuple<const char*, const char*, const char*, int> cases[] = {
        {"FD1,,1,1,1,0,3", "99", "", 99},
        {"F,,1,1,1,0,3", "", "", 55},
        {"FD1,,1,1,1,4,10", "100", "Start Row/End Row Greater than 3|Lookup File Definition", 55},
        {"FD1,,1,1,1,3,2", "100", "Start Row is Greater than End Row|Lookup File Definition", 55},
        {"F,,1,1,1,1,", "100", "Valid Target Field value is 0-99|Target Field Error", 0},
        {"FD1,", "", "If Add Display Field is selected,\nTarget Field must be entered.|Target Field", 55},
    };
    for (const auto& [text, target_field, message, noted] : cases) {
        LOOKUP_FILE file = parse_lookup_file(text);
        file.target_field = target_field;
        target = 55;
        const EDIT_FAULT fault = find_lookup_file_fault(file);
        EXPECT_EQ(fault.text + (fault.text.empty() ? "" : "|") + fault.caption, message);
        EXPECT_EQ(target, noted) << text;
    }
}

} // namespace
