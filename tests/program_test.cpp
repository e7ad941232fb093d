#include "program/Prog_checks.h"
#include "program/Prog_display.h"
#include "program/Prog_fields.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <tuple>

namespace {

constexpr unsigned MOST = 0xFFFFFFFF;

FIELD_DEFINITION placed(int start_row, int start_col, int end_row, int end_col, int bit_values1 = 0,
                        int input_type = INPUT_DATA, const std::string& prompt = "",
                        const std::string& pattern = "") {
    FIELD_DEFINITION field;
    field.prompt_string_handle = prompt;
    field.display_pattern_handle = pattern;
    std::tie(field.start_row, field.start_col, field.end_row, field.end_col, field.bit_values1,
             field.input_type) = std::tuple(start_row, start_col, end_row, end_col, bit_values1, input_type);
    return field;
}

// A header and three record fields on rows of their own.
void set_four_fields() {
    init_programming();
    program_header.fields = {placed(0, 0, 0, 9, HEADER_INPUT), placed(1, 0, 1, 9), placed(2, 0, 2, 9),
                             placed(3, 0, 3, 9)};
}

FIELD_DEFINITION& field_number(int number) {
    return *std::next(program_header.fields.begin(), number - 1);
}

std::array<int, 8> options() {
    const auto& all = global_options;
    return {all.field_compare, all.field_to_inc, all.amount_to_inc,     all.dup_warning,
            all.mult_field_1,  all.mult_field_2, all.mult_field_result, all.mult_field_operator};
}

void expect_refusal(const std::string& text) {
    const std::string before_save = check_fields_before_save();
    const std::string refusal = before_save.empty() ? update_counts_and_flags() : before_save;
    EXPECT_EQ(refusal, text.empty() ? "" : "Cannot Save Program File.\n" + text);
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

TEST(ProgramFieldsTest, RowsShowWhatTheFieldsHold) {
    program_header.fields.clear();
    for (const char* codes : {"D?V", "NSR", "E?r", "dBL"}) { // type, source and format
        auto& field = program_header.fields.emplace_back();
        std::tie(field.input_type, field.input_source, field.output_format) =
            std::tuple(codes[0], codes[1], codes[2]);
    }
    auto& first = program_header.fields.front();
    first.bit_values1 = HEADER_INPUT;
    first.prompt_string_handle = "a\tb/\xFF&%s";
    first.max_input = 20;
    first.min_input = 250;
    const std::vector<std::string> expected = {
        "  1\tHeader\tData\ta/09b///00&%s\t 20\t250\t\t   Variable",
        "  2\tRecord\tNo Edit\t\t  0\t  0\t     Serial\tRight Justify",
        "  3\tRecord\tExhibit\t\t  0\t  0\t     Serial\tUnknown",
        "  4\tRecord\tUnknown\t\t  0\t  0\t    Barcode\t Left Justify",
        "<<END OF PROGRAM>>",
    };
    EXPECT_EQ(field_list_rows(), expected);
}

TEST(ProgramFieldsTest, ChecksReportTheFirstFault) {
    const char* const no_fit = "Prompt and data will not fit within start/end range";
    const char* const letters = "Input Mask field can only contain the letters 'A', 'D', 'F', 'I', and 'N'.";
    const FIELD_DEFINITION plain;
    FIELD_DEFINITION sum;
    sum.bit_values2 = ALLOW_CALCULATION;
    const struct {
        FIELD_EDITS edits; // field, start row and column, end row and column, max, min, prompt, mask
        const char* text;
        const char* caption = "Field Definition";
    } cases[] = {
        {{plain, 4, 99, 2, 0, 0, 1, "", ""}, "Max Input Value less than Min Input Value"},
        {{plain, 4, 99, 2, 0, MOST, 251, "", ""}, "Min Input Greater Than 250"},
        {{plain, 4, 99, 2, 0, 251, 250, "", ""}, "Max Input Greater Than 250"},
        {{plain, 4, 99, 2, 0, 0, 0, "", ""}, "Max Input Less Than 1"},
        {{plain, 4, 99, 2, 0, 1, 0, "", ""}, "End Row less than Start Row"},
        {{plain, 4, 99, 4, 98, 1, 0, "", ""}, "End Col less than Start Col"},
        {{plain, 4, 99, 5, 98, 1, 0, "", ""}, "Start Row Greater Than 3"},
        {{plain, 3, 99, MOST, 98, 1, 0, "", ""}, "End Row Greater Than 3"},
        {{plain, 2, MOST, 3, 98, 1, 0, "", ""}, "Start Col Greater Than 19"},
        {{plain, 2, 19, 3, 20, 1, 0, "", ""}, "End Col Greater Than 19"},
        {{plain, 0, 0, 0, 19, 1, 0, std::string(20, 'P'), ""}, no_fit},
        {{plain, 0, 0, 0, 19, 1, 1, std::string(19, 'P'), "A"}, "", ""},
        {{plain, 0, 18, 1, 0, 1, 1, "/0D", "A"}, no_fit}, // as typed, in three cells
        {{plain, 0, 17, 1, 0, 1, 1, "/0D", "A"}, "", ""},
        {{plain, 0, 0, 0, 19, 250, 4, "", "NNNF"},
         "Minimum Input value is greater than input allowed from Input Mask field."},
        {{plain, 0, 0, 0, 19, 250, 250, "", "NNN"}, "", ""},
        {{plain, 0, 0, 0, 19, 250, 0, "", ""}, letters},
        {{sum, 0, 0, 0, 19, 250, 0, "", "AX"}, letters},
        {{sum, 0, 0, 0, 19, 250, 0, "", "DA"},
         "When Allow Calculation is ON\nInput Mask must be Decimal.",
         "Input Mask Error"},
        {{sum, 0, 0, 0, 19, 250, 0, "", "D/44"}, "", ""},
    };
    for (const auto& [edits, text, caption] : cases) {
        const EDIT_FAULT fault = find_field_fault(edits);
        EXPECT_EQ(fault.text + '|' + fault.caption, std::string(text) + '|' + caption);
    }
}

TEST(ProgramFieldsTest, StoringNotesTheLookup) {
    init_programming();
    field_list_selection = 0;
    program_header.fields.resize(1);
    FIELD_DEFINITION edited;
    for (const char* lookup : {"FD1,A", "", "T,B"}) {
        edited.lookup_filename_handle = lookup;
        store_field(edited);
        EXPECT_EQ(lookup_string, lookup);
    }
    no_lookup_target = true;
    lookup_string = "T,of another field";
    edited.lookup_filename_handle.clear();
    edited.input_source = SOURCE_LOOKUP_FILE;
    store_field(edited);
    EXPECT_EQ(lookup_string, "T,of another field");
    EXPECT_FALSE(no_lookup_target);
}

TEST(ProgramFieldsTest, AreInsertedUpToTheMostAndCheckedBeforeASave) {
    init_programming();
    field_list_selection = 0;
    program_header.fields.assign(MAX_FIELDS - 1, placed(0, 0, 0, 9, NEW_SCREEN));
    EXPECT_TRUE(insert_field());
    EXPECT_EQ(field_list_total, 251);
    EXPECT_FALSE(insert_field());
    field_list_selection = 250;
    store_field({}); // on the end row
    EXPECT_EQ(program_header.fields.size(), MAX_FIELDS);
    expect_refusal("");
    program_header.fields.push_back(placed(0, 0, 0, 9, NEW_SCREEN));
    expect_refusal("Maximum number of Field Definitions allowed is 250.");
}

TEST(ProgramChecksTest, OverlapIsSeenOnTheScreenAndTheRowOnly) {
    const auto first = placed(0, 0, 0, 9);
    const auto touching = placed(0, 9, 0, 12);
    const std::pair<std::list<FIELD_DEFINITION>, int> cases[] = {
        {{first, touching}, 2},
        {{first, placed(0, 10, 0, 12)}, 0},
        {{touching, first}, 2},                                    // left of an earlier one
        {{placed(0, 0, 1, 3), first, placed(1, 3, 1, 9)}, 3},      // counts where it ends
        {{placed(255, 255, 255, 255), placed(255, 255, 0, 0)}, 2}, // off the display
        // A new screen forgets the one before, and headers start screens too.
        {{first, placed(0, 0, 0, 9, NEW_SCREEN), touching}, 3},
        {{first, placed(1, 0, 1, 9, HEADER_INPUT | NEW_SCREEN), first}, 0},
        // Headers and stamps are not compared but compared with; a stamp starts no screen.
        {{first, placed(0, 0, 0, 3, HEADER_INPUT), placed(0, 9, 0, 9)}, 3},
        {{placed(0, 0, 0, 9, HEADER_INPUT), touching}, 2},
        {{first, placed(0, 0, 1, 3, NEW_SCREEN, INPUT_STAMP), touching}, 3},
        {{first, placed(0, 0, 1, 3, 0, INPUT_STAMP), placed(1, 3, 1, 9)}, 3},
    };
    for (const auto& [fields, overlapping] : cases) {
        program_header.fields = fields;
        int number = 0;
        EXPECT_EQ(overlapped_fields(&number), overlapping != 0);
        EXPECT_EQ(number, overlapping) << "in case " << &fields - &cases[0].first;
    }
}

TEST(ProgramChecksTest, LookupDataGoesToTheFieldThatTheDefinitionNames) {
    set_four_fields();
    const auto passes = [](const char* definition) {
        program_header.header_count = 77; // stale until a save
        lookup_string = definition;
        return CheckLookupDataDumpField();
    };
    EXPECT_TRUE(passes("FD9,PARTS")) << "no receiver";
    field_number(3).input_source = SOURCE_LOOKUP_FILE;
    field_number(4).input_source = SOURCE_LOOKUP_FILE;
    for (const char* good : {"FD2SA,PARTS,2,1,2,0,1", "FD02,PARTS", "FD022,PARTS", "FA,PARTS", "F", ""})
        EXPECT_TRUE(passes(good)) << good;
    for (const char* bad : {"FD3,PARTS", "FD22,PARTS", "FD"})
        EXPECT_FALSE(passes(bad)) << bad;
    field_number(1).bit_values1 = 0;
    EXPECT_TRUE(passes("FD9,PARTS")) << "no header";
}

TEST(ProgramChecksTest, RefusalsInTheirOrder) {
    init_programming();
    expect_refusal("No User Input Fields Defined!");
    set_four_fields();
    field_number(3) = placed(1, 9, 2, 9);
    field_number(4).input_source = SOURCE_LOOKUP_FILE;
    no_lookup_target = true;
    lookup_string = "FD1,PARTS";
    global_options = {2, 3, 0, 0, 1, 2, 0, 1};
    // All is wrong now; each time the fault that was reported is mended.
    expect_refusal("Overlapping fields at Field #3!");
    field_number(3).start_col = 10;
    expect_refusal("No Field for Lookup Data defined!");
    no_lookup_target = false;
    expect_refusal("Lookup Data Dump Target Field\nis not the same field number as the\n"
                   "field designated to receive lookup data.\n\n"
                   "Adjust target field number to exclude any header fields.");
    lookup_string = "FD3,PARTS";
    const std::string increment = "Global Data Options >>\nAutoincrement Fields not Complete.";
    const std::string calculation = "Multiple Field Calculation Option>>\nAll Fields not Complete.";
    expect_refusal(increment);
    EXPECT_EQ(field_number(3).data_manip_condition_handle, "0000") << "rewritten all the same";
    global_options.amount_to_inc = 5;
    expect_refusal(calculation);
    // Options are complete or unset.
    const std::pair<GLOBAL_DATA_OPTIONS, std::string> cases[] = {
        {{0, 0, 5, 0, 0, 0, 0, 1}, ""},        {{1, 2, 5, 0, 1, 2, 3, 1}, ""},
        {{1, 2, 0, 0, 0, 0, 0, 1}, increment}, {{1, 0, 5, 0, 0, 0, 0, 1}, increment},
        {{0, 1, 5, 0, 0, 0, 0, 1}, increment}, {{1, 2, 5, 0, 1, 2, 2, 1}, calculation},
    };
    for (const auto& [set, refusal] : cases) {
        global_options = set;
        expect_refusal(refusal);
    }
}

TEST(ProgramChecksTest, OptionsGoIntoTheFieldsAndComeBack) {
    set_four_fields();
    EXPECT_EQ(options(), (std::array{0, 0, 0, 0, 0, 0, 0, 1}));
    no_lookup_target = true;
    field_number(1).data_manip_source = 0xFF; // field one comes before its other parts
    field_number(2).bit_values2 = AUTOINCREMENT_FIELD;
    field_number(2).input_source = SOURCE_LOOKUP_FILE;
    global_options = {9, 9, 9, 1, 9, 9, 9, 9};
    derive_global_options(false);
    EXPECT_EQ(options(), (std::array{1, 2, 1, 0, 1, 9, 9, 9})) << "without flags they stay";
    EXPECT_FALSE(no_lookup_target);
    // What is chosen, its flag, and what the flag stands for.
    const std::tuple<int, int, int> operators[] = {
        {0, OPERATOR_ADD, 1},
        {1, OPERATOR_ADD, 1},
        {2, OPERATOR_SUBTRACT, 2},
        {3, OPERATOR_MULTIPLY, 3},
        {4, 0, 4},
        {5, OPERATOR_ADD, 1},
    };
    for (const auto& [chosen, flag, derived] : operators) {
        set_four_fields();
        for (auto& field : program_header.fields)
            field.data_manip_source = field.bit_values2 = 0xFF;
        field_number(2).input_mask_handle = chosen == 0 ? "" : "AAA";
        const auto warns = static_cast<std::uint8_t>(chosen % 2);
        global_options = {1, 2, 12345, warns, 2, 1, 4, chosen};
        EXPECT_EQ(update_counts_and_flags(), "");
        const int compared = COMPARE_FIELD | (warns ? 0 : NO_DUPLICATE_WARNING);
        const int sources[] = {compared | CALCULATION_FIELD_TWO | flag, CALCULATION_FIELD_ONE, 0,
                               CALCULATION_RESULT};
        for (int number = 1; number <= 4; ++number) {
            EXPECT_EQ(field_number(number).data_manip_source, sources[number - 1]) << number;
            EXPECT_EQ(field_number(number).bit_values2, number == 2 ? 0xFF : 0xFE) << number;
        }
        EXPECT_EQ(field_number(1).bit_values1, HEADER_INPUT | NO_DUPLICATES);
        EXPECT_EQ(field_number(2).input_mask_handle, chosen == 0 ? "D" : "DDD");
        EXPECT_EQ(field_number(2).data_manip_condition_handle, "12345");
        derive_global_options(true);
        EXPECT_EQ(options(), (std::array{1, 2, 12345, int{warns}, 2, 1, 4, derived}));
    }
}

TEST(DisplayTest, FieldsOfOneScreenOverwriteEachOtherInOrder) {
    const std::list<FIELD_DEFINITION> fields = {
        placed(0, 0, 3, 19, NEW_SCREEN, INPUT_DATA, "another screen", ""),
        placed(0, 0, 0, 19, NEW_SCREEN | HEADER_INPUT, INPUT_DATA, "QTY:", "____"),
        placed(0, 8, 0, 19, 0, INPUT_STAMP, "M//D", "__//__"),
        placed(0, 6, 1, 5, 0, INPUT_DATA, "A\rB", "\xFF=="),
        placed(3, 0, 3, 19, 0, INPUT_DATA, "as stored", "????"),
        placed(1, 3, 1, 5, 0, INPUT_DATA, "", "#####"),
        placed(0, 0, 3, 19, 0, INPUT_STAMP, "MDY", ""),
        placed(2, 0, 2, 19, 0, INPUT_DATA, "abcdefghijklmnopqrstuvwxy", "!?"),
        placed(0, 0, 3, 19, NEW_SCREEN, INPUT_DATA, "another screen", ""),
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
        EXPECT_EQ(shown(fields, current, placed(1, 0, 1, 9, bits, type, "Bin:/", "__")), lines);
    // Where the end is before the start, there is no room for the prompt, and the pattern wraps.
    EXPECT_EQ(shown({}, 0, placed(3, 18, 0, 1, 0, INPUT_DATA, "prompt", "abcdef")),
              "cd|||..................ab|");
    EXPECT_EQ(shown({}, 0, placed(255, 255, 255, 255, 0, INPUT_DATA, "prompt", "ab")), "ab||||");
}

TEST(InputMaskTest, CountsItsInputAndComesFromStampCommands) {
    const std::pair<const char*, unsigned> masks[] = {
        {"", 0}, {"NNNF", 3}, {"NNNN", 251}, {"IAAI", 2}, {"IF", 0}};
    for (const auto& [mask, count] : masks)
        EXPECT_EQ(input_number_from_mask(mask), count) << mask;
    const char* const stamps[][3] = {
        {"mdyhis W:SIHYDM", "AAAAAAAAAAAAAAIAIAAAAAAAAAAAAAA", "______________ _:______________"},
        {"M/\r\xFF\xC4", "AAIIII", "__///0D/00/C4"},
    };
    for (const auto& [commands, mask, pattern] : stamps)
        EXPECT_EQ(stamp_inputmask(commands) + ' ' + stamp_displaypattern(commands),
                  std::string(mask) + ' ' + pattern);
}
