// The programming window: its looks, its list of fields, its questions and its files.
#include "app/command_line.h"
#include "app/dialogs.h"
#include "program/Prog.h"
#include "program/Prog_file.h"
#include "program/Prog_screens.h"
#include "resources/control.h"
#include "resources/define.h"
#include "tests/screens/drive_dialog.h"

#include <commctrl.h>
#include <gtest/gtest.h>
#include <windowsx.h>

namespace {

// The title, the rows with the one selected, what is enabled, * for changes, and the header's bits.
std::string state_of(HWND window) {
    settle();
    HWND list = GetDlgItem(window, IDC_FIELD_LIST);
    const auto mark = [&](int id, char sign) { return IsWindowEnabled(GetDlgItem(window, id)) ? sign : '-'; };
    char state[32];
    std::snprintf(state, sizeof state, " %d:%d %c%c%c%c %02X", ListBox_GetCount(list),
                  ListBox_GetCurSel(list), mark(IDC_EDIT_FIELD, 'E'), mark(IDC_DELETE_FIELD, 'D'),
                  mark(IDC_ALLOW_APPEND, 'A'), file_changed ? '*' : '-', program_header.bit_values);
    return window_text(window).substr(12) + state;
}

void take(HWND window, const std::vector<STEP>& steps) {
    take_steps(window, steps, state_of);
}

// Runs the window with a program of so many fields, given to it as the command line gives one.
void run_window(std::size_t fields, const std::function<void(HWND)>& script) {
    init_programming();
    program_header.name = "STOCK";
    program_header.bit_values = RECEIVED_FILES_ONLY | AUTO_ALPHA_OFF;
    program_header.sof_text_handle = "\r";
    program_header.fields.resize(fields);
    for (FIELD_DEFINITION& field : program_header.fields)
        init_field(field);
    command_line_string = temporary_path("good.pgt");
    ASSERT_EQ(save_program_file(command_line_string), 1);
    command_line_options_flag = 1;
    drive([] { EXPECT_EQ(run_dialog(DLG_PROGRAMMING, nullptr, PROGRAMMINGPROC), 1); },
          [&] { script(wait_for_window("Programming (STOCK)")); });
}

constexpr char FIELD[] = "Field Definition";
constexpr char SAVE[] = "? Save File Changes?";
constexpr char DELETE_FIRST[] = "? Delete Field Definition #1?";

TEST(ProgrammingWindow, ShowsAFullProgram) {
    run_window(MAX_FIELDS, [](HWND window) {
        EXPECT_EQ(state_of(window), "(STOCK) 251:0 EDA- 41");
        EXPECT_EQ(layout_faults(window), std::vector<std::string>());
        EXPECT_EQ(unreached_by_tab(window), std::vector<int>());
        std::string commands; // of the menu, in the toolbar's order
        for (WPARAM i = 0; i < 4; ++i) {
            TBBUTTON button{};
            SendDlgItemMessageA(window, ID_FILE_TOOLBAR, TB_GETBUTTON, i, reinterpret_cast<LPARAM>(&button));
            char text[16] = "";
            GetMenuStringA(GetMenu(window), static_cast<UINT>(button.idCommand), text, sizeof text,
                           MF_BYCOMMAND);
            commands += text;
        }
        EXPECT_EQ(commands, "&New&Open&SaveE&xit");
        const char* full = "X Maximum number of Field Definitions allowed is 250.";
        take(window, {{IDC_INSERT_FIELD, "", FIELD, full, IDOK}, {CMD_EXIT}});
    });
}

TEST(ProgrammingWindow, WorksTheListByKeys) {
    run_window(2, [](HWND window) {
        const char* insert = "? Insert New Field Definition Before Field Definition #1?";
        while (focused_control(window) != IDC_FIELD_LIST)
            press_key(VK_TAB);
        take(window, {{VK_RETURN, "(STOCK) 3:0 EDA- 41"},
                      {VK_INSERT, "(STOCK) 3:0 EDA- 41", PROGRAM_TITLE, insert, IDNO},
                      {VK_DELETE, "(STOCK) 2:0 EDA* 41", PROGRAM_TITLE, DELETE_FIRST, IDYES},
                      {VK_END, "(STOCK) 2:1 --A* 41"},
                      {VK_DELETE, "(STOCK) 2:1 --A* 41"},
                      {VK_HOME, "(STOCK) 2:0 EDA* 41"}});
        click(window, IDC_DELETE_FIELD);
        take(window, {{0, "(STOCK) 1:0 --A* 41", PROGRAM_TITLE, DELETE_FIRST, IDYES}});
        press_key(VK_INSERT); // the list has the focus, not the disabled button; at the end nothing is asked
        close_window(wait_for_window("Field Definition #1"));
        take(window, {{0, "(STOCK) 1:0 --A* 41", FIELD, "? Cancel Current Definition Changes?", IDYES},
                      {VK_ESCAPE, "", PROGRAM_TITLE, SAVE, IDNO}});
    });
}

TEST(ProgrammingWindow, SavesWhatStandsInTheControls) {
    run_window(1, [](HWND window) {
        press_key(VK_END);
        type_text("/0a"); // and the focus stays
        std::remove(temporary_path("a.b").c_str());
        take(window, {{CMD_OPEN, "", PROGRAM_TITLE, SAVE, IDYES},
                      {0, "(STOCK) 2:0 EDA* 41", "Save As"}, // not saved: nothing is opened
                      {CMD_SAVE, "(A) 2:0 EDA- 41", "Save As", temporary_path("a.b")},
                      {VK_TAB, "(A) 2:0 EDA- 41"}}); // the normal form is no change
        EXPECT_EQ(control_text(window, IDC_SOF_TEXT), "/0D/0A");
        EXPECT_EQ(program_header.sof_text_handle, "\r\n");
        take(window, {{CMD_EXIT}});
    });
}

} // namespace
