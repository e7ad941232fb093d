#include "app/checksum.h"
#include "app/files.h"
#include "program/Prog.h"
#include "program/Prog_file.h"
#include "tests/test_files.h"

namespace {

// A header field, and a record field that takes its data from a lookup file.
const std::string SMALL_PROGRAM = std::string("\0\0\0\x8FI"
                                              "\x01\x01\x01\x01\x01\x01"
                                              "COUNT\0\0\0\0"
                                              "\x03\x04\x21"
                                              "\x02\xFF\0"
                                              "\0"
                                              "\x80\x01\0\0"
                                              "\xDE"
                                              "D\0\0\0\x13\x04\0KV\x05\x06\0\x07\x08\0"
                                              "Site:\0____\0AAAA\0\0\0\0,\0\0\0\0\0"
                                              "\x40\x02\x80\0"
                                              "\xD2"
                                              "N\x01\0\x02\x13\xFA\x01LR\0\0\x18\0\0\0"
                                              "Item\0\0A\0x\0FD1,PARTS,2,1,2,0,1\0\x0F\0\r\n\0"
                                              "12\0#1>0\0#1+1\0G2\0",
                                              143) +
                                  "\xC7\xA3";

const char* const BAD_CHECKSUM_TEXT = "Invalid Checksum in Program File!";

void fill_small_program() {
    init_programming();
    program_header.name = "COUNT";
    program_header.sof_delay = 3;
    program_header.eof_delay = 4;
    program_header.bit_values = AUTO_ALPHA_OFF | ALLOW_APPEND | HEADER_CLEARED_AT_SAVE;
    program_header.sof_text_handle = "\x02\xFF";

    auto& site = program_header.fields.emplace_back();
    init_field(site);
    site.bit_values1 |= HEADER_INPUT;
    site.max_input = 4;
    site.min_input = 0;
    site.input_source = SOURCE_KEYBOARD;
    site.prefix_delay = 5;
    site.suffix_delay = 6;
    site.strip_leading_chars = 7;
    site.strip_trailing_chars = 8;
    site.prompt_string_handle = "Site:";
    site.display_pattern_handle = "____";
    site.input_mask_handle = "AAAA";
    site.suffix_text_handle = ",";

    auto& item = program_header.fields.emplace_back();
    init_field(item);
    item.barcode_bit_values = 0x4002;
    item.manip_barcode_bit_values = 0x8000;
    item.bit_values1 &= static_cast<std::uint8_t>(~NEW_SCREEN);
    item.input_type = INPUT_NO_EDIT;
    item.start_row = 1;
    item.end_row = 2;
    item.input_source = SOURCE_LOOKUP_FILE;
    item.output_format = 'R';
    item.bit_values2 = ALLOW_CALCULATION | TRANSMIT_TOTAL;
    item.data_manip_source = 0xE3; // left over: no option names the field
    item.prompt_string_handle = "Item";
    item.default_data_handle = "x";
    item.lookup_filename_handle = "FD1,PARTS,2,1,2,0,1";
    item.prefix_text_handle = "\x0F";
    item.data_manip_condition_handle = "12";
    item.transmit_condition_handle = "#1>0";
    item.calculated_field_handle = "#1+1";
    item.branch_condition_handle = "G2";
}

class ProgramFileTest : public FILE_TEST {
protected:
    int open_bytes(const std::string& bytes) {
        write_bytes(path("PROGRAM.PGT"), bytes);
        init_programming();
        return open_program_file(nullptr, path("PROGRAM.PGT"));
    }
    std::string saved_bytes() {
        EXPECT_EQ(save_program_file(path("SAVED.PGT")), 1);
        return read_bytes(path("SAVED.PGT"));
    }
    // The same bytes with the right checksum behind them.
    std::string stamped(const std::string& data) {
        write_bytes(path("STAMPED"), data);
        write_checksum(path("STAMPED"), PROGRAM_CHECKSUM);
        return read_bytes(path("STAMPED"));
    }
};

} // namespace

TEST_F(ProgramFileTest, SavesTheBytesThatThePortableReads) {
    fill_small_program();
    EXPECT_EQ(saved_bytes(), SMALL_PROGRAM);
    EXPECT_EQ(program_header.file_size, 143U);
    EXPECT_EQ(files_in_folder(), 1U);
    program_header.name = "NINECHARS";
    EXPECT_EQ(saved_bytes().substr(11, 10), "NINECHARS\x03");
}

TEST_F(ProgramFileTest, OpensWhatItSaved) {
    lookup_string = "old";
    target = 9;
    no_lookup_target = true;
    ASSERT_EQ(open_bytes(SMALL_PROGRAM), 1);
    EXPECT_EQ(program_header.file_size, 143U);
    EXPECT_EQ(program_header.name, "COUNT");
    EXPECT_EQ(program_header.bit_values, 0x21);
    EXPECT_EQ(program_header.sof_text_handle, "\x02\xFF");
    EXPECT_EQ(field_list_total, 3);
    EXPECT_EQ(lookup_string, "FD1,PARTS,2,1,2,0,1");
    EXPECT_EQ(target, 0);
    EXPECT_FALSE(no_lookup_target);
    EXPECT_EQ(global_options.amount_to_inc, 12);
    ASSERT_EQ(program_header.fields.size(), 2U);
    const auto& site = program_header.fields.front();
    EXPECT_EQ(site.prompt_string_handle, "Site:");
    EXPECT_EQ(site.strip_trailing_chars, 8);
    EXPECT_EQ(site.branch_condition_handle, "");
    const auto& item = program_header.fields.back();
    EXPECT_EQ(item.manip_barcode_bit_values, 0x8000);
    EXPECT_EQ(item.start_row, 1);
    EXPECT_EQ(item.bit_values2, 0x18);
    EXPECT_EQ(item.branch_condition_handle, "G2");
    EXPECT_EQ(saved_bytes(), SMALL_PROGRAM);
}

TEST_F(ProgramFileTest, TheFullestProgramSavesBackToTheSameBytes) {
    init_programming();
    program_header.name = "FULLFULLF";
    program_header.sof_text_handle = std::string(250, '\xFF');
    program_header.eof_text_handle = std::string(250, '\x01');
    for (std::size_t number = 0; number < MAX_FIELDS; ++number) {
        auto& field = program_header.fields.emplace_back();
        init_field(field);
        field.bit_values1 = static_cast<std::uint8_t>((number < 100 ? HEADER_INPUT : 0) | NEW_SCREEN);
        field.barcode_bit_values = static_cast<std::uint16_t>(number * 257);
        char fill = static_cast<char>(number + 1);
        for (auto* text :
             {&field.prompt_string_handle, &field.display_pattern_handle, &field.input_mask_handle,
              &field.default_data_handle, &field.lookup_filename_handle, &field.prefix_text_handle,
              &field.suffix_text_handle, &field.data_manip_condition_handle, &field.transmit_condition_handle,
              &field.calculated_field_handle, &field.branch_condition_handle})
            text->assign(250 - number % 7, fill = fill == '\xFF' ? '\x01' : static_cast<char>(fill + 1));
    }
    const std::string bytes = saved_bytes();
    EXPECT_GT(bytes.size(), 250U * 11 * 245);
    ASSERT_EQ(open_bytes(bytes), 1);
    EXPECT_EQ(program_header.fields.size(), MAX_FIELDS);
    EXPECT_EQ(field_list_total, 251);
    EXPECT_EQ(program_header.fields.back().branch_condition_handle.size(), 250U - 249 % 7);
    EXPECT_EQ(saved_bytes(), bytes);
}

TEST_F(ProgramFileTest, TakesThePaddingOfATransferAndNothingElse) {
    EXPECT_EQ(open_bytes(SMALL_PROGRAM + std::string(96, '\0')), 1);
    expect_library_refusal();
    EXPECT_EQ(open_bytes(SMALL_PROGRAM + std::string(96, '\0') + 'x'), 0);
    expect_library_refusal();
    EXPECT_EQ(open_bytes(SMALL_PROGRAM + SMALL_PROGRAM), 0);
    std::string earlier_model = SMALL_PROGRAM + "x";
    for (const char type : {'i', 'P', '\0'}) {
        earlier_model[4] = type;
        expect_quendal_refusal();
        EXPECT_EQ(open_bytes(earlier_model), 0);
    }
}

TEST_F(ProgramFileTest, OnlyAProgramIsOpened) {
    expect_warning("Cannot Open Program File!", "Open File");
    EXPECT_EQ(open_program_file(nullptr, path("NONE.PGT")), 0);
    for (const char type : {'S', 'R', 'i'}) {
        std::string other = SMALL_PROGRAM;
        other[4] = type;
        EXPECT_EQ(open_bytes(other), 0);
        EXPECT_TRUE(program_header.fields.empty());
    }
}

TEST_F(ProgramFileTest, ReportsEveryTruncation) {
    for (std::size_t size = 0; size < SMALL_PROGRAM.size(); ++size) {
        SCOPED_TRACE(size);
        // Two or three zeros are an empty file with its padding, and then no program.
        if (size >= 5)
            expect_library_refusal();
        else if (size != 2 && size != 3)
            expect_quendal_refusal();
        EXPECT_EQ(open_bytes(SMALL_PROGRAM.substr(0, size)), 0);
        EXPECT_TRUE(program_header.fields.empty());
    }
}

// Truncated, but with a length word that fits what is left.
TEST_F(ProgramFileTest, EveryShorterLengthIsAWrongChecksum) {
    for (std::uint32_t size = 5; size < 143; ++size) {
        SCOPED_TRACE(size);
        std::string data = SMALL_PROGRAM.substr(0, size);
        put_long(data, 0, size);
        expect_warning(BAD_CHECKSUM_TEXT, "Invalid Checksum");
        EXPECT_EQ(open_bytes(stamped(data)), -1);
        EXPECT_LE(program_header.fields.size(), 2U);
    }
}

TEST_F(ProgramFileTest, ReportsEveryChangedByte) {
    for (std::size_t offset = 0; offset < SMALL_PROGRAM.size(); ++offset)
        for (const int change : {0x01, 0x20, 0xFF}) {
            SCOPED_TRACE(testing::Message() << "offset " << offset << ", change " << change);
            std::string changed = SMALL_PROGRAM;
            changed[offset] = static_cast<char>(changed[offset] ^ change);
            if (offset < 4)
                expect_library_refusal();
            else if (offset > 4)
                expect_warning(BAD_CHECKSUM_TEXT, "Invalid Checksum");
            EXPECT_EQ(open_bytes(changed), offset <= 4 ? 0 : -1);
        }
}

TEST_F(ProgramFileTest, LengthWordsAndCountsAreClaims) {
    for (const std::uint32_t length :
         {0U, 23U, 142U, 144U, 0x7FFFFFFFU, 0xFFFFFFFDU, 0xFFFFFFFEU, 0xFFFFFFFFU}) {
        std::string bytes = SMALL_PROGRAM;
        put_long(bytes, 0, length);
        expect_library_refusal();
        EXPECT_EQ(open_bytes(bytes), 0) << length;
    }
    std::string data = SMALL_PROGRAM.substr(0, 143);
    data[5] = '\xFF';
    data[8] = '\xFF';
    for (const std::size_t padding : {0U, 5000U}) {
        expect_warning(BAD_CHECKSUM_TEXT, "Invalid Checksum");
        EXPECT_EQ(open_bytes(stamped(data) + std::string(padding, '\0')), -1);
        EXPECT_EQ(program_header.fields.size(), 2U);
        EXPECT_EQ(field_list_total, 3);
    }
}

TEST_F(ProgramFileTest, AWrongChecksumLeavesTheFieldsLoaded) {
    std::string bytes = SMALL_PROGRAM;
    bytes[SMALL_PROGRAM.find("Item")] = 'i';
    expect_warning(BAD_CHECKSUM_TEXT, "Invalid Checksum");
    EXPECT_EQ(open_bytes(bytes), -1);
    ASSERT_EQ(program_header.fields.size(), 2U);
    EXPECT_EQ(program_header.fields.back().prompt_string_handle, "item");
}

TEST_F(ProgramFileTest, AFailedSaveIsReportedAndLeavesTheOldFile) {
    const char* const failed = "Cannot Save Program File.\nFile Creation Error!";
    fill_small_program();
    std::filesystem::create_directories(path("FOLDER.PGT/KEEP"));
    for (const char* name : {"NO FOLDER/PROGRAM.PGT", "FOLDER.PGT"}) {
        expect_warning(failed, "Save File");
        EXPECT_EQ(save_program_file(path(name)), 0);
        EXPECT_EQ(program_header.file_size, 0U);
    }
    EXPECT_EQ(files_in_folder(), 1U);

    // A save leaves files alone that happen to bear its working name.
    write_bytes(path("~TOLVAN0.TMP"), "mine");
    EXPECT_EQ(saved_bytes(), SMALL_PROGRAM);
    EXPECT_EQ(read_bytes(path("~TOLVAN0.TMP")), "mine");
}

TEST_F(ProgramFileTest, DefaultsOfProgramAndField) {
    fill_small_program();
    global_options.field_compare = 3;
    init_programming();
    EXPECT_TRUE(program_header.fields.empty());
    EXPECT_EQ(program_header.name + program_header.sof_text_handle, "");
    EXPECT_EQ(global_options.field_compare, 0);
    EXPECT_EQ(global_options.mult_field_operator, 1);
    FIELD_DEFINITION field;
    field.start_row = 3;
    init_field(field);
    EXPECT_EQ(field.bit_values1, 0xDA);
    EXPECT_EQ(field.barcode_bit_values, 0x8001);
    EXPECT_EQ(field.start_row, 0);
    EXPECT_EQ(field.end_col, 19);
    EXPECT_EQ(field.max_input, 250);
    EXPECT_EQ(field.input_mask_handle + field.suffix_text_handle, "A\r\n");
}

TEST_F(ProgramFileTest, TheSampleSavesBackToTheSameBytes) {
    const std::string sample = TOLVAN_SAMPLES "/STOCK.PGT";
    init_programming();
    ASSERT_EQ(open_program_file(nullptr, sample), 1);
    EXPECT_EQ(program_header.fields.size(), 8U);
    EXPECT_EQ(saved_bytes(), read_bytes(sample));
    EXPECT_EQ(read_bytes(TOLVAN_SAMPLES "/STOCK.DAT").substr(0, 17), "D\r\nSTOCK\r\nSTOCK\r\n");
}
