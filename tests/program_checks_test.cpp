#include "program/Prog.h"
#include "program/Prog_checks.h"
#include "program/Prog_file.h"

#include <gtest/gtest.h>
#include <tuple>

namespace {

const std::string INCREMENT = "Autoincrement Fields not Complete.";
const std::string CALCULATION = "All Fields not Complete.";

FIELD_DEFINITION placed(int start_row, int start_col, int end_row, int end_col, int bit_values1 = 0,
                        int input_type = INPUT_DATA) {
    FIELD_DEFINITION field;
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

} // namespace

TEST(ProgramChecksTest, OverlapIsSeenOnTheScreenAndTheRowOnly) {
    const auto overlapped = [](const std::list<FIELD_DEFINITION>& fields) {
        program_header.fields = fields;
        int number = 0;
        return overlapped_fields(&number) == 1 ? number : 0;
    };
    const auto first = placed(0, 0, 0, 9);
    const auto touching = placed(0, 9, 0, 12);
    EXPECT_EQ(overlapped({first, touching}), 2);
    EXPECT_EQ(overlapped({first, placed(0, 10, 0, 12)}), 0);
    EXPECT_EQ(overlapped({touching, first}), 2) << "left of an earlier one";
    EXPECT_EQ(overlapped({placed(0, 0, 1, 3), first, placed(1, 3, 1, 9)}), 3) << "counts where it ends";
    EXPECT_EQ(overlapped({placed(255, 255, 255, 255), placed(255, 255, 0, 0)}), 2) << "off the display";
    // A new screen forgets the one before, and headers start screens too.
    EXPECT_EQ(overlapped({first, placed(0, 0, 0, 9, NEW_SCREEN), touching}), 3);
    EXPECT_EQ(overlapped({first, placed(1, 0, 1, 9, HEADER_INPUT | NEW_SCREEN), first}), 0);
    // Headers and stamps are not compared but compared with; a stamp starts no screen.
    EXPECT_EQ(overlapped({first, placed(0, 0, 0, 3, HEADER_INPUT), placed(0, 9, 0, 9)}), 3);
    EXPECT_EQ(overlapped({placed(0, 0, 0, 9, HEADER_INPUT), touching}), 2);
    EXPECT_EQ(overlapped({first, placed(0, 0, 1, 3, NEW_SCREEN, INPUT_STAMP), touching}), 3);
    EXPECT_EQ(overlapped({first, placed(0, 0, 1, 3, 0, INPUT_STAMP), placed(1, 3, 1, 9)}), 3);
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
    const auto expect_refusal = [](const std::string& text) {
        const std::string before_save = check_fields_before_save();
        const std::string refusal = before_save.empty() ? update_counts_and_flags() : before_save;
        EXPECT_EQ(refusal, "Cannot Save Program File.\n" + text);
    };
    init_programming();
    expect_refusal("No User Input Fields Defined!");
    set_four_fields();
    field_number(3) = placed(1, 9, 2, 9);
    field_number(4).input_source = SOURCE_LOOKUP_FILE;
    no_lookup_target = true;
    lookup_string = "FD1,PARTS";
    global_options = {2, 3, 0, 0, 1, 2, 0, 1};
    // All is wrong now but the number of fields; each time the fault that was reported is mended.
    expect_refusal("Overlapping fields at Field #3!");
    field_number(3).start_col = 10;
    expect_refusal("No Field for Lookup Data defined!");
    no_lookup_target = false;
    expect_refusal("Lookup Data Dump Target Field\nis not the same field number as the\n"
                   "field designated to receive lookup data.\n\n"
                   "Adjust target field number to exclude any header fields.");
    lookup_string = "FD3,PARTS";
    expect_refusal("Global Data Options >>\n" + INCREMENT);
    EXPECT_EQ(field_number(3).data_manip_condition_handle, "0000") << "rewritten all the same";
    global_options.amount_to_inc = 5;
    expect_refusal("Multiple Field Calculation Option>>\n" + CALCULATION);
    global_options = {};
    program_header.fields.assign(MAX_FIELDS + 1, placed(0, 0, 0, 9, NEW_SCREEN));
    expect_refusal("Maximum number of Field Definitions allowed is 250.");
    program_header.fields.pop_back();
    EXPECT_EQ(check_fields_before_save(), "");
}

TEST(ProgramChecksTest, OptionsAreCompleteOrUnset) {
    const std::pair<GLOBAL_DATA_OPTIONS, std::string> cases[] = {
        {{0, 0, 5, 0, 0, 0, 0, 1}, ""},        {{1, 2, 5, 0, 1, 2, 3, 1}, ""},
        {{1, 0, 5, 0, 0, 0, 0, 1}, INCREMENT}, {{0, 1, 5, 0, 0, 0, 0, 1}, INCREMENT},
        {{1, 2, 0, 0, 0, 0, 0, 1}, INCREMENT}, {{1, 2, 5, 0, 1, 2, 2, 1}, CALCULATION},
    };
    for (const auto& [options, refusal] : cases) {
        set_four_fields();
        global_options = options;
        const std::string given = update_counts_and_flags();
        EXPECT_TRUE(refusal.empty() ? given.empty() : given.ends_with(refusal)) << given;
    }
}

TEST(ProgramChecksTest, FlagPassWritesTheOptionsIntoTheFields) {
    const std::pair<int, int> operators[] = {
        {0, OPERATOR_ADD}, {1, OPERATOR_ADD}, {2, OPERATOR_SUBTRACT}, {3, OPERATOR_MULTIPLY}, {4, 0},
        {5, OPERATOR_ADD}};
    for (const auto& [chosen, bits] : operators) {
        set_four_fields();
        for (auto& field : program_header.fields)
            field.data_manip_source = field.bit_values2 = 0xFF;
        field_number(2).input_mask_handle = chosen == 0 ? "" : "AAA";
        global_options = {1, 2, 12345, 0, 2, 1, 4, chosen};
        EXPECT_EQ(update_counts_and_flags(), "");
        const int sources[] = {COMPARE_FIELD | NO_DUPLICATE_WARNING | CALCULATION_FIELD_TWO | bits,
                               CALCULATION_FIELD_ONE, 0, CALCULATION_RESULT};
        for (int number = 1; number <= 4; ++number) {
            EXPECT_EQ(field_number(number).data_manip_source, sources[number - 1]) << number;
            EXPECT_EQ(field_number(number).bit_values2, number == 2 ? 0xFF : 0xFE) << number;
        }
        EXPECT_EQ(field_number(1).bit_values1, HEADER_INPUT | NO_DUPLICATES);
        EXPECT_EQ(field_number(2).input_mask_handle, chosen == 0 ? "D" : "DDD");
        EXPECT_EQ(field_number(2).data_manip_condition_handle, "12345");
    }
}
