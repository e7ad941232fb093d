// Opening and saving lookup and data files of every kind: what is in the file, in the store and said. With
// files that a spreadsheet program wrote (tests/data).
#include "files/FILEGEN.h"
#include "files/MEMORY.h"
#include "tests/file_script.h"
#include "tests/test_files.h"

#include <algorithm>
#include <sstream>
#include <tuple>

namespace {

using namespace std::string_literals;

constexpr int DATA = DATA_FILE_EDITED;
constexpr int LOOKUP = LOOKUP_FILE_EDITED;
const std::string ITEMS = "A1||Gr\xFCn|";
const std::string ITEMS_FILE = "\0\0\0%RITEMS\0\0\0\0\0\0\0\0\0\x03\xE8_\xFFs\x02"
                               "A1\xFF\xFF\0\xFF&\x04Gr\xFCn"s;

struct WARNING {
    std::string text = {};
    std::string caption = "Open File";
};
const WARNING BAD_CHECKSUM = {"Invalid Checksum in Lookup File!", "Invalid Checksum"};
const WARNING NO_MEMORY = {"System out of memory!", "Memory Allocation"};

WARNING changed(int records) {
    return {"Records with characters that a record cannot hold: " + std::to_string(records) +
            ".\nThe characters were replaced or cut off."};
}

std::string word(std::size_t value) {
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
}

std::string dbase_header(std::size_t header_length, std::size_t record_length, char version = 3) {
    return version + "\x1A\x0B\x15"s + "\xFF\xFF\xFF\xFF" + word(header_length) + word(record_length) +
           std::string(20, '\0');
}

std::string dbase_field(std::string name, std::size_t length) {
    name.resize(11, '\0');
    return name + "C" + std::string(4, '\0') + word(length) + std::string(14, '\0');
}

class FilegenFilesTest : public FILE_TEST {
protected:
    // What is stored once the bytes were opened as a file, with "-1" before it where that is the result.
    std::string opened(const std::string& bytes, int file_type = LOOKUP, const WARNING& warning = {}) const {
        if (!warning.text.empty())
            expect_warning(warning.text, warning.caption);
        initialize_memory();
        sys_file_name = data_program_name = "before";
        write_bytes(path("OPENEDFILE.X"), bytes);
        const std::int64_t result = read_edit_file(nullptr, path("OPENEDFILE.X"), file_type);
        EXPECT_TRUE(result == -1 || result == record_count());
        EXPECT_TRUE(desktop_status_log.empty() || desktop_status_log.back() == "close");
        return (result == -1 ? "-1 " : "") + stored_records();
    }
    std::string imported(const std::string& bytes, const std::string& names, const std::string& columns,
                         const IMPORT_OPTIONS& options = {}, const WARNING& warning = {}) const {
        expect_import_choice(names, columns, options);
        return opened(bytes, LOOKUP, warning);
    }
    void expect_saved(const std::string& name, int file_type, int format, int result) const {
        if (file_type == LOOKUP)
            expect_lookup_format(format);
        EXPECT_EQ(write_edit_file(nullptr, path(name), file_type), result);
    }
};

} // namespace

TEST_F(FilegenFilesTest, OpensAndSavesEveryFormByteForByte) {
    const std::tuple<std::string, int, int, std::string, std::string> cases[] = {
        {"EMPTY.LKT", LOOKUP, LOOKUP_SYSTEM_FILE, "", "\0\0\0\x16REMPTY\0\0\0\0\0\0\0\0\0\0zi"s},
        {"ITEMS.LKT", LOOKUP, LOOKUP_SYSTEM_FILE, ITEMS, ITEMS_FILE},
        {"EIGHTCHR.T", LOOKUP, LOOKUP_ASCII_FILE, "|b|", "L\r\nEIGHTCHR\r\n\r\n\r\nb\r\n"},
        {"NINECHARS.DAT", DATA, 0, ITEMS, "D\r\nNINECHAR\r\nPROG\r\nA1\r\n\r\nGr\xFCn\r\n"},
    };
    for (const auto& [file, file_type, format, records, bytes] : cases) {
        EXPECT_EQ(opened(bytes, file_type), records);
        sys_file_name = data_program_name = "PROG";
        write_bytes(path(file), "an older file");
        expect_saved(file, file_type, format, 1);
        EXPECT_EQ(read_bytes(path(file)), bytes);
    }
}

TEST_F(FilegenFilesTest, OpensEveryFileAsWhatItIs) {
    const auto file = [](char type, std::uint32_t length, const std::string& rest) {
        return with_length_word(std::string(ITEMS_FILE).replace(4, 1, 1, type), length) + rest;
    };
    const auto with_byte = [](std::size_t at, char byte) {
        return std::string(ITEMS_FILE).replace(at, 1, 1, byte);
    };
    const std::string dbase = dbase_header(65, 3, '\xF5') + dbase_field("NAME", 2) + "\r ab\x1A";
    const std::string own = "L\r\nN\r\nP\r\n";
    const std::string x250(250, 'x');
    const std::string unheld = stamped(with_byte(25, '\xFF').replace(34, 1, 1, '\0'), LOOKUP_CHECKSUM);
    const std::tuple<int, std::string, WARNING, std::string, std::string, std::string> cases[] = {
        // the file's bytes, the warning, the columns that the import offers, the names, and the records
        {LOOKUP, dbase, {}, "NAME|", "OPENEDFI/before", "ab|"},
        {LOOKUP, "Description,Code", {}, "Description|Code|", "OPENEDFI/", "Description|"},
        {LOOKUP, "A1\r\nR2", {}, "A1|", "OPENEDFI/", "A1|R2|"},
        {LOOKUP, "D\r\nN", {}, "D|", "OPENEDFI/", "D|N|"},
        {LOOKUP, "", {"Empty ASCII File."}, "", "OPENEDFI/", ""},
        {LOOKUP, "l\r\nEIGHTCHR\r\nprog\r\nx\r\n", {}, "", "EIGHTCHR/", "x|"},
        {LOOKUP, own + "a\rb\n", {}, "", "N/", "a|b|"},
        {LOOKUP, own + "a\n\rb", {}, "", "N/", "a|b|"},
        {LOOKUP, own + "\ra\n\r\nb\n\n\nc", {}, "", "N/", "|a||b||c|"},
        {LOOKUP, own + x250 + "x\r\na", {}, "", "N/", x250 + "x||a|"},
        {LOOKUP, own + x250 + "xa\n", {}, "", "N/", x250 + "x|a|"},
        {DATA, "d\nN\nEIGHTCHR\nx", {}, "", "N/EIGHTCHR", "x|"},
        {DATA, "D\nNINECHARS\nP\nx", {}, "", "before/", ""},
        {DATA, "D\nN\nNINECHARS\nx", {}, "", "N/", ""},
        {LOOKUP, ITEMS_FILE + "\0\0\0"s, {}, "", "ITEMS/", ITEMS},
        {LOOKUP, file('r', 37, ""), {}, "", "before/", ""},
        {LOOKUP, file('I', 36, ""), {}, "", "before/", ""}, // its checksum would stand past the end
        {LOOKUP, file('I', 37, "\0\0\0"s), {}, "", "before/", ""},
        {LOOKUP, file('S', 0xFFFFFFFF, ""), {}, "", "before/", ""},
        {LOOKUP, file('I', 0x7B00, ""), {QUENDAL.text}, "", "before/", ""},
        {LOOKUP, file('R', 0x7B00, std::string(0x7B00, 'x')), BAD_CHECKSUM, "", "ITEMS/", "-1 " + ITEMS},
        {LOOKUP, with_byte(0, '\x7F'), BAD_CHECKSUM, "", "ITEMS/", "-1 " + ITEMS},
        {LOOKUP, with_byte(19, '\x02'), BAD_CHECKSUM, "", "ITEMS/", "-1 A1||"},
        {LOOKUP, with_byte(19, '\x04'), {}, "", "ITEMS/", ""},
        {LOOKUP, with_byte(24, '\xFF'), {}, "", "ITEMS/", ""},
        {LOOKUP, with_byte(36, 'm'), BAD_CHECKSUM, "", "ITEMS/", "-1 A1||Gr\xFCm|"},
        {LOOKUP, unheld, changed(2), "", "ITEMS/", "?1||G|"},
    };
    for (const auto& [file_type, bytes, warning, columns, names, records] : cases) {
        SCOPED_TRACE(testing::PrintToString(bytes.substr(0, 40)));
        if (!columns.empty())
            expect_import_choice(columns, "y");
        EXPECT_EQ(opened(bytes, file_type, warning), records);
        EXPECT_EQ(sys_file_name + "/" + data_program_name, names);
    }
    expect_library_member("", -1);
    EXPECT_EQ(opened(file('I', 37, "xxx")), "-1 ");
    for (std::size_t at = 5; at < ITEMS_FILE.size(); ++at) {
        const std::string cut = ITEMS_FILE.substr(0, at);
        EXPECT_EQ(opened(cut) + opened(at < 22 ? cut : stamped(cut, LOOKUP_CHECKSUM)), "") << at;
    }
}

TEST_F(FilegenFilesTest, WhatCannotBeSavedOrOpenedIsReported) {
    const std::string longest(255, 'x');
    EXPECT_EQ(imported(longest + "\n" + longest + "x", longest.substr(0, 19) + "|", "y").size(), 513U);
    expect_lookup_format(LOOKUP_SYSTEM_FILE);
    expect_warning("Line 2 is longer than 255 characters.\nA lookup system file cannot hold it.",
                   "Lookup File");
    EXPECT_EQ(write_edit_file(nullptr, path("NEW.LKT"), LOOKUP), -1);
    EXPECT_EQ(files_in_folder(), 1U);
    write_bytes(path("OLD.LKT"), "old");
    expect_warning("Cannot Save File.\nFile Creation Error!", "Save File"); // before the form is asked for
    EXPECT_EQ(write_edit_file(nullptr, path("NO FOLDER/X.LKT"), LOOKUP), 0);
    expect_saved("OLD.LKT", LOOKUP, 0, 0);
    EXPECT_EQ(read_bytes(path("OLD.LKT")), "") << "choosing neither form empties the file";
    expect_warning("Cannot Open File!", "Open File");
    EXPECT_EQ(read_edit_file(nullptr, path("NO FILE"), LOOKUP), 0);
}

TEST_F(FilegenFilesTest, ALargeFileIsReadUntilMemoryEnds) {
    std::string lines;
    for (int number = 0; number < 300000; ++number)
        lines += "line " + std::to_string(number) + "\r\n";
    const std::string text = "L\r\nN\r\nP\r\n" + lines;
    const std::string records = opened(text);
    EXPECT_EQ(std::ranges::count(records, '|'), 300000);
    EXPECT_LT(desktop_status_log.size(), 100U) << "the progress box is not redrawn each line";
    expect_saved("LARGE.LKT", LOOKUP, LOOKUP_SYSTEM_FILE, 1);
    for (const std::string& bytes : {text, read_bytes(path("LARGE.LKT")), lines})
        for (const bool enough : {true, false}) {
            if (bytes == lines)
                expect_import_choice("line 0|", "y");
            most_memchunks = enough ? std::string::npos : 3;
            const std::string kept = opened(bytes, LOOKUP, enough ? WARNING{} : NO_MEMORY);
            EXPECT_EQ(kept, enough ? records : "-1 " + records.substr(0, kept.size() - 3));
            EXPECT_GT(kept.size(), 2 * MEMCHUNK_SIZE);
        }
    most_memchunks = std::string::npos;
}

// Pairs of a line and its values.
TEST_F(FilegenFilesTest, SplitsTextAtItsCommas) {
    std::istringstream table(R"(
        ,       ||         ,,,     |||         ""      ||         "",        ||
        ,a      |a|        a,      a|          a,,     a||        a,,b       a||b|    ,"a",      |a||
        a,"b",  a|b|       ""b,c   |b,c|       "a""b"  a|b|       a,"b,c",d  a|b,c|d| "ab"c,d    ab|c|d|
        a,x"b"  a|x"b"|    a"b",c  a"b"|c|     "open,  open,|     a,"open    a|open|  ,"a","b",  |a|b||)");
    for (std::string line, values; table >> line >> values;)
        EXPECT_EQ(imported(line, values, "yyyyy"), values) << line;
}

TEST_F(FilegenFilesTest, ImportsText) {
    EXPECT_EQ(imported("\n \r\n\ra,b\n\n  \n\rc\n\nd,e,f\n\n   ", "a|b|", "yy"), "a|b|c||d|e|");
    EXPECT_EQ(imported("a\0,\0b\0\r\0\n\0c\0\r\0\n\0"s, "a|b|", "yy"), "a|b|c||");
    EXPECT_EQ(
        imported("\1\1x,\1y\xE4~\n\"\1\1x\",\1\n,\1x\n\xFF\xFE,\xE4\n", "\1x|y~|", "yy", {}, changed(1)),
        "\1x|y~|\1x|||x|?||");
    EXPECT_EQ(imported("a name of 20 letters,b\n", "a name of 20 letter|b|", "yn"), "a name of 20 letters|");
    const std::string values = "  0012  ,000, 0 1 ,1234567890123456789012,   \n";
    const std::string names = "  0012|000| 0 1|1234567890123456789||";
    EXPECT_EQ(imported(values, names, "yyyyy"), "0012|000|0 1|1234567890123456789012||");
    EXPECT_EQ(imported(values, names, "yyyyy", {true, false, true, true}),
              "12  || 1 |12345678901234567890||");

    const WARNING too_long = {"ASCII file contains lines greater than 1024 chars long"};
    const WARNING too_wide = {"Conversion Error - Fields could not fit into buffer."};
    const std::string longest(1023, 'x');
    EXPECT_EQ(opened("\r\n  \r\n\n", LOOKUP, {"Empty ASCII File."}), "");
    EXPECT_EQ(imported(longest + "\n", longest.substr(0, 19) + "|", "y"), longest + "|");
    EXPECT_EQ(imported("a\n" + longest + "x\nc\n", "a|", "y", {}, too_wide), "a|");
    EXPECT_EQ(imported("a\nb\n" + std::string(5000, ' ') + "\nc\n", "a|", "y", {}, too_long), "a|b|");
    const FILE_HANDLE unreadable = open_file(path(""), "rb"); // a folder opens, but it cannot be read
    TEXT_SOURCE source = open_source(unreadable.get());
    expect_warning("Unexpected Error in ASCII File.", "Open File");
    EXPECT_EQ(read_text_ascii_file(nullptr, source), 0);
}

TEST_F(FilegenFilesTest, ImportsTablesWhateverTheirHeaderSays) {
    const std::string names = "NAME|CODE|";
    const std::string fields_and_rows = dbase_field("NAME", 4) + dbase_field("CODE", 3) +
                                        "\r Ann 007*Gone999 Bob   1*Gone998*Gone997 Eve\0000 0\x1A Late123"s;
    const std::string file = dbase_header(97, 8) + fields_and_rows;
    EXPECT_EQ(imported(file, names, ""), "-1 ");
    EXPECT_EQ(imported(file, names, "yy"), "Ann|007|Bob|1|Eve|0 0|");
    EXPECT_EQ(imported(file, names, "ny", {false, false, false, false}), "007|  1|0 0|");
    for (std::size_t size = 0; size < file.size(); ++size) {
        const std::string cut = file.substr(0, size);
        // The rows end at 97 + 8, + 24 and + 48 bytes; deleted ones lie between.
        const std::size_t rows = (size >= 105) + (size >= 121) + (size >= 145);
        if (size < DBASE_HEADER_SIZE)
            EXPECT_EQ(is_dbase_file(cut, size), 0);
        else if (size < 96)
            EXPECT_EQ(opened(cut), "-1 ");
        else
            EXPECT_EQ(imported(cut, names, "yn"), "Ann|Bob|Eve|"s.substr(0, rows * 4)) << size;
    }
    EXPECT_EQ(opened(dbase_header(65535, 8) + fields_and_rows), "-1 ");
    const std::string one_field = dbase_header(65, 0) + dbase_field("A", 2);
    EXPECT_EQ(imported(one_field + "\r*** ab", "A|", "y"), "ab|"); // a deleted row without a length
    EXPECT_EQ(imported(one_field + "\rjunk ab\r\n cd", "A|", "y"), "ab|cd|");
    EXPECT_EQ(imported(dbase_header(65, 65535) + dbase_field("A", 2) + "\r ab*cd ef", "A|", "y"), "ab|");
    const std::string longest(255, 'x');
    EXPECT_EQ(imported(dbase_header(65, 256) + dbase_field("A", 255) + "\r " + longest, "A|", "y"),
              longest + "|");

    EXPECT_EQ(is_dbase_file(dbase_header(32, 8), 1000), 0);
    std::string start = dbase_header(97, 8);
    start[4] = 'R';
    EXPECT_EQ(is_dbase_file(start, 0x31A0B14), 1);
    EXPECT_EQ(is_dbase_file(start, 0x31A0B15), 0) << "a lookup system file: its first word is its length";
}

TEST_F(FilegenFilesTest, ImportsWhatASpreadsheetWrote) {
    const std::string names = "NAME|CODE|PRICE|SINCE|ACTIVE|NOTE|";
    EXPECT_EQ(imported(read_bytes(TOLVAN_TEST_DATA "/people.dbf"), names, "yynnny"),
              "Anna|0012|one, two|Bert|000||M\x81ller|0700|said \"yes\"||0001|last|");
    EXPECT_EQ(desktop_status_log, (std::vector<std::string>{"open 1", "update 263/378", "close"}));
    EXPECT_EQ(imported(read_bytes(TOLVAN_TEST_DATA "/people.csv"), names, "yynnny"),
              "NAME|CODE|NOTE|Anna|0012|one, two|Bert|000||Mller|0700|said||0001|last|");
}
