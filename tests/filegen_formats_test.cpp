#include "files/FILEGEN_formats.h"

#include "files/FILEGEN.h"
#include "files/MEMORY.h"
#include "tests/filegen_script.h"
#include "tests/test_files.h"

#include <sstream>
#include <tuple>

namespace {

using namespace std::string_literals;

constexpr int DATA = DATA_FILE_EDITED;
constexpr int LOOKUP = LOOKUP_FILE_EDITED;
const std::string ITEMS = "A1||Gr\xFCn|"; // records, each with a bar behind it
const std::string ITEMS_FILE = "\0\0\0%RITEMS\0\0\0\0\0\0\0\0\0\x03\xE8_\xFFs\x02"
                               "A1\xFF\xFF\0\xFF&\x04Gr\xFCn"s;
const OUTCOME NOTHING = {0, ""};
const OUTCOME CANCELLED = {-1, ""}; // the choice of a library's member
const OUTCOME BAD_CHECKSUM = {-1, "Invalid Checksum in Lookup File!", "Invalid Checksum"};

void store_records(const std::string& records) {
    initialize_memory();
    std::istringstream source(records);
    for (std::string record; std::getline(source, record, '|');)
        add_record_entry(record);
}

class FilegenFormatsTest : public FILE_TEST {
protected:
    void expect_opened(const std::string& bytes, int file_type, const OUTCOME& outcome) const {
        if (!outcome.text.empty())
            expect_warning(outcome.text, outcome.caption);
        if (outcome.result == CANCELLED.result && outcome.text.empty())
            expect_library_member({}, CANCELLED.result);
        initialize_memory();
        sys_file_name = data_program_name = "before";
        write_bytes(path("OPENEDFILE.X"), bytes);
        EXPECT_EQ(read_edit_file(nullptr, path("OPENEDFILE.X"), file_type), outcome.result);
        EXPECT_TRUE(filegen_questions_asked() && library_questions_asked());
        EXPECT_TRUE(outcome.result < 0 || record_count() == static_cast<std::uint32_t>(outcome.result));
    }
    void expect_saved(const std::string& name, int file_type, int format, int result) const {
        if (file_type == LOOKUP)
            expect_lookup_format(format);
        EXPECT_EQ(write_edit_file(nullptr, path(name), file_type), result);
    }
};

} // namespace

TEST_F(FilegenFormatsTest, SavesAndReopensEveryFormByteForByte) {
    const std::tuple<std::string, int, int, std::string, int, std::string> cases[] = {
        {"EMPTY.LKT", LOOKUP, LOOKUP_SYSTEM_FILE, "", 0, "\0\0\0\x16REMPTY\0\0\0\0\0\0\0\0\0\0zi"s},
        {"ITEMS.LKT", LOOKUP, LOOKUP_SYSTEM_FILE, ITEMS, 3, ITEMS_FILE},
        {"EIGHTCHR.T", LOOKUP, LOOKUP_ASCII_FILE, "|b|", 2, "L\r\nEIGHTCHR\r\n\r\n\r\nb\r\n"},
        {"NINECHARS.DAT", DATA, 0, ITEMS, 3, "D\r\nNINECHAR\r\nPROG\r\nA1\r\n\r\nGr\xFCn\r\n"},
    };
    for (const auto& [file, file_type, format, records, count, bytes] : cases) {
        store_records(records);
        data_program_name = "PROG";
        write_bytes(path(file), "an older file");
        expect_saved(file, file_type, format, 1);
        EXPECT_EQ(read_bytes(path(file)), bytes);
        const std::string name = sys_file_name;
        expect_opened(bytes, file_type, {count, ""});
        EXPECT_EQ(stored_records(), records);
        EXPECT_EQ(sys_file_name, name);
        EXPECT_EQ(data_program_name, file_type == DATA ? "PROG" : "");
    }
}

TEST_F(FilegenFormatsTest, SplitsTextIntoLines) {
    const std::string x250(250, 'x');
    const std::tuple<std::string, int, std::string> cases[] = {{"", 0, ""},
                                                               {"a\rb\n", 2, "a|b|"},
                                                               {"a\n\rb", 2, "a|b|"},
                                                               {"a\n\n\nb", 3, "a||b|"},
                                                               {"a\r\n\r\nb", 3, "a||b|"},
                                                               {"\ra\n\r\nb", 4, "|a||b|"},
                                                               {x250 + "\r\na", 2, x250 + "|a|"},
                                                               {x250 + "x\r\na", 3, x250 + "x||a|"},
                                                               {x250 + "xa\n", 2, x250 + "x|a|"}};
    for (const auto& [text, count, records] : cases) {
        expect_opened("L\r\nN\r\nP\r\n" + text, LOOKUP, {count, ""});
        EXPECT_EQ(stored_records(), records) << testing::PrintToString(text);
    }
    expect_opened("L\r\nN\r\nP\r\n" + std::string(5000, 'x'), LOOKUP, {20, ""});
}

TEST_F(FilegenFormatsTest, TellsEveryKindOfFileByItsStart) {
    const auto file = [](char type, std::uint32_t length, const std::string& rest) {
        return with_length_word(std::string(ITEMS_FILE).replace(4, 1, 1, type), length) + rest;
    };
    const std::string dbase = "\x03\x01\x01\x01\x01\0\0\0\x41\0\x03\0"s + std::string(20, '\0') + "NAME"s +
                              std::string(7, '\0') + "C\0\0\0\0\x02"s + std::string(15, '\0') + "\r ab\x1A";
    // The last text names the columns that the import offers.
    const std::tuple<int, std::string, OUTCOME, std::string, std::string> cases[] = {
        {LOOKUP, dbase, OPENED, "OPENEDFI/before", "NAME"},
        {LOOKUP, "l\r\nEIGHTCHR\r\nprog\r\nx\r\n", OPENED, "EIGHTCHR/", ""},
        {DATA, "d\nN\nEIGHTCHR\nx", OPENED, "N/EIGHTCHR", ""},
        {DATA, "D\nNINECHARS\nP\nx", NOTHING, "before/", ""},
        {DATA, "D\nN\nNINECHARS\nx", NOTHING, "N/", ""},
        {LOOKUP, "D\r\nN", {2, ""}, "OPENEDFI/", "D"},
        {LOOKUP, ITEMS_FILE + "\0\0\0"s, {3, ""}, "ITEMS/", ""},
        {LOOKUP, file('r', 37, ""), NOTHING, "before/", ""},
        {LOOKUP, file('I', 36, ""), NOTHING, "before/", ""}, // its checksum would stand past the end
        {LOOKUP, file('I', 37, "\0\0\0"s), NOTHING, "before/", ""},
        {LOOKUP, file('I', 37, "xxx"), CANCELLED, "before/", ""},
        {LOOKUP, file('S', 0xFFFFFFFF, ""), NOTHING, "before/", ""},
        {LOOKUP, file('I', 0x7B00, ""), QUENDAL, "before/", ""},
        {LOOKUP, file('R', 0x7B00, std::string(0x7B00, 'x')), BAD_CHECKSUM, "ITEMS/", ""},
        {LOOKUP, "Description,Code", OPENED, "OPENEDFI/", "Description|Code"},
        {LOOKUP, "A1\r\nR2", {2, ""}, "OPENEDFI/", "A1"},
        {LOOKUP, "", {0, "Empty ASCII File."}, "OPENEDFI/", ""},
    };
    for (const auto& [file_type, bytes, outcome, names, columns] : cases) {
        if (!columns.empty())
            expect_import_choice(columns, "y");
        expect_opened(bytes, file_type, outcome);
        EXPECT_EQ(sys_file_name + "/" + data_program_name, names)
            << testing::PrintToString(bytes.substr(0, 20));
    }
}

TEST_F(FilegenFormatsTest, BearsEveryDamageToASystemFile) {
    for (std::size_t at = 5; at < ITEMS_FILE.size(); ++at) {
        const std::string cut = ITEMS_FILE.substr(0, at);
        expect_opened(cut, LOOKUP, NOTHING);
        expect_opened(at < 22 ? cut : stamped(cut, LOOKUP_CHECKSUM), LOOKUP, NOTHING);
    }
    // Which byte is another, and how many records come before the wrong checksum; 0 where the file ends
    // early.
    const std::tuple<std::size_t, char, std::size_t> cases[] = {
        {0, '\x7F', 3}, {5, 'X', 3},     {19, '\x04', 0}, {19, '\x02', 2},
        {21, 'X', 3},   {24, '\xFF', 0}, {36, 'm', 3}};
    for (const auto& [at, byte, records] : cases) {
        expect_opened(std::string(ITEMS_FILE).replace(at, 1, 1, byte), LOOKUP,
                      records == 0 ? NOTHING : BAD_CHECKSUM);
        EXPECT_EQ(record_count(), records) << at;
    }
    const std::string changed = std::string(ITEMS_FILE).replace(25, 1, 1, '\xFF').replace(34, 1, 1, '\0');
    expect_opened(
        stamped(changed, LOOKUP_CHECKSUM), LOOKUP,
        {3,
         "Records with characters that a record cannot hold: 2.\nThe characters were replaced or cut off."});
    EXPECT_EQ(stored_records(), "?1||G|");
}

TEST_F(FilegenFormatsTest, ASaveThatFailsLeavesTheOldFileAndNoOther) {
    store_records(std::string(255, 'x') + "|" + std::string(256, 'x'));
    write_bytes(path("OLD.LKT"), "old");
    expect_warning("Line 2 is longer than 255 characters.\nA lookup system file cannot hold it.",
                   "Lookup File");
    expect_saved("NEW.LKT", LOOKUP, LOOKUP_SYSTEM_FILE, -1);
    EXPECT_EQ(files_in_folder(), 1U);
    store_records(ITEMS);
    for (int number = 0; number < 1000; ++number) // no name is left for the file that is to replace it
        write_bytes(path("~TOLVAN" + std::to_string(number) + ".TMP"), "");
    for (const int format : {LOOKUP_SYSTEM_FILE, LOOKUP_ASCII_FILE})
        expect_saved("OLD.LKT", LOOKUP, format, -1);
    EXPECT_EQ(read_bytes(path("OLD.LKT")), "old");
    expect_warning("Cannot Save File.\nFile Creation Error!", "Save File"); // before the form is asked for
    EXPECT_EQ(write_edit_file(nullptr, path("NO FOLDER/X.LKT"), LOOKUP), 0);
    expect_saved("OLD.LKT", LOOKUP, 0, 0);
    EXPECT_EQ(read_bytes(path("OLD.LKT")), "") << "choosing neither form empties the file";
    expect_warning("Cannot Open File!", "Open File");
    EXPECT_EQ(read_edit_file(nullptr, path("NO FILE"), LOOKUP), 0);
}

TEST_F(FilegenFormatsTest, ALargeFileIsReadUntilMemoryEnds) {
    std::string text = "L\r\nN\r\nP\r\n";
    for (int number = 0; number < 300000; ++number)
        text += "line " + std::to_string(number) + "\r\n";
    expect_opened(text, LOOKUP, {300000, ""});
    EXPECT_LT(desktop_status_log.size(), 100U) << "the progress box is not redrawn each line";
    expect_saved("LARGE.LKT", LOOKUP, LOOKUP_SYSTEM_FILE, 1);
    most_memchunks = 3;
    for (const std::string& bytes : {text, read_bytes(path("LARGE.LKT"))}) {
        expect_opened(bytes, LOOKUP, {-1, "System out of memory!", "Memory Allocation"});
        EXPECT_GT(record_count(), 1000U) << "what was read stays";
    }
    most_memchunks = std::string::npos;
}
