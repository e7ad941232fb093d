#include "program/Prog.h"
#include "program/Prog_file.h"
#include "tests/test_files.h"

namespace {

using namespace std::string_literals;

// In the order of the file.
auto texts_of(FIELD_DEFINITION& f) {
    return std::array{
        &f.prompt_string_handle,    &f.display_pattern_handle,      &f.input_mask_handle,
        &f.default_data_handle,     &f.lookup_filename_handle,      &f.prefix_text_handle,
        &f.suffix_text_handle,      &f.data_manip_condition_handle, &f.transmit_condition_handle,
        &f.calculated_field_handle, &f.branch_condition_handle};
}

// Two equal fields behind their header, each byte its own as far as a save leaves it.
const std::string HEADER_BYTES = "\0\0\0\x9CI\0\0\0\x02\x02\x02"
                                 "COUNT\0\0\0\0\x03\x04\x21\x02\xFF\0\x04\0"s;
const std::string FIELD_BYTES = "\x40\x02\x80\x01\xD2N\x01\x02\x03\x04\xFA\x05LR\x06\x07\x18\x08\x09\0"
                                "Item\0__\0AA\0x\0FD1,PARTS\0\x0F\0\r\n\0"
                                "12\0#1>0\0#1+1\0G2\0"s;
const std::string SMALL_PROGRAM = HEADER_BYTES + FIELD_BYTES + FIELD_BYTES + "\x25\x78";

const FILE_KIND PROGRAM_KIND = {[](const std::string& name) {
                                    no_lookup_target = true;
                                    init_programming();
                                    lookup_string = "old";
                                    const int result = open_program_file(nullptr, name);
                                    EXPECT_TRUE(result != 0 || program_header.fields.empty())
                                        << "a refused file has brought fields";
                                    return result;
                                },
                                save_program_file,
                                SMALL_PROGRAM,
                                read_bytes(TOLVAN_SAMPLES "/STOCK.PGT"),
                                PROGRAM_CHECKSUM,
                                {0, ""}, // the caller speaks
                                {-1, "Invalid Checksum in Program File!", "Invalid Checksum"},
                                "Cannot Open Program File!",
                                "Cannot Save Program File.\nFile Creation Error!",
                                "", // the caller speaks
                                -1};

class ProgramFileTest : public FILE_TEST {};

} // namespace

TEST_F(ProgramFileTest, EveryByteHasItsPlace) {
    expect_outcome(PROGRAM_KIND, SMALL_PROGRAM, OPENED);
    EXPECT_EQ(lookup_string, "FD1,PARTS");
    EXPECT_FALSE(no_lookup_target);
    EXPECT_EQ(global_options.amount_to_inc, 12);
    EXPECT_EQ(field_list_total, 3);
    EXPECT_EQ(program_header.name, "COUNT");
    EXPECT_EQ(program_header.bit_values, AUTO_ALPHA_OFF | ALLOW_APPEND);
    EXPECT_EQ(program_header.sof_text_handle, "\x02\xFF");
    for (auto& field : program_header.fields) {
        std::string bytes;
        append_word(bytes, field.barcode_bit_values);
        append_word(bytes, field.manip_barcode_bit_values);
        // Behind the two words the record has its bytes in the order of the file.
        bytes.append(reinterpret_cast<const char*>(&field) + bytes.size(), 16);
        for (const auto* text : texts_of(field))
            append_text(bytes, *text);
        EXPECT_EQ(bytes, FIELD_BYTES);
    }

    program_header.bit_values |= HEADER_CLEARED_AT_SAVE;
    program_header.file_size = 0;
    EXPECT_EQ(saved_bytes(PROGRAM_KIND), SMALL_PROGRAM);
    EXPECT_EQ(program_header.file_size, SMALL_PROGRAM.size() - CHECKSUM_SIZE);
}

TEST_F(ProgramFileTest, TheFullestProgramSavesBackToTheSameBytes) {
    init_programming();
    EXPECT_EQ(global_options.mult_field_operator, 1) << "as a new program has it";
    program_header.name = "FULLFULLF";
    program_header.sof_text_handle = std::string(250, '\xFF');
    program_header.eof_text_handle = std::string(250, '\x01');
    for (std::size_t number = 0; number < MAX_FIELDS; ++number) {
        auto& field = program_header.fields.emplace_back();
        field.bit_values1 = NEW_SCREEN | (number < 100 ? HEADER_INPUT : 0);
        field.input_type = static_cast<std::uint8_t>("DSEYN"[number % 5]);
        for (auto* text : texts_of(field))
            text->assign(250, static_cast<char>(1 + number));
    }
    const std::string bytes = saved_bytes(PROGRAM_KIND);
    EXPECT_EQ(bytes.substr(5, 6), "\x64\x50\x3C\x96\x78\x5A") << "headers and records: all, stored, keyed";
    EXPECT_EQ(bytes.substr(11, 9), "FULLFULLF");
    expect_outcome(PROGRAM_KIND, bytes, OPENED);
    EXPECT_EQ(program_header.fields.size(), MAX_FIELDS);
    EXPECT_EQ(lookup_string, program_header.fields.front().lookup_filename_handle);
    EXPECT_EQ(saved_bytes(PROGRAM_KIND), bytes);
}

TEST_F(ProgramFileTest, OpensWhatIsWholeAndReportsEveryDamage) {
    expect_damage_reported(PROGRAM_KIND);
    expect_outcomes(PROGRAM_KIND);
    expect_outcome(PROGRAM_KIND, std::string(SMALL_PROGRAM).replace(4, 1, "i") + 'x', QUENDAL);
    std::string counts = SMALL_PROGRAM.substr(0, SMALL_PROGRAM.size() - CHECKSUM_SIZE);
    counts[5] = counts[8] = '\xFF';
    expect_outcome(PROGRAM_KIND, stamped(counts, PROGRAM_CHECKSUM), PROGRAM_KIND.bad_checksum);
    EXPECT_EQ(field_list_total, 3);
    EXPECT_EQ(program_header.fields.size(), 2U) << "what was read stays";
}
