#include "library/LIB.h"

#include "program/Prog_file.h"
#include "tests/file_script.h"
#include "tests/test_files.h"

namespace {

using namespace std::string_literals;

class LibraryTest : public FILE_TEST {
protected:
    LibraryTest() {
        librarian = {};
        desktop_temporary_file = path("TEMPORARY");
    }
    const std::string program = read_bytes(TOLVAN_SAMPLES "/STOCK.PGT");
    const std::string setup = read_bytes(TOLVAN_SAMPLES "/STOCK.CFT");
    const std::string lookup =
        stamped("\0\0\0\0RITEMS\0\0\0\0\0\0\0\0\0\x01\0\0\xFF\x41\x01\x41"s, LOOKUP_CHECKSUM);
    const std::string library = program + lookup + setup;

    std::string written(const std::string& name, const std::string& bytes) const {
        write_bytes(path(name), bytes);
        return path(name);
    }
    // All members one behind the other are what the file starts with.
    void expect_taken_apart(const std::string& bytes) const {
        std::vector<LIBRARY_MEMBER> members;
        std::string name = written("WHOLE", bytes), parts;
        if (!read_library_members(open_file(name, "rb").get(), true, members))
            return;
        for (int row = 0; row < static_cast<int>(members.size()); ++row) {
            expect_library_member("", row);
            ASSERT_EQ(extract_library_file(nullptr, name = path("WHOLE")), 1);
            parts += read_bytes(name);
        }
        ASSERT_EQ(parts, bytes.substr(0, parts.size()));
    }
};

} // namespace

TEST_F(LibraryTest, AMemberThatCannotBeTakenOutIsReported) {
    desktop_temporary_file = "";
    expect_library_member("Program (STOCK)|Lookup (ITEMS)|Setup|", 0);
    expect_warning("Cannot take the file out of the library.\nThe temporary folder may be full.",
                   "Open File");
    EXPECT_EQ(open_program_file(nullptr, written("FILE", library)), -1);
}

TEST_F(LibraryTest, EveryWalkEndsInTheFile) {
    const std::string small = lookup + "\0\0\0\x12I"s + std::string(15, 'x') + setup;
    for (std::size_t at = 0; at <= small.size(); ++at)
        expect_taken_apart(small.substr(0, at));
    for (const std::size_t member : {std::size_t{0}, lookup.size(), lookup.size() + 20})
        for (std::uint32_t length = 0; length < 40; ++length)
            for (const std::uint32_t lie : {length, 0x7FFFFFFFU + length, 0U - length}) {
                std::string lying = small;
                put_long(lying, member, lie);
                expect_taken_apart(lying);
            }
    std::string endless;
    while (endless.size() < 100000)
        endless += "\0\0\0\3S"s;
    std::vector<LIBRARY_MEMBER> members;
    EXPECT_FALSE(read_library_members(open_file(written("ENDLESS", endless), "rb").get(), true, members));
}

TEST_F(LibraryTest, NamesAreShownButNeverLeadOutOfTheFolder) {
    std::string bytes;
    std::string shown;
    std::vector<std::string> found;
    std::filesystem::create_directories(path("SUB"));
    for (const std::string name : {"NINECHARS", "CONS", "A.B", "con", "NUL .X", "COM1", "LPT\xB2", "../OUT",
                                   "..\\OUT", "C:X", "A\x7F\n"}) {
        bytes +=
            "\0\0\0\x14I\0\0\0\0\0\0"s + name + std::string(11 - name.size(), name.size() == 9 ? 'X' : '\0');
        shown += "Program (" + (name[0] == 'A' && name[1] != '.' ? "A??" : name) + ")|";
        const std::string file = written("SUB/" + name + ".PGT", "");
        if (found.size() < 3)
            found.push_back(file);
    }
    const std::string name = written("SUB/L.B.LBT", bytes + setup + lookup);
    expect_library_member(shown + "Setup|Lookup (ITEMS)|", -1);
    std::string chosen = name;
    EXPECT_EQ(extract_library_file(nullptr, chosen), -1);
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(path("."));
    for (const char* file : {"L.B.CFT", "ITEMS.LKT", "SUB/ITEMS.LKT"})
        write_bytes(file, "");
    found.insert(found.end(), {"L.B.CFT", "ITEMS.LKT"}); // the current folder comes first
    EXPECT_EQ(open_library_file(nullptr, name), 1);
    EXPECT_EQ(librarian.files, found);
    EXPECT_EQ(open_library_file(nullptr, written("BAD", lookup + "\0\0\0\x20s"s)), 0);
    std::filesystem::current_path(before);
}

TEST_F(LibraryTest, SavesTheListedFilesOneBehindTheOther) {
    const std::string saved = path("NEW.LBT");
    librarian.files = {written("P", program), written("L", lookup + '\0'), written("S", setup)};
    EXPECT_EQ(save_library_file(nullptr, saved), 1);
    EXPECT_EQ(read_bytes(saved), library);
    for (const std::string& refused : {path("l"), path("NO FOLDER/NEW.LBT")})
        EXPECT_EQ(save_library_file(nullptr, refused), 0);
    librarian.files[1] = path("GONE");
    EXPECT_EQ(save_library_file(nullptr, saved), 0);
    EXPECT_EQ(read_bytes(saved), program);
    expect_warning("The file " + path("GONE") + " not found. Could not add to Library!", "File Not Found");
    EXPECT_EQ(valid_sys_files(nullptr), 0);
    write_bytes(path("GONE"), "\0\0\0\5i"s);
    expect_warning("The file " + path("GONE") + " is not a Valid System File!", "Invalid System File");
    EXPECT_EQ(valid_sys_files(nullptr), 0);
}
