#include "program/Prog_fields.h"
#include "program/Prog_file.h"
#include "tests/test_files.h"

namespace {

std::array<int, 8> options() {
    const auto& all = global_options;
    return {all.field_compare, all.field_to_inc, all.amount_to_inc,     all.dup_warning,
            all.mult_field_1,  all.mult_field_2, all.mult_field_result, all.mult_field_operator};
}

std::list<FIELD_DEFINITION>& start_with(std::size_t fields) {
    init_programming();
    field_list_selection = 0;
    new_field = false;
    program_header.fields.resize(fields);
    std::for_each(program_header.fields.begin(), program_header.fields.end(), init_field);
    return program_header.fields;
}

class ProgramFieldsTest : public FILE_TEST {};

} // namespace

TEST_F(ProgramFieldsTest, RowsShowWhatTheFieldsHold) {
    auto field = start_with(4).begin();
    field->bit_values1 |= HEADER_INPUT;
    field->prompt_string_handle = "a\tb/\xFF&%s";
    field->max_input = 20;
    for (const char* codes : {"D?V", "NSR", "E?r", "dBL"}) { // type, source and format
        std::tie(field->input_type, field->input_source, field->output_format) =
            std::tuple(codes[0], codes[1], codes[2]);
        ++field;
    }
    const std::vector<std::string> expected = {
        "  1\tHeader\tData\ta/09b///00&%s\t 20\t  1\t\t   Variable",
        "  2\tRecord\tNo Edit\t\t250\t  1\t     Serial\tRight Justify",
        "  3\tRecord\tExhibit\t\t250\t  1\t     Serial\tUnknown",
        "  4\tRecord\tUnknown\t\t250\t  1\t    Barcode\t Left Justify",
        "<<END OF PROGRAM>>",
    };
    EXPECT_EQ(field_list_rows(), expected);
}

TEST_F(ProgramFieldsTest, OptionsComeFromTheFlagsAndStayWithoutThem) {
    auto& fields = start_with(2);
    fields.front().data_manip_source = 0xFF; // field one comes before its other parts
    fields.back().bit_values2 = AUTOINCREMENT_FIELD;
    global_options = {9, 9, 9, 1, 9, 9, 9, 9};
    derive_global_options(false);
    EXPECT_EQ(options(), (std::array{1, 2, 1, 0, 1, 9, 9, 9}));
    fields.front().data_manip_source = 0xD8 | COMPARE_FIELD;
    fields.back().data_manip_condition_handle = "0025x";
    derive_global_options(true);
    EXPECT_EQ(options(), (std::array{1, 2, 25, 1, 0, 1, 0, 2}));
}

TEST_F(ProgramFieldsTest, ChecksReportTheFirstFault) {
    constexpr unsigned MOST = 0xFFFFFFFF;
    const std::string no_fit = "Prompt and data will not fit within start/end range|Field Definition";
    const std::string letters =
        "Input Mask field can only contain the letters 'A', 'D', 'F', 'I', and 'N'.|Field Definition";
    const FIELD_DEFINITION plain;
    FIELD_DEFINITION sum;
    sum.bit_values2 = ALLOW_CALCULATION;
    // Field, start row and column, end row and column, max, min, prompt, mask; the message and its caption.
    const std::pair<FIELD_EDITS, std::string> cases[] = {
        {{plain, 4, 99, 2, 0, 0, 1, "", ""}, "Max Input Value less than Min Input Value|Field Definition"},
        {{plain, 4, 99, 2, 0, MOST, 251, "", ""}, "Min Input Greater Than 250|Field Definition"},
        {{plain, 4, 99, 2, 0, 251, 250, "", ""}, "Max Input Greater Than 250|Field Definition"},
        {{plain, 4, 99, 2, 0, 0, 0, "", ""}, "Max Input Less Than 1|Field Definition"},
        {{plain, 4, 99, 2, 0, 1, 0, "", ""}, "End Row less than Start Row|Field Definition"},
        {{plain, 4, 99, 4, 98, 1, 0, "", ""}, "End Col less than Start Col|Field Definition"},
        {{plain, 4, 99, 5, 98, 1, 0, "", ""}, "Start Row Greater Than 3|Field Definition"},
        {{plain, 3, 99, MOST, 98, 1, 0, "", ""}, "End Row Greater Than 3|Field Definition"},
        {{plain, 2, MOST, 3, 98, 1, 0, "", ""}, "Start Col Greater Than 19|Field Definition"},
        {{plain, 2, 19, 3, 20, 1, 0, "", ""}, "End Col Greater Than 19|Field Definition"},
        {{plain, 0, 0, 0, 19, 1, 0, std::string(20, 'P'), ""}, no_fit},
        {{plain, 0, 0, 0, 19, 1, 1, std::string(19, 'P'), "A"}, ""},
        {{plain, 0, 18, 1, 0, 1, 1, "/0D", "A"}, no_fit}, // as typed, in three cells
        {{plain, 0, 17, 1, 0, 1, 1, "/0D", "A"}, ""},
        {{plain, 0, 0, 0, 19, 250, 4, "", "NNNF"},
         "Minimum Input value is greater than input allowed from Input Mask field.|Field Definition"},
        {{plain, 0, 0, 0, 19, 250, 250, "", "NNN"}, ""},
        {{plain, 0, 0, 0, 19, 250, 0, "", ""}, letters},
        {{sum, 0, 0, 0, 19, 250, 0, "", "AX"}, letters},
        {{sum, 0, 0, 0, 19, 250, 0, "", "DA"},
         "When Allow Calculation is ON\nInput Mask must be Decimal.|Input Mask Error"},
        {{sum, 0, 0, 0, 19, 250, 0, "", "D/44"}, ""},
    };
    for (const auto& [edits, message] : cases) {
        const EDIT_FAULT fault = find_field_fault(edits);
        EXPECT_EQ(fault.text.empty() ? "" : fault.text + '|' + fault.caption, message);
    }
}

TEST_F(ProgramFieldsTest, StoringNotesTheLookup) {
    FIELD_DEFINITION edited = start_with(1).front();
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

TEST_F(ProgramFieldsTest, OptionsComeBackFromTheFile) {
    for (const int chosen : {1, 2, 3, 4}) {
        start_with(3);
        global_options = {1, 3, 1234 * chosen, static_cast<std::uint8_t>(chosen % 2), 2, 1, 3, chosen};
        const auto set = options();
        EXPECT_EQ(save_program_file(path("PROGRAM.PGT")), 1);
        init_programming();
        EXPECT_EQ(open_program_file(nullptr, path("PROGRAM.PGT")), 1);
        derive_global_options(true);
        EXPECT_EQ(options(), set);
    }
}

TEST_F(ProgramFieldsTest, TheListIsWorkedOnAtTheSelectedRow) {
    start_with(MAX_FIELDS);
    EXPECT_FALSE(insert_field());
    const auto& fields = start_with(0);
    const auto prompts = [&fields] {
        std::string all;
        for (const auto& field : fields)
            all += field.prompt_string_handle;
        EXPECT_EQ(field_list_total, std::ssize(fields) + 1);
        return all;
    };
    const std::tuple<int, const char*, const char*> inserted[] = {
        {0, "A", "A"}, {9, "C", "AC"}, {1, "B", "ABC"}, {0, "X", "XABC"}, {4, "Y", "XABCY"}};
    for (const auto& [row, prompt, all] : inserted) {
        field_list_selection = row;
        EXPECT_TRUE(insert_field() && new_field);
        FIELD_DEFINITION edited = *current_handle();
        edited.prompt_string_handle = prompt;
        file_changed = false;
        store_field(edited);
        EXPECT_TRUE(file_changed && !new_field);
        EXPECT_EQ(prompts(), all);
    }
    const std::pair<int, const char*> deleted[] = {{0, "ABCY"}, {1, "ACY"}, {3, "ACY"}, {2, "AC"}};
    for (const auto& [row, all] : deleted) {
        field_list_selection = row;
        delete_field();
        EXPECT_EQ(prompts(), all);
    }
    store_field({}); // on the end row
    EXPECT_EQ(prompts(), "AC");
}
