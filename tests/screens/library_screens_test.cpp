// The librarian and the choice of a member: keys, questions, and what is enabled when.
#include "app/dialogs.h"
#include "app/files.h"
#include "app/paths.h"
#include "library/LIB.h"
#include "library/LIB_screens.h"
#include "resources/control.h"
#include "resources/define.h"
#include "tests/screens/drive_dialog.h"

#include <commctrl.h>
#include <gtest/gtest.h>

namespace {

// The rows, $ for the end, with the one selected; the buttons enabled; S and s for Save in the menu and the
// toolbar; * for changes; the library's name.
std::string state_of(HWND window) {
    settle();
    HWND list = GetDlgItem(window, IDC_LIBRARY_FILES);
    const bool flags[] = {!!IsWindowEnabled(GetDlgItem(window, IDC_LIBRARY_INSERT)),
                          !!IsWindowEnabled(GetDlgItem(window, IDC_LIBRARY_DELETE)),
                          GetMenuState(GetMenu(window), CMD_SAVE, MF_BYCOMMAND) == MF_ENABLED,
                          !!SendDlgItemMessageA(window, ID_FILE_TOOLBAR, TB_ISBUTTONENABLED, CMD_SAVE, 0),
                          librarian.changed};
    std::string rows, marks;
    char row[MAX_PATH];
    for (WPARAM i = 0; SendMessageA(list, LB_GETTEXT, i, reinterpret_cast<LPARAM>(row)) != LB_ERR; ++i)
        rows += std::string(row) == "<<END OF LIST>>" ? "$" : path_base_name(row);
    for (std::size_t i = 0; i < std::size(flags); ++i)
        marks += flags[i] ? "IDSs*"[i] : '-';
    return rows + ':' + std::to_string(SendMessageA(list, LB_GETCURSEL, 0, 0)) + ' ' + marks + ' ' +
           path_file_title(control_text(window, IDC_LIBRARY_NAME));
}

} // namespace

TEST(Librarian, EnablesAndAsks) {
    const std::string a = temporary_path("A.PGT"), b = temporary_path("B.PGT"), x = temporary_path("x.lbt"),
                      y = temporary_path("y.lbt"), bad = temporary_path("bad.lbt"),
                      taken = temporary_path("taken.lbt"), eight_nuls(8, '\0');
    for (const std::string& path : {a, b}) // programs that bear their names
        save_whole_file(path, std::string("\0\0\0\x12I______", 11) + path_base_name(path) + eight_nuls);
    save_whole_file(bad, "\1\1\1\1?");
    CreateDirectoryA(taken.c_str(), nullptr);
    for (const std::string& path : {x, y})
        std::remove(path.c_str());
    const char *erase = "? Delete File from Library?", *full = "X Maximum number of files allowed is 200.",
               *save = "? Save Library Changes?", *title = PROGRAM_TITLE;
    const std::vector<STEP> steps = {
        {IDC_LIBRARY_ADD, "B$:0 IDSs* ", "Open", b},
        {IDC_LIBRARY_INSERT, "AB$:0 IDSs* ", "Open", a},
        {VK_END, "AB$:2 --Ss* "},
        {VK_INSERT, "ABA$:2 IDSs* ", "Open", a},
        {VK_DELETE, "AB$:1 IDSs* ", title, erase, IDYES},
        {VK_DELETE, "A$:0 IDSs* ", title, erase, IDYES},
        {VK_INSERT, "BA$:0 IDSs* ", "Open", b},
        {CMD_SAVE, "BA$:0 IDSs- x.lbt", "Save As", temporary_path("x")},
        {IDC_LIBRARY_DELETE, "A$:0 IDSs* x.lbt", title, erase, IDYES},
        {CMD_SAVE, "", "Save As", temporary_path("taken")},
        {0, "", title, "! " + taken + " already exists.\nDo you want to replace it?", IDYES},
        {0, "A$:0 IDSs* taken.lbt", "File Error", "! Could not Save Library File!", IDOK},
        {CMD_EXIT, "", title, save, IDYES},
        {0, "A$:0 IDSs* taken.lbt", "Save As"}, // not saved: nothing is left
        {VK_DELETE, "$:0 ----* taken.lbt", title, erase, IDYES},
        {CMD_NEW, "$:0 ----- ", title, "? Create a new library file?", IDYES},
        {CMD_OPEN, "BA$:0 IDSs- x.lbt", "Open", x},
        {CMD_OPEN, "", "Open", bad},
        {0, "$:0 ----- ", "Invalid/Corrupt", "! Invalid/Corrupt Library File!", IDOK}};
    drive([] { EXPECT_EQ(run_dialog(DLG_LIBRARIAN, nullptr, LIBRARYPROC), 1); },
          [&] {
              HWND window = wait_for_window("Librarian");
              take_steps(window, steps, state_of);
              librarian.files.assign(LIBRARY_FILE_LIMIT - 1, "GONE");
              expect_good_looks(window);
              const STEP adds{IDC_LIBRARY_ADD, "", "Open", b}, cannot{VK_INSERT, "", "Librarian", full, IDOK},
                  stays{VK_ESCAPE, "", title, save, IDCANCEL}, saves{CMD_SAVE, "", "Save As", y},
                  refused{0, "", "File Not Found", "! The file GONE not found. Could not add to Library!",
                          IDOK},
                  leaves{CMD_EXIT, "", title, save, IDNO};
              take_steps(window, {adds, cannot, stays, saves, refused, leaves}, state_of);
          });
    EXPECT_FALSE(open_file(y, "rb"));
}

TEST(FileExtraction, GivesTheMemberChosen) {
    const auto state = [](HWND dialog) {
        return std::to_string(SendDlgItemMessageA(dialog, IDC_EXTRACT_FILES, LB_GETCURSEL, 0, 0)) +
               (IsWindowEnabled(GetDlgItem(dialog, IDOK)) ? " Open" : "");
    };
    const std::pair<int, std::vector<STEP>> cases[] = {
        {0, {{0, "0 Open"}, {VK_RETURN}}},
        {1, {{VK_END, "2"}, {VK_UP, "1 Open"}, {MAKELONG(IDC_EXTRACT_FILES, LBN_DBLCLK)}}},
        {-1, {{VK_END, "2"}, {VK_RETURN, "2"}, {VK_ESCAPE}}}};
    const std::vector<std::string> rows = {"Program (A)", "Setup"};
    for (const auto& [result, steps] : cases)
        drive([&] { EXPECT_EQ(choose_library_member(nullptr, rows), result); },
              [&] { take_steps(wait_for_window("File Extraction"), steps, state); });
}
