// Import of dBase tables and comma-separated text, with files that a spreadsheet program wrote (tests/data).
#include "files/FILEGEN_import.h"
#include "files/MEMORY.h"
#include "tests/filegen_script.h"
#include "tests/test_files.h"

#include <algorithm>
#include <sstream>

namespace {

using std::string_literals::operator""s;

constexpr IMPORT_OPTIONS AS_IS = {false, false, false, false};

class IMPORT_TEST : public FILE_TEST {
protected:
    // Columns of "-": the question must not be asked.
    void expect_import(const std::string& bytes, const std::string& names, const std::string& columns,
                       std::int64_t result, const std::string& records, const IMPORT_OPTIONS& options = {}) {
        SCOPED_TRACE(bytes.substr(0, 100));
        initialize_memory();
        if (columns != "-")
            expect_import_choice(names, columns, options);
        write_bytes(path("IMPORT"), bytes);
        const FILE_HANDLE file = open_file(path("IMPORT"), "rb");
        TEXT_SOURCE source = open_source(file.get());
        const bool dbase = is_dbase_file(bytes, bytes.size()) == 1;
        const auto read = dbase ? read_dbase_file : read_text_ascii_file;
        EXPECT_EQ(read(nullptr, source), result);
        EXPECT_EQ(stored_records(), records);
        EXPECT_TRUE(filegen_questions_asked());
        EXPECT_TRUE(desktop_status_log.empty() || desktop_status_log.back() == "close");
    }
};

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

const std::string NAME_AND_CODE = dbase_field("NAME", 4) + dbase_field("CODE", 3) + "\r";
const std::string ROWS = " Ann 007*Gone999 Bob   1*Gone998*Gone997 Eve\0000 0\x1A Late123"s;

} // namespace

// Pairs of a line and its values, with '_' for a blank.
TEST(parse_buffer, splits_as_the_rules_say) {
    std::istringstream table(R"(
        ,       ||         ,,,     |||         ""      ||         "",        ||
        ,a      |a|        a,      a|          a,,     a||        a,,b       a||b|    ,"a",      |a||
        a,"b",  a|b|       ""b,c   |b,c|       "a""b"  a|b|       a,"b,c",d  a|b,c|d| "ab"c,d    ab|c|d|
        a,_"b"  a|_"b"|    a"b",c  a"b"|c|     "open,  open,|     a,"open    a|open|  ,"a","b",  |a|b||)");
    std::string line;
    std::string values;
    while (table >> line >> values) {
        std::ranges::replace(line, '_', ' ');
        std::ranges::replace(values, '_', ' ');
        std::vector<std::string_view> parsed;
        std::string row;
        EXPECT_EQ(parse_buffer(line, parsed), std::count(values.begin(), values.end(), '|')) << line;
        for (const std::string_view value : parsed)
            row += std::string(value) + "|";
        EXPECT_EQ(row, values) << line;
    }
}

TEST_F(IMPORT_TEST, of_text) {
    expect_import("\n \r\n\ra,b\n\n  \n\rc\n\nd,e,f\n\n   ", "a|b", "yy", 6, "a|b|c||d|e|");
    expect_import("a\0,\0b\0\r\0\n\0c\0\r\0\n\0"s, "a|b", "yy", 4, "a|b|c||");
    expect_import("\1\1x,\1y\xE4~\n\"\1\1x\",\1\n,\1x\n\xFF\xFE,\xE4\n", "\1x|y~", "yy", 8,
                  "\1x|y~|\1x|||x|?||");
    expect_import("a name of 20 letters,b\n", "a name of 20 letter|b", "yn", 1, "a name of 20 letters|");
    expect_import(std::string(1023, 'x') + "\n", std::string(19, 'x'), "y", 1, std::string(1023, 'x') + "|");
    const std::string values = "  0012  ,000, 0 1 ,1234567890123456789012,   \n";
    const std::string names = "  0012|000| 0 1|1234567890123456789|";
    expect_import(values, names, "yyyyy", 5, "0012|000|0 1|1234567890123456789012||");
    expect_import(values, names, "yyyyy", 5, "12  || 1 |12345678901234567890||", {true, false, true, true});
}

TEST_F(IMPORT_TEST, of_text_with_faults) {
    const std::string empty = "Empty ASCII File.";
    const std::string too_long = "ASCII file contains lines greater than 1024 chars long";
    const std::string too_wide = "Conversion Error - Fields could not fit into buffer.";
    const std::string longest(1024, 'x');
    const std::tuple<std::string, std::string, std::string> cases[] = {
        // message, file, records
        {empty, "\r\n  \r\n\n", ""},
        {too_long, "a\nb\n" + std::string(5000, ' ') + "\nc\n", "a|b|"},
        {too_wide, "a\n" + longest + "\nc\n", "a|"}};
    for (const auto& [text, bytes, records] : cases) {
        expect_warning(text, "Open File");
        expect_import(bytes, "a", records.empty() ? "-" : "y", std::ssize(records) / 2, records);
    }
    const FILE_HANDLE unreadable = open_file(path(""), "rb"); // a folder opens, but it cannot be read
    TEXT_SOURCE source = open_source(unreadable.get());
    expect_warning("Unexpected Error in ASCII File.", "Open File");
    EXPECT_EQ(read_text_ascii_file(nullptr, source), 0);
}

TEST_F(IMPORT_TEST, of_dbase) {
    EXPECT_EQ(is_dbase_file(dbase_header(97, 8, '\xF5'), 32), 1);
    EXPECT_EQ(is_dbase_file(dbase_header(97, 8, '\x02'), 32), 0);
    const std::string file = dbase_header(97, 8) + NAME_AND_CODE + ROWS;
    expect_import(file, "NAME|CODE", "", -1, "");
    expect_import(file, "NAME|CODE", "yy", 6, "Ann|007|Bob|1|Eve|0 0|");
    expect_import(file, "NAME|CODE", "ny", 3, "007|  1|0 0|", AS_IS);
    for (std::size_t size = 0; size < file.size(); ++size) {
        const std::string cut = file.substr(0, size);
        EXPECT_EQ(is_dbase_file(cut, size), size < 32 ? 0 : 1);
        // The rows end at 97 + 8, + 24 and + 48 bytes; deleted ones lie between.
        const std::size_t rows = (size >= 105) + (size >= 121) + (size >= 145);
        if (size >= 32)
            expect_import(cut, "NAME|CODE", size < 96 ? "-" : "yn", size < 96 ? -1 : std::int64_t(rows),
                          "Ann|Bob|Eve|"s.substr(0, rows * 4));
    }
}

TEST_F(IMPORT_TEST, of_dbase_with_a_lying_header) {
    EXPECT_EQ(is_dbase_file(dbase_header(32, 8), 1000), 0);
    std::string start = dbase_header(97, 8);
    EXPECT_EQ(is_dbase_file(start, 0x31A0B15), 1);
    start[4] = 'R';
    EXPECT_EQ(is_dbase_file(start, 0x31A0B14), 1);
    EXPECT_EQ(is_dbase_file(start, 0x31A0B15), 0) << "a lookup system file: its first word is its length";
    expect_import(dbase_header(65535, 8) + NAME_AND_CODE + ROWS, "", "-", -1, "");
    const std::string one_field = dbase_header(65, 0) + dbase_field("A", 2);
    expect_import(one_field + "\r*** ab", "A", "y", 1, "ab|"); // a deleted row without a length
    expect_import(dbase_header(65, 65535) + dbase_field("A", 2) + "\r ab*cd ef", "A", "y", 1, "ab|");
    expect_import(one_field + "\rjunk ab\r\n cd", "A", "y", 2, "ab|cd|");
    expect_import(dbase_header(65, 256) + dbase_field("A", 255) + "\r " + std::string(255, 'x'), "A", "y", 1,
                  std::string(255, 'x') + "|");
}

TEST_F(IMPORT_TEST, of_a_spreadsheet) {
    const std::string names = "NAME|CODE|PRICE|SINCE|ACTIVE|NOTE";
    const auto file = [](const char* name) { return read_bytes(TOLVAN_TEST_DATA "/"s + name); };
    expect_import(file("people.dbf"), names, "yynnny", 12,
                  "Anna|0012|one, two|Bert|000||M\x81ller|0700|said \"yes\"||0001|last|");
    EXPECT_EQ(desktop_status_log, (std::vector<std::string>{"open 1", "update 263/378", "close"}));
    expect_import(file("people.csv"), names, "yynnny", 15,
                  "NAME|CODE|NOTE|Anna|0012|one, two|Bert|000||Mller|0700|said||0001|last|");
}
