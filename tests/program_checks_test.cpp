#include "program/Prog.h"
#include "program/Prog_checks.h"
#include "program/Prog_file.h"
#include "tests/test_files.h"

namespace {

// A field as the cases below write it down.
struct PLACED {
    std::uint8_t bit_values1;
    std::uint8_t input_type;
    std::uint8_t start_row;
    std::uint8_t start_col;
    std::uint8_t end_row;
    std::uint8_t end_col;
    std::uint8_t input_source = SOURCE_BAR_CODE;
};

void set_fields(const std::vector<PLACED>& placed) {
    init_programming();
    for (const auto& place : placed) {
        auto& field = program_header.fields.emplace_back();
        init_field(field);
        field.bit_values1 = place.bit_values1;
        field.input_type = place.input_type;
        field.start_row = place.start_row;
        field.start_col = place.start_col;
        field.end_row = place.end_row;
        field.end_col = place.end_col;
        field.input_source = place.input_source;
    }
}

FIELD_DEFINITION& field_number(int number) {
    return *std::next(program_header.fields.begin(), number - 1);
}

// Four record fields on four rows.
void set_four_fields() {
    set_fields({{0, 'D', 0, 0, 0, 19}, {0, 'D', 1, 0, 1, 19}, {0, 'D', 2, 0, 2, 19}, {0, 'D', 3, 0, 3, 19}});
}

class ProgramChecksTest : public FILE_TEST {
protected:
    int save() {
        return save_program_file(path("PROGRAM.PGT"));
    }
};

} // namespace

TEST_F(ProgramChecksTest, OverlapIsSeenOnTheScreenAndTheRowOnly) {
    struct {
        const char* what;
        std::vector<PLACED> fields;
        int overlapping;
    } const cases[] = {
        {"none", {}, 0},
        {"starts where the first ends", {{0, 'D', 1, 0, 1, 9}, {0, 'D', 1, 9, 1, 15}}, 2},
        {"starts behind the first", {{0, 'D', 1, 0, 1, 9}, {0, 'D', 1, 10, 1, 15}}, 0},
        {"starts left of the first", {{0, 'D', 1, 5, 1, 9}, {0, 'D', 1, 0, 1, 2}}, 2},
        {"an end in a later row", {{0, 'D', 0, 0, 1, 3}, {0, 'D', 0, 5, 0, 9}, {0, 'D', 1, 3, 1, 9}}, 3},
        {"on a later row", {{0, 'D', 0, 0, 0, 19}, {0, 'D', 1, 0, 1, 19}}, 0},
        {"the furthest of several",
         {{0, 'D', 1, 0, 1, 9}, {0, 'D', 1, 10, 1, 12}, {0, 'D', 1, 11, 1, 15}},
         3},
        {"new screen starts at itself",
         {{0, 'D', 0, 0, 0, 9}, {NEW_SCREEN, 'D', 0, 0, 0, 9}, {0, 'D', 0, 9, 0, 12}},
         3},
        {"new screen forgets",
         {{0, 'D', 1, 0, 1, 9}, {NEW_SCREEN, 'D', 0, 0, 0, 9}, {0, 'D', 1, 0, 1, 9}},
         0},
        {"a header starts a screen",
         {{0, 'D', 0, 0, 0, 9}, {HEADER_INPUT | NEW_SCREEN, 'D', 1, 0, 1, 9}, {0, 'D', 0, 0, 0, 9}},
         0},
        {"headers are not compared but compared with",
         {{HEADER_INPUT, 'D', 0, 0, 0, 9}, {HEADER_INPUT, 'D', 0, 0, 0, 9}, {0, 'D', 0, 9, 0, 12}},
         3},
        {"a stamp starts no screen and is not compared",
         {{0, 'D', 0, 0, 0, 9}, {NEW_SCREEN, 'S', 0, 0, 1, 3}, {0, 'D', 0, 9, 0, 12}},
         3},
        {"a stamp leaves its end", {{0, 'D', 0, 0, 0, 9}, {0, 'S', 0, 0, 1, 3}, {0, 'D', 1, 3, 1, 9}}, 3},
        {"rows off the display", {{0, 'D', 255, 255, 255, 255}, {0, 'E', 255, 255, 0, 0}}, 2},
    };
    for (const auto& c : cases) {
        set_fields(c.fields);
        int number = 0;
        EXPECT_EQ(overlapped_fields(&number), c.overlapping > 0 ? 1 : 0) << c.what;
        EXPECT_EQ(number, c.overlapping) << c.what;
    }
}

TEST_F(ProgramChecksTest, LookupDataGoesToTheFieldThatTheDefinitionNames) {
    constexpr std::uint8_t LOOKUP = SOURCE_LOOKUP_FILE;
    const std::vector<PLACED> header_and_receiver = {{HEADER_INPUT, 'D', 0, 0, 0, 9},
                                                     {0, 'D', 1, 0, 1, 9},
                                                     {0, 'N', 2, 0, 2, 9, LOOKUP},
                                                     {0, 'N', 3, 0, 3, 9, LOOKUP}};
    const std::vector<PLACED> no_header = {{0, 'D', 1, 0, 1, 9}, {0, 'N', 2, 0, 2, 9, LOOKUP}};
    const std::vector<PLACED> no_receiver = {{HEADER_INPUT, 'D', 0, 0, 0, 9}, {0, 'D', 1, 0, 1, 9}};
    struct {
        std::vector<PLACED> fields;
        const char* lookup;
        bool passes;
    } const cases[] = {
        {header_and_receiver, "FD2SA,PARTS,2,1,2,0,1", true},
        {header_and_receiver, "FD02,PARTS", true},
        {header_and_receiver, "FD3,PARTS", false},
        {header_and_receiver, "FD22,PARTS", false},
        {header_and_receiver, "FD022,PARTS", true},
        {header_and_receiver, "FD", false},
        {header_and_receiver, "FA,PARTS", true},
        {header_and_receiver, "F", true},
        {header_and_receiver, "", true},
        {no_header, "FD9,PARTS", true},
        {no_receiver, "FD9,PARTS", true},
    };
    for (const auto& c : cases) {
        set_fields(c.fields);
        program_header.header_count = 77; // stale until a save
        lookup_string = c.lookup;
        EXPECT_EQ(CheckLookupDataDumpField(), c.passes) << c.lookup;
    }
}

TEST_F(ProgramChecksTest, RefusalsInTheirOrder) {
    // Each step mends the fault that the step before was refused for; the next one then shows.
    const std::string refusal = "Cannot Save Program File.\n";
    struct {
        const char* text;
        void (*mend)();
    } const steps[] = {
        {"No User Input Fields Defined!",
         [] {
             set_fields({{HEADER_INPUT, 'D', 0, 0, 0, 9},
                         {0, 'D', 1, 0, 1, 9},
                         {0, 'D', 1, 9, 1, 12},
                         {0, 'N', 2, 0, 2, 9, SOURCE_LOOKUP_FILE}});
             no_lookup_target = true;
             lookup_string = "FD1,PARTS";
             global_options = {2, 3, 0, 0, 1, 2, 0, 1};
         }},
        {"Overlapping fields at Field #3!", [] { field_number(3).start_col = 10; }},
        {"No Field for Lookup Data defined!", [] { no_lookup_target = false; }},
        {"Lookup Data Dump Target Field\nis not the same field number as the\n"
         "field designated to receive lookup data.\n\nAdjust target field number to exclude any header "
         "fields.",
         [] { lookup_string = "FD3,PARTS"; }},
        {"Global Data Options >>\nAutoincrement Fields not Complete.",
         [] { global_options.amount_to_inc = 5; }},
        {"Multiple Field Calculation Option>>\nAll Fields not Complete.",
         [] { global_options.mult_field_result = 4; }},
    };
    init_programming();
    for (const auto& step : steps) {
        expect_warning(refusal + step.text, "Save File");
        EXPECT_EQ(save(), 0);
        EXPECT_EQ(files_in_folder(), 0U);
        step.mend();
    }
    EXPECT_EQ(save(), 1);
    lookup_string.clear();
    program_header.fields.resize(MAX_FIELDS + 1, program_header.fields.front());
    expect_warning(refusal + "Maximum number of Field Definitions allowed is 250.", "Save File");
    EXPECT_EQ(save(), 0);
}

TEST_F(ProgramChecksTest, OptionsAreCompleteOrUnset) {
    const std::string autoincrement =
        "Cannot Save Program File.\nGlobal Data Options >>\nAutoincrement Fields not Complete.";
    const std::string calculation =
        "Cannot Save Program File.\nMultiple Field Calculation Option>>\nAll Fields not Complete.";
    struct {
        GLOBAL_DATA_OPTIONS options;
        std::string refusal;
    } const cases[] = {
        {{0, 0, 0, 0, 0, 0, 0, 1}, ""},
        {{0, 0, 5, 0, 0, 0, 0, 1}, ""},
        {{1, 2, 5, 0, 0, 0, 0, 1}, ""},
        {{1, 2, 0, 0, 0, 0, 0, 1}, autoincrement},
        {{1, 0, 5, 0, 0, 0, 0, 1}, autoincrement},
        {{0, 1, 5, 0, 0, 0, 0, 1}, autoincrement},
        {{1, 1, 5, 0, 0, 0, 0, 1}, autoincrement},
        {{1, 5, 5, 0, 0, 0, 0, 1}, autoincrement},
        {{0, 0, 0, 0, 1, 2, 3, 1}, ""},
        {{0, 0, 0, 0, 1, 2, 0, 1}, calculation},
        {{0, 0, 0, 0, 0, 0, 3, 1}, calculation},
        {{0, 0, 0, 0, 1, 2, 2, 1}, calculation},
        {{0, 0, 0, 0, 1, 2, 9, 1}, calculation},
    };
    for (const auto& c : cases) {
        set_four_fields();
        global_options = c.options;
        EXPECT_EQ(update_counts_and_flags(), c.refusal) << &c - cases;
    }
}

TEST_F(ProgramChecksTest, FlagPassWritesTheOptionsIntoTheFields) {
    set_four_fields();
    for (auto& field : program_header.fields) {
        field.data_manip_source = 0xFF;
        field.bit_values2 = 0xFF;
    }
    program_header.bit_values = 0xFF;
    global_options = {1, 2, 5, 0, 2, 1, 4, 3};
    field_number(2).input_mask_handle = "AAA";
    field_number(2).data_manip_condition_handle = "old";
    EXPECT_EQ(update_counts_and_flags(), "");
    EXPECT_EQ(program_header.file_type, 'I');
    EXPECT_EQ(program_header.bit_values, 0x7F);
    EXPECT_EQ(field_number(1).data_manip_source,
              COMPARE_FIELD | NO_DUPLICATE_WARNING | CALCULATION_FIELD_TWO | OPERATOR_MULTIPLY);
    EXPECT_EQ(field_number(1).bit_values1, NO_DUPLICATES);
    EXPECT_EQ(field_number(1).bit_values2, 0xFE);
    EXPECT_EQ(field_number(2).data_manip_source, CALCULATION_FIELD_ONE);
    EXPECT_EQ(field_number(2).bit_values1, 0);
    EXPECT_EQ(field_number(2).bit_values2, 0xFF);
    EXPECT_EQ(field_number(2).input_mask_handle, "DDD");
    EXPECT_EQ(field_number(2).data_manip_condition_handle, "0005");
    EXPECT_EQ(field_number(3).data_manip_source, 0);
    EXPECT_EQ(field_number(4).data_manip_source, CALCULATION_RESULT);

    field_number(2).input_mask_handle.clear();
    global_options.amount_to_inc = 12345;
    global_options.dup_warning = 1;
    EXPECT_EQ(update_counts_and_flags(), "");
    EXPECT_EQ(field_number(1).data_manip_source, COMPARE_FIELD | CALCULATION_FIELD_TWO | OPERATOR_MULTIPLY);
    EXPECT_EQ(field_number(2).input_mask_handle, "D");
    EXPECT_EQ(field_number(2).data_manip_condition_handle, "12345");

    const std::uint8_t operators[] = {OPERATOR_ADD, OPERATOR_ADD, OPERATOR_SUBTRACT, OPERATOR_MULTIPLY, 0,
                                      OPERATOR_ADD};
    for (int number = 0; number < 6; ++number) {
        global_options = {0, 0, 0, 0, 1, 2, 3, number};
        EXPECT_EQ(update_counts_and_flags(), "");
        EXPECT_EQ(field_number(2).data_manip_source, CALCULATION_FIELD_TWO | operators[number]);
    }
}

TEST_F(ProgramChecksTest, ARefusedSaveHasAlreadyRewrittenTheFlags) {
    set_four_fields();
    global_options = {9, 1, 5, 0, 0, 0, 0, 1};
    expect_warning("Cannot Save Program File.\nGlobal Data Options >>\nAutoincrement Fields not Complete.",
                   "Save File");
    EXPECT_EQ(save(), 0);
    EXPECT_EQ(field_number(1).input_mask_handle, "D");
    EXPECT_EQ(field_number(1).data_manip_condition_handle, "0005");
    EXPECT_EQ(program_header.record_count, 4);
}

TEST_F(ProgramChecksTest, CountsHeadersAndRecordsByWhatTheyStore) {
    set_fields({});
    for (const char type : {'D', 'S', 'E', 'Y', 'N', 'S', 'E', 'E', 'D'}) {
        auto& field = program_header.fields.emplace_back();
        field.input_type = static_cast<std::uint8_t>(type);
        field.bit_values1 = program_header.fields.size() <= 4 ? HEADER_INPUT : 0;
    }
    EXPECT_EQ(update_counts_and_flags(), "");
    EXPECT_EQ(program_header.header_count, 4);
    EXPECT_EQ(program_header.stored_headers, 3);
    EXPECT_EQ(program_header.interactive_headers, 2);
    EXPECT_EQ(program_header.record_count, 5);
    EXPECT_EQ(program_header.stored_records, 3);
    EXPECT_EQ(program_header.interactive_records, 2);
}
