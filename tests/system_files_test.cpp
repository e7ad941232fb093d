// The program file and the setup file: each byte in its place, and every damage reported.
#include "library/LIB.h"
#include "program/Prog.h"
#include "program/Prog_file.h"
#include "setup/SETUP.h"
#include "tests/file_script.h"
#include "tests/test_files.h"

namespace {

using namespace std::string_literals;

// A kind of file that starts with its length word and a type byte and ends with its checksum.
struct FILE_KIND {
    std::string name;
    int (*open)(const std::string& file);
    void (*save)(const std::string& file);
    std::string good; // the bytes of a valid file
    int checksum_type;
    bool speaks = false; // of a file of another type, where not the caller does so
    OUTCOME bad_checksum() const {
        return {-1, "Invalid Checksum in " + name + " File!", "Invalid Checksum"};
    }
};

std::string with_type(std::string bytes, char type) {
    bytes[4] = type;
    return bytes;
}

int open_program(const std::string& file) {
    no_lookup_target = true;
    init_programming();
    lookup_string = "old";
    const int result = open_program_file(nullptr, file);
    EXPECT_TRUE(result != 0 || program_header.fields.empty()) << "a refused file has brought fields";
    return result;
}

int open_setup(const std::string& file) {
    setup_record.DSPDLY = 77;
    const int result = static_cast<signed char>(open_setup_file(file));
    EXPECT_TRUE(result != 0 || setup_record.DSPDLY == 77) << "a refused file has changed the record";
    return result;
}

const FILE_KIND PROGRAM = {"Program", open_program, [](const std::string& file) { save_program_file(file); },
                           read_bytes(TOLVAN_SAMPLES "/STOCK.PGT"), PROGRAM_CHECKSUM};
const FILE_KIND SETUP = {"Setup",        open_setup, save_setup_file, read_bytes(TOLVAN_SAMPLES "/STOCK.CFT"),
                         SETUP_CHECKSUM, true};

class SystemFileTest : public FILE_TEST {
protected:
    std::string saved_bytes(const FILE_KIND& kind) const {
        write_bytes(path("~TOLVAN0.TMP"), "the operator's");
        kind.save(path("SAVED"));
        EXPECT_EQ(read_bytes(path("~TOLVAN0.TMP")), "the operator's")
            << "a name that is taken is not for working";
        return read_bytes(path("SAVED"));
    }
    void expect_outcome(const FILE_KIND& kind, const std::string& bytes, const OUTCOME& outcome) const {
        write_bytes(path("FILE"), bytes);
        if (!outcome.text.empty())
            expect_warning(outcome.text, outcome.caption);
        EXPECT_EQ(kind.open(path("FILE")), outcome.result);
    }
    // A damaged file may look like a library: its members are offered, or it is refused as one.
    void expect_library(const FILE_KIND& kind, const std::string& bytes) const {
        write_bytes(path("FILE"), bytes);
        std::vector<LIBRARY_MEMBER> members;
        const bool offers = read_library_members(open_file(path("FILE"), "rb").get(), true, members);
        if (offers)
            expect_library_member({}, -1);
        else if (kind.speaks)
            expect_warning("Invalid/Corrupt Library File!", "Invalid/Corrupt");
        EXPECT_EQ(kind.open(path("FILE")), offers ? -1 : 0);
    }
    // Opens the good file truncated at every byte, with every byte changed, and with every length word.
    void expect_damage_reported(const FILE_KIND& kind) const {
        const std::size_t length = kind.good.size() - CHECKSUM_SIZE;
        const OUTCOME other_type = {0, kind.speaks ? "Not a Valid Setup File!" : ""};
        for (std::size_t at = 0; at < kind.good.size(); ++at) {
            SCOPED_TRACE(testing::Message() << kind.name << " at byte " << at);
            const std::string cut = kind.good.substr(0, at);
            if (at >= 5)
                expect_library(kind, cut);
            else // two or three zeros are an empty file with its padding, and then no type
                expect_outcome(kind, cut, cut == "\0\0"s || cut == "\0\0\0"s ? other_type : QUENDAL);
            for (const int change : {0x01, 0x80, 0xFF}) {
                std::string changed = kind.good;
                changed[at] = static_cast<char>(changed[at] ^ change);
                if (at < 4)
                    expect_library(kind, changed);
                else
                    expect_outcome(kind, changed, at == 4 ? other_type : kind.bad_checksum());
            }
            if (at != length)
                expect_library(kind, with_length_word(kind.good, at));
            // Data may end too early even where length word and checksum are right.
            if (at >= 5 && at < length)
                expect_outcome(kind, stamped(cut, kind.checksum_type), kind.bad_checksum());
        }
        for (const std::uint32_t too_long : {0x7FFFFFFFU, 0xFFFFFFFDU, 0xFFFFFFFEU, 0xFFFFFFFFU})
            expect_library(kind, with_length_word(kind.good, too_long));
    }
};

} // namespace

TEST_F(SystemFileTest, WholeFilesOpenAndEveryDamageIsReported) {
    for (const FILE_KIND& kind : {PROGRAM, SETUP}) {
        expect_damage_reported(kind);
        for (const std::size_t padding : {1U, 5000U}) {
            expect_outcome(kind, kind.good + std::string(padding, '\0'), OPENED);
            expect_library(kind, kind.good + std::string(padding, '\0') + 'x');
        }
        for (const char type : std::string("IRS"))
            expect_library(kind, with_type(kind.good, type) + 'x');
        expect_outcome(kind, with_type(kind.good, 'Q') + 'x', QUENDAL);
        expect_outcome(kind, kind.good, OPENED);
        EXPECT_EQ(saved_bytes(kind), kind.good);
        expect_warning("Cannot Save " + kind.name + " File.\nFile Creation Error!", "Save File");
        kind.save(path("NO FOLDER/SAVED"));
        expect_warning("Cannot Open " + kind.name + " File!", "Open File");
        EXPECT_EQ(kind.open(path("NO FILE")), 0);
    }
}

TEST_F(SystemFileTest, TheFullestProgramSavesBackToTheSameBytes) {
    // The counts of headers and records: all, stored and keyed.
    std::string program = "\0\0\0\0I\x64\x50\x3C\x96\x78\x5A"
                          "FULLFULLF\x03\x04\x21"s;
    append_text(program, std::string(250, '\xFF'));
    append_text(program, std::string(250, '\x01'));
    for (std::size_t number = 0; number < MAX_FIELDS; ++number) {
        program += "\x40\x02\x80\x01"s + (number < 100 ? '\xDE' : '\xDA') + "DSEYN"[number % 5];
        program += "\x01\x02\x03\x04\xFA\x05LR\x06\x07\x18\x08\x09\0"s;
        for (std::size_t text = 0; text < 11; ++text)
            append_text(program, std::string(250, static_cast<char>(1 + (number + text) % 255)));
    }
    program = stamped(program, PROGRAM_CHECKSUM);
    expect_outcome(PROGRAM, program, OPENED);
    EXPECT_EQ(program_header.fields.size(), MAX_FIELDS);
    EXPECT_EQ(field_list_total, 251);
    EXPECT_EQ(lookup_string, std::string(250, '\x05'));
    EXPECT_FALSE(no_lookup_target);
    program_header.bit_values |= HEADER_CLEARED_AT_SAVE;
    program_header.file_size = 0;
    EXPECT_EQ(saved_bytes(PROGRAM), program);
    EXPECT_EQ(program_header.file_size, program.size() - CHECKSUM_SIZE);
}

TEST_F(SystemFileTest, WhatWasReadOfADamagedFileStays) {
    expect_outcome(PROGRAM, with_type(PROGRAM.good, 'i') + 'x', QUENDAL);
    std::string counts = PROGRAM.good.substr(0, PROGRAM.good.size() - CHECKSUM_SIZE);
    counts[5] = counts[8] = '\xFF';
    expect_outcome(PROGRAM, stamped(counts, PROGRAM_CHECKSUM), PROGRAM.bad_checksum());
    EXPECT_EQ(field_list_total, 9);
    EXPECT_EQ(program_header.fields.size(), 8U);
    expect_outcome(SETUP, std::string(SETUP.good).replace(5, 1, "B"), SETUP.bad_checksum());
    EXPECT_EQ(setup_record.C39FLAGS, 'B');
}

TEST_F(SystemFileTest, ASetupKeepsItsItemsAndItsTextsUpToTheirLimits) {
    std::string items = "\0\0\0\0s"s; // the type counts in either case
    for (char item = 0; item < 68; ++item)
        items += static_cast<char>(100 + item);
    std::string too_long = items;
    std::string cut = with_type(items, 'S');
    const std::pair<std::string SETUP_RECORD::*, std::size_t> texts[] = {
        {&SETUP_RECORD::PREAMBLEB, 32}, {&SETUP_RECORD::POSTAMBLEB, 32}, {&SETUP_RECORD::PHONENUM, 29},
        {&SETUP_RECORD::MODEMINIT, 99}, {&SETUP_RECORD::SOT_TEXT, 250},  {&SETUP_RECORD::EOT_TEXT, 250}};
    char fill = '0';
    for (const auto& [text, limit] : texts) {
        append_text(too_long, std::string(limit + 1000, ++fill));
        append_text(cut, std::string(limit, fill));
    }
    expect_outcome(SETUP, stamped(too_long, SETUP_CHECKSUM), OPENED);
    fill = '0';
    for (const auto& [text, limit] : texts)
        EXPECT_EQ(setup_record.*text, std::string(limit, ++fill)) << "cut when it is read";
    EXPECT_EQ(saved_bytes(SETUP), stamped(cut, SETUP_CHECKSUM));
    expect_library(SETUP, with_length_word(too_long, too_long.size()));
    expect_outcome(SETUP, with_length_word(too_long, 0x7C00), QUENDAL); // the mark of the earlier model
}
