// The dialogs that define lookups.
#include "app/desktop.h"
#include "app/dialogs.h"
#include "app/paths.h"
#include "app/settings.h"
#include "program/LOOKUP_dialogs.h"
#include "resources/control.h"
#include "tests/screens/drive_dialog.h"

#include <gtest/gtest.h>

namespace {

constexpr char TABLE_TITLE[] = "Lookup Table Definition";
constexpr char FILE_TITLE[] = "Lookup File Definition";
constexpr char CHOICE_TITLE[] = "Lookup Choice";

// Runs a definition under a script; the answer is the new string, or "-" when none came back.
std::string define(const std::string& title, std::string text, const std::function<void(HWND)>& script) {
    bool defined = false;
    const auto screen = [&] {
        defined = title == FILE_TITLE    ? get_lookup_file_string(text, nullptr, program_header)
                  : title == TABLE_TITLE ? get_lookup_table_string(text, nullptr)
                                         : get_lookup_str(text, nullptr, program_header);
    };
    drive(screen, [&] {
        HWND dialog = wait_for_window(title);
        EXPECT_EQ(layout_faults(dialog), std::vector<std::string>());
        EXPECT_EQ(unreached_by_tab(dialog), std::vector<int>());
        script(dialog);
    });
    return defined ? text : "-";
}

// The six rows, a star where the focus is, those that are disabled in brackets.
std::string rows(HWND dialog) {
    std::string shown;
    for (int row = IDC_TABLE_ENTRY; row < IDC_TABLE_ENTRY + 6; ++row) {
        const bool enabled = IsWindowEnabled(GetDlgItem(dialog, row)) != FALSE;
        shown += (enabled ? "" : "[") + control_text(dialog, row);
        shown += focused_control(dialog) == row ? "*|" : enabled ? "|" : "]|";
    }
    return shown;
}

// Goes to an edit by the tab key and types.
void type_into(HWND dialog, int control, const std::string& text) {
    while (focused_control(dialog) != control)
        press_key(VK_TAB);
    type_text(text);
}

TEST(LookupScreens, ATableIsTypedByKeysAndButtons) {
    const struct {
        UINT message; // to the control that has the focus, or to the dialog
        WPARAM what;
        int times;
        const char* shown;
    } steps[] = {
        {WM_KEYDOWN, VK_DOWN, 7, "B|C|D|E|F|G*|"},
        {WM_KEYDOWN, VK_RETURN, 1, "C|D|E|F|G|*|"},
        {WM_CHAR, 'H', 1, "C|D|E|F|G|H*|"},
        {WM_CHAR, '?', 1, "C|D|E|F|G|H*|"},
        {WM_CHAR, ',', 1, "C|D|E|F|G|H,*|"},
        {WM_KEYDOWN, VK_UP, 1, "C|D|E|F|G*|H|"}, // and behind it an empty entry
        {WM_VSCROLL, SB_LINEDOWN, 1, "D|E|F|G|H*||"},
        {WM_VSCROLL, SB_LINEDOWN, 2, "E|F|G|H|*|[< End of Entries >]|"},
        {WM_VSCROLL, SB_PAGEUP, 1, "A|B|C|D|E*|F|"},
        {WM_VSCROLL, SB_PAGEDOWN, 1, "D|E|F|G|H*||"},
        {WM_VSCROLL, MAKEWPARAM(SB_THUMBPOSITION, 2), 1, "B|C|D|E|F*|G|"},
        {BM_CLICK, IDC_TABLE_INSERT, 1, "B|C|D|E|*|F|"},
        {BM_CLICK, IDC_TABLE_DELETE, 2, "B|C|D|E|G*|H|"},
        {WM_SYSCHAR, 'd', 1, "B|C|D|E|H*||"},
        {WM_KEYDOWN, VK_TAB, 2, "B|C|D|E|H||"}, // to Insert
        {WM_KEYDOWN, VK_SPACE, 1, "B|C|D|E|H|*|"},
        {WM_KEYDOWN, VK_UP, 7, "A*|B|C|D|E|H|"},
        {BM_CLICK, IDC_LOOKUP_PARTIAL, 1, "A|B|C|D|E|H|"},
        {BM_CLICK, IDC_TABLE_ADD, 1, "D|E|H|||*|"},
    };
    const auto script = [&](HWND dialog) {
        for (const auto& step : steps) {
            for (int i = 0; i < step.times; ++i) {
                if (step.message == WM_KEYDOWN)
                    press_key(static_cast<int>(step.what));
                else if (step.message == BM_CLICK)
                    click(dialog, static_cast<int>(step.what));
                else if (step.message == WM_VSCROLL)
                    SendMessageA(dialog, step.message, step.what, 0);
                else
                    SendDlgItemMessageA(dialog, focused_control(dialog), step.message, step.what, 0);
            }
            EXPECT_EQ(rows(dialog), step.shown) << step.message << ' ' << step.what;
        }
        click(dialog, IDC_LOOKUP_PARTIAL);
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDC_TABLE_DELETE)));
        click(dialog, IDOK);
    };
    EXPECT_EQ(define(TABLE_TITLE, "ta,A,B,C,D,E,F,G,?/0d", script), "TA,A,B,C,D,E,H,,,,?/0D");
    EXPECT_EQ(define(TABLE_TITLE, "ta,A", [](HWND dialog) { click(dialog, IDOK); }), "-") << "no change";
}

TEST(LookupScreens, ATableKeepsToItsLength) {
    const std::string entry(240, 'x');
    const auto script = [](HWND dialog) {
        type_into(dialog, IDC_TABLE_ENTRY + 1, "123456789");
        click(dialog, IDC_LOOKUP_ACCEPT);
        EXPECT_FALSE(IsDlgButtonChecked(dialog, IDC_LOOKUP_ACCEPT)) << "no room for its letter";
        click(dialog, IDC_TABLE_ADD);
        EXPECT_EQ(control_text(dialog, IDC_TABLE_ENTRY + 2), "< End of Entries >");
        type_into(dialog, IDC_LOOKUP_MESSAGE, "m");
        press_key(VK_RETURN);
    };
    EXPECT_EQ(define(TABLE_TITLE, "T," + entry + ",y", script), "T," + entry + ",1234567");
}

TEST(LookupScreens, AFileIsCheckedAndWritten) {
    const std::string message(40, 'm');
    program_header = {};
    program_header.bit_values = ALLOW_APPEND | DISABLE_VIEW_LOOKUP;
    file_changed = no_lookup_target = false;
    const auto script = [&](HWND dialog) {
        const auto preview = [&] {
            return control_text(dialog, IDC_LOOKUP_PREVIEW) + control_text(dialog, IDC_LOOKUP_PREVIEW + 1);
        };
        const std::string own_message = "Input Not Found In  Lookup File";
        EXPECT_EQ(preview(), own_message + std::string(40 - own_message.size(), '\x7F'));
        type_into(dialog, IDC_LOOKUP_NAME, "a,b?cdefghij");
        type_into(dialog, IDC_LOOKUP_START_ROW, "4");
        click(dialog, IDOK);
        EXPECT_EQ(answer_box(FILE_TITLE, IDOK), "X Start Row/End Row Greater than 3");
        type_into(dialog, IDC_LOOKUP_START_ROW, "\b");
        type_into(dialog, IDC_LOOKUP_TARGET, "\b07");
        click(dialog, IDC_LOOKUP_NO_VIEW);
        type_into(dialog, IDC_LOOKUP_MESSAGE, message + "x");
        EXPECT_EQ(preview(), message);
        press_key(VK_RETURN);
        EXPECT_EQ(answer_box("Target Field", IDOK),
                  "! Target field to accept Lookup data does not exist,\n"
                  "be sure to create target field for lookup data\nbefore saving program.");
    };
    EXPECT_EQ(define(FILE_TITLE, "fd3s,PARTS,2,,9", script), "FD07S,abcdefgh,2,1,9,1,1,?" + message);
    EXPECT_EQ(program_header.bit_values, ALLOW_APPEND);
    EXPECT_TRUE(file_changed && no_lookup_target);
}

TEST(LookupScreens, TheChoiceLeadsToANewDefinition) {
    const std::string name = temporary_file_name();
    const auto new_file = [&](HWND) {
        press_key(VK_RETURN);
        HWND dialog = wait_for_window(FILE_TITLE);
        click(dialog, IDC_LOOKUP_BROWSE);
        answer_file_dialog("Open", name);
        wait_until([&] { return !control_text(dialog, IDC_LOOKUP_NAME).empty(); }, "the name");
        click(dialog, IDOK);
    };
    const auto new_table = [](HWND) {
        press_key(VK_DOWN);
        press_key(VK_RETURN);
        click(wait_for_window(TABLE_TITLE), IDOK);
    };
    EXPECT_EQ(define(CHOICE_TITLE, "", new_file), "F," + path_base_name(name).substr(0, 8) + ",1,1,1,1,1");
    EXPECT_EQ(data_directory, path_folder(name));
    EXPECT_EQ(define(CHOICE_TITLE, "", new_table), "T");
    EXPECT_EQ(define(CHOICE_TITLE, "", [](HWND) { press_key(VK_ESCAPE); }), "-");
}

} // namespace
