#include "library/LIB.h"

#include "files/FILEGEN.h"
#include "files/MEMORY.h"
#include "program/Prog.h"
#include "program/Prog_file.h"
#include "setup/SETUP.h"
#include "tests/test_files.h"

#include <new>

namespace {

using namespace std::string_literals;

constexpr char INVALID_LIBRARY[] = "Invalid/Corrupt Library File!";

class LibraryTest : public FILE_TEST {
protected:
    LibraryTest() {
        librarian = {};
        desktop_temporary_file = path("TEMPORARY");
        initialize_memory();
    }
    const std::string program = read_bytes(TOLVAN_SAMPLES "/STOCK.PGT");
    const std::string setup = read_bytes(TOLVAN_SAMPLES "/STOCK.CFT");
    const std::string lookup =
        stamped("\0\0\0\0RITEMS\0\0\0\0\0\0\0\0\0\x01\0\0\xFFs\x02"s + "A1", LOOKUP_CHECKSUM);
    const std::string library = program + lookup + setup;
    const std::vector<std::string> rows = {"Program (STOCK)", "Lookup (ITEMS)", "Setup"};

    std::string written(const std::string& name, const std::string& bytes) const {
        write_bytes(path(name), bytes);
        return path(name);
    }
    void expect_files(const std::vector<std::string>& files, std::size_t selected_row) const {
        EXPECT_EQ(librarian.files, files);
        EXPECT_EQ(librarian.selected_row, selected_row);
    }
    // Walks through any bytes, and takes the first members out.
    void expect_bounded_walk(const std::string& bytes) const {
        const std::string walked = written("WALKED", bytes);
        std::vector<LIBRARY_MEMBER> members;
        const bool is_library = read_library_members(open_file(walked, "rb").get(), true, members);
        std::size_t end = 0;
        for (const LIBRARY_MEMBER& member : members) {
            ASSERT_GE(static_cast<std::size_t>(member.start), end);
            ASSERT_GT(member.size, 0);
            end = static_cast<std::size_t>(member.start + member.size);
        }
        ASSERT_LE(end, bytes.size());
        for (std::size_t row = 0; is_library && row < std::min<std::size_t>(members.size(), 4); ++row) {
            std::string name = walked;
            expect_library_member({}, static_cast<int>(row));
            ASSERT_EQ(extract_library_file(nullptr, name), 1);
            ASSERT_EQ(read_bytes(name), bytes.substr(static_cast<std::size_t>(members[row].start),
                                                     static_cast<std::size_t>(members[row].size)));
        }
    }
};

} // namespace

TEST_F(LibraryTest, TheOpenersReadTheirMemberAndLeaveNoFile) {
    struct OPENER {
        std::function<int(const std::string&)> open;
        std::vector<OUTCOME> outcomes; // of the members in turn, and of Cancel
        OUTCOME foreign;
    };
    const OUTCOME refused = {0, ""}; // the screen has words of its own
    const OUTCOME no_setup = {0, "Not a Valid Setup File!"};
    const OPENER openers[] = {
        {[](const auto& name) { return open_program_file(nullptr, name); },
         {OPENED, refused, refused, {-1, ""}},
         refused},
        {[](const auto& name) { return int(read_edit_file(nullptr, name, LOOKUP_FILE_EDITED)); },
         {refused, OPENED, refused, {-1, ""}},
         refused},
        {open_setup_file, {no_setup, no_setup, OPENED, {0xFF, ""}}, {0, INVALID_LIBRARY, "Invalid/Corrupt"}}};
    const auto expect_opened = [&](const OPENER& opener, const std::string& bytes, const OUTCOME& outcome) {
        if (!outcome.text.empty())
            expect_warning(outcome.text, outcome.caption);
        free_prog_memory();
        EXPECT_EQ(opener.open(written("FILE", bytes)), outcome.result);
        EXPECT_TRUE(library_questions_asked() && !open_file(path("TEMPORARY"), "rb"));
    };
    for (const OPENER& opener : openers) {
        for (const std::size_t padding : {0U, 3U, 5000U})
            for (int row = 0; row < 4; ++row) {
                expect_library_member(rows, row < 3 ? row : -1);
                expect_opened(opener, library + std::string(padding, '\0'), opener.outcomes[row]);
            }
        expect_opened(opener, lookup + "\0\0\0\x20X"s, opener.foreign);
        desktop_temporary_file = "";
        expect_library_member(rows, 0);
        expect_opened(opener, library,
                      {opener.outcomes[3].result, "Cannot take the file out of the library.\n"
                                                  "The temporary folder may be full."});
        desktop_temporary_file = path("TEMPORARY");
    }
    expect_library_member(rows, 1);
    const auto reader = [](std::FILE*) -> std::int64_t { throw std::bad_alloc(); };
    EXPECT_THROW(read_library_member(nullptr, path("FILE"), reader), std::bad_alloc);
    EXPECT_FALSE(open_file(path("TEMPORARY"), "rb"));
}

TEST_F(LibraryTest, EveryWalkEndsInTheFile) {
    for (std::size_t at = 0; at <= library.size(); ++at)
        expect_bounded_walk(library.substr(0, at));
    for (const std::size_t member : {std::size_t{0}, program.size(), program.size() + lookup.size()})
        for (std::size_t bits = 0; bits < 1200; ++bits) {
            std::string lying = library;
            put_long(lying, member, static_cast<std::uint32_t>(bits < 600 ? bits : 599 - bits));
            expect_bounded_walk(lying);
        }
    std::string many;
    for (const auto& [count, listed] : {std::pair{200U, 200U}, {201U, 201U}, {1000000U, 10000U}}) {
        while (many.size() < count * 5)
            many += "\0\0\0\3S"s;
        std::vector<LIBRARY_MEMBER> members;
        EXPECT_EQ(read_library_members(open_file(written("MANY", many), "rb").get(), true, members),
                  count == listed);
        EXPECT_EQ(members.size(), listed);
    }
}

TEST_F(LibraryTest, NamesAreShownButNeverLeadOutOfTheFolder) {
    // The name as it stands, its row, and the file listed for it.
    const std::string cases[][3] = {{"NINECHARS", "NINECHARS", "NINECHARS.PGT"},
                                    {"CONS", "CONS", "CONS.PGT"},
                                    {"A.B", "A.B", "A.B.PGT"},
                                    {"GONE", "GONE", ""},
                                    {"con", "con", ""},
                                    {"NUL .X", "NUL .X", ""},
                                    {"COM1", "COM1", ""},
                                    {"LPT\xB2", "LPT\xB2", ""},
                                    {"../OUT", "../OUT", ""},
                                    {"..\\OUT", "..\\OUT", ""},
                                    {"C:X", "C:X", ""},
                                    {"A\nB\x7F", "A?B?", ""}};
    std::string bytes;
    std::vector<std::string> shown, found;
    std::filesystem::create_directories(path("SUB"));
    for (const auto& [name, row, file] : cases) {
        bytes +=
            "\0\0\0\x14I\0\0\0\0\0\0"s + name + std::string(11 - name.size(), name.size() == 9 ? 'X' : '\0');
        shown.push_back("Program (" + row + ")");
        if (name != "GONE")
            write_bytes(path("SUB/") + name + ".PGT", "");
        if (!file.empty())
            found.push_back(path("SUB/") + file);
    }
    const std::string name = written("SUB/L.B.LBT", bytes + setup + lookup);
    std::string extracted = name;
    shown.insert(shown.end(), {"Setup", "Lookup (ITEMS)"});
    expect_library_member(shown, -1);
    EXPECT_EQ(extract_library_file(nullptr, extracted), -1);
    // Only the two that the current folder has are listed from there.
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(path("."));
    for (const char* file : {"L.B.CFT", "ITEMS.LKT", "SUB/ITEMS.LKT"})
        write_bytes(file, "");
    librarian.changed = true;
    EXPECT_EQ(open_library_file(nullptr, name), 1);
    found.insert(found.end(), {"L.B.CFT", "ITEMS.LKT"});
    expect_files(found, 0);
    EXPECT_TRUE(librarian.file_name == name && !librarian.changed);
    for (const std::string& bad : {written("BAD", lookup + "\0\0\0\x20s"s), path("NO FILE")}) {
        EXPECT_EQ(open_library_file(nullptr, bad), 0);
        expect_files(
            {bad == path("BAD") ? std::vector<std::string>{"ITEMS.LKT"} : std::vector<std::string>{}}, 0);
    }
    std::filesystem::current_path(before);
}

TEST_F(LibraryTest, SavesTheListedFilesOneBehindTheOther) {
    const std::string files[] = {written("P", program + std::string(100, '\0')), written("L", lookup + '\0'),
                                 written("S", setup)};
    library_list_add(nullptr, files[2]);
    library_list_insert(nullptr, files[0]);
    librarian.selected_row = 1;
    library_list_insert(nullptr, files[1]);
    expect_files({files[0], files[1], files[2]}, 1);
    EXPECT_TRUE(librarian.changed);
    const std::string saved = path("NEW.LBT");
    EXPECT_EQ(valid_sys_files(nullptr), 1);
    EXPECT_EQ(save_library_file(nullptr, saved), 1);
    EXPECT_EQ(read_bytes(saved), library);
    for (const std::string& refused : {path("l"), path("NO FOLDER/NEW.LBT")})
        EXPECT_EQ(save_library_file(nullptr, refused), 0);
    EXPECT_EQ(files_in_folder(), 5U); // those and the one that got its checksum
    // A file that is gone, and two that are no system files, behind one that is.
    library_list_delete(nullptr);
    library_list_add(nullptr, path("GONE"));
    expect_warning("The file " + path("GONE") + " not found. Could not add to Library!", "File Not Found");
    EXPECT_EQ(valid_sys_files(nullptr), 0);
    EXPECT_EQ(save_library_file(nullptr, saved), 0);
    EXPECT_EQ(read_bytes(saved), program + setup);
    for (const std::string& bytes : {"\0\0\0\5i"s, "\0\0\0\5"s}) {
        expect_warning("The file " + written("GONE", bytes) + " is not a Valid System File!",
                       "Invalid System File");
        EXPECT_EQ(valid_sys_files(nullptr), 0);
    }
    library_list_delete(nullptr);
    expect_files({files[0], files[2]}, 1);
}
