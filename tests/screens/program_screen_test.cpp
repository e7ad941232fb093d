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

#include <fstream>

namespace {

struct STEP {
    int command_or_key;  // 0 when the step before led to more
    std::string caption; // of what comes; of nothing when empty
    std::string text;    // shown by a box, or given to a file dialog
    int button;
    std::string state; // behind it, unless empty
};

// The title, the rows with the one selected, what is enabled, * for changes, and the header's bits.
std::string state_of(HWND window) {
    settle();
    HWND list = GetDlgItem(window, IDC_FIELD_LIST);
    const auto enabled = [&](int control) { return IsWindowEnabled(GetDlgItem(window, control)) != FALSE; };
    char state[32];
    std::snprintf(state, sizeof state, " %d:%d %c%c%c%c %02X", ListBox_GetCount(list),
                  ListBox_GetCurSel(list), enabled(IDC_EDIT_FIELD) ? 'E' : '-',
                  enabled(IDC_DELETE_FIELD) ? 'D' : '-', enabled(IDC_ALLOW_APPEND) ? 'A' : '-',
                  file_changed ? '*' : '-', program_header.bit_values);
    return window_text(window).substr(12) + state;
}

void take_steps(HWND window, const std::vector<STEP>& steps) {
    for (const STEP& step : steps) {
        SCOPED_TRACE(std::to_string(step.command_or_key) + ' ' + step.text);
        if (step.command_or_key >= CMD_PROGRAMMING)
            choose_command(window, step.command_or_key);
        else if (step.command_or_key != 0)
            press_key(step.command_or_key);
        if (step.caption == "Open" || step.caption == "Save As") {
            answer_file_dialog(step.caption, step.text);
        } else {
            EXPECT_EQ(step.caption.empty() ? "" : answer_box(step.caption, step.button), step.text);
        }
        EXPECT_EQ(step.state.empty() ? "" : state_of(window), step.state);
    }
}

std::string path_of(const std::string& name) {
    char folder[MAX_PATH];
    GetTempPathA(sizeof folder, folder);
    return folder + name;
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
    program_header.fields.front().prompt_string_handle = std::string(80, 'W');
    command_line_string = path_of("good.pgt");
    ASSERT_EQ(save_program_file(command_line_string), 1);
    command_line_options_flag = 1;
    drive([] { EXPECT_EQ(run_dialog(DLG_PROGRAMMING, nullptr, PROGRAMMINGPROC), 1); },
          [&] { script(wait_for_window("Programming (STOCK)")); });
}

constexpr const char* TITLE = PROGRAM_TITLE;
constexpr char FIELD_TITLE[] = "Field Definition";
constexpr char NEW_FILE[] = "? Create a new program file?";
constexpr char LONG_NAME[] = "X The Tolvan can only display filenames up to 9 characters.\n"
                             "Please reenter using a 9 character filename.";
constexpr char CHANGES[] = "? Save File Changes?";
constexpr char DELETE_FIRST[] = "? Delete Field Definition #1?";

TEST(ProgrammingWindow, ShowsAFullProgram) {
    run_window(MAX_FIELDS, [](HWND window) {
        EXPECT_EQ(state_of(window), "(STOCK) 251:0 EDA- 41");
        EXPECT_EQ(layout_faults(window), std::vector<std::string>());
        EXPECT_EQ(unreached_by_tab(window), std::vector<int>());
        std::string commands;
        for (int i = 0; i < 4; ++i) {
            char text[16] = "";
            TBBUTTON button{};
            SendDlgItemMessageA(window, ID_PROGRAMMING_TOOLBAR, TB_GETBUTTON, static_cast<WPARAM>(i),
                                reinterpret_cast<LPARAM>(&button));
            GetMenuStringA(GetMenu(window), static_cast<UINT>(button.idCommand), text, sizeof text,
                           MF_BYCOMMAND);
            commands += text;
        }
        EXPECT_EQ(commands, "&New&Open&SaveE&xit");
        const char* full = "X Maximum number of Field Definitions allowed is 250.";
        take_steps(window, {{IDC_INSERT_FIELD, FIELD_TITLE, full, IDOK, ""}, {CMD_EXIT, "", "", 0, ""}});
    });
}

TEST(ProgrammingWindow, WorksTheListByKeys) {
    run_window(2, [](HWND window) {
        const char* insert = "? Insert New Field Definition Before Field Definition #1?";
        while (focused_control(window) != IDC_FIELD_LIST)
            press_key(VK_TAB);
        take_steps(window, {{VK_RETURN, "", "", 0, "(STOCK) 3:0 EDA- 41"},
                            {VK_INSERT, TITLE, insert, IDNO, ""},
                            {VK_DELETE, TITLE, DELETE_FIRST, IDNO, "(STOCK) 3:0 EDA- 41"},
                            {VK_DELETE, TITLE, DELETE_FIRST, IDYES, "(STOCK) 2:0 EDA* 41"},
                            {VK_END, "", "", 0, "(STOCK) 2:1 --A* 41"},
                            {VK_DELETE, "", "", 0, "(STOCK) 2:1 --A* 41"},
                            {VK_HOME, "", "", 0, "(STOCK) 2:0 EDA* 41"}});
        click(window, IDC_DELETE_FIELD);
        take_steps(window, {{0, TITLE, DELETE_FIRST, IDYES, "(STOCK) 1:0 --A* 41"}});
        press_key(VK_INSERT); // the list has the focus, not the disabled button; at the end nothing is asked
        close_window(wait_for_window(FIELD_TITLE));
        take_steps(window,
                   {{0, FIELD_TITLE, "? Cancel Current Definition Changes?", IDYES, "(STOCK) 1:0 --A* 41"},
                    {VK_ESCAPE, TITLE, CHANGES, IDNO, ""}});
    });
}

TEST(ProgrammingWindow, SavesOpensAndAsks) {
    run_window(1, [](HWND window) {
        const std::string damaged = path_of("damaged.pgt"), setup = path_of("setup.pgt"),
                          long_name = path_of("tenletters.pgt");
        for (const std::string& copy : {damaged, long_name})
            CopyFileA(path_of("good.pgt").c_str(), copy.c_str(), FALSE);
        std::fstream(damaged, std::ios::binary | std::ios::in | std::ios::out).seekp(30).put('?');
        std::ofstream(setup, std::ios::binary) << std::string("\0\0\0\6S?CR", 8);
        std::remove(path_of("a.b").c_str());
        const std::string size_title = "Filename Size Error", saved = "(A) 2:0 EDA- 41",
                          empty = "(Untitled) 1:0 ---- 20";
        press_key(VK_END);
        type_text("/0a");                                          // and the focus stays
        take_steps(window, {{CMD_OPEN, TITLE, CHANGES, IDYES, ""}, // and no save, no opening
                            {0, "Save As", "", 0, "(STOCK) 2:0 EDA* 41"},
                            {CMD_EXIT, TITLE, CHANGES, IDCANCEL, "(STOCK) 2:0 EDA* 41"},
                            {CMD_NEW, TITLE, NEW_FILE, IDNO, "(STOCK) 2:0 EDA* 41"},
                            {CMD_SAVE, "Save As", path_of("tenletters"), 0, ""},
                            {0, size_title, LONG_NAME, IDOK, ""},
                            {0, "Save As", path_of("a.b"), 0, saved},
                            {VK_TAB, "", "", 0, saved}}); // the normal form is no change
        EXPECT_EQ(control_text(window, IDC_SOF_TEXT), "/0D/0A");
        take_steps(window, {{CMD_OPEN, "Open", setup, 0, ""},
                            {0, "Invalid/Corrupt", "! Invalid/Corrupt Program File!", IDOK, empty},
                            {CMD_OPEN, "Open", path_of("a.b"), 0, saved},
                            {CMD_OPEN, "Open", damaged, 0, ""},
                            {0, "Invalid Checksum", "! Invalid Checksum in Program File!", IDOK,
                             "(Untitled) 1:0 ---- 41"},
                            {CMD_OPEN, "Open", long_name, 0, ""},
                            {0, size_title, LONG_NAME, IDOK, ""},
                            {0, "Open", "", 0, empty}});
        click(window, IDC_RECEIVED_FILES_ONLY);
        click(window, IDC_AUTO_ALPHA);
        take_steps(window, {{CMD_EXIT, TITLE, CHANGES, IDCANCEL, "(Untitled) 1:0 --A* 61"},
                            {CMD_NEW, TITLE, NEW_FILE, IDYES, empty},
                            {CMD_EXIT, "", "", 0, ""}});
    });
}

} // namespace
