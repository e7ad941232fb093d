// The dialogs that define lookups.
#include "app/dialogs.h"
#include "program/LOOKUP_dialogs.h"
#include "resources/control.h"
#include "tests/screens/drive_dialog.h"

#include <gtest/gtest.h>

namespace {

constexpr char TABLE_TITLE[] = "Lookup Table Definition";
constexpr char FILE_TITLE[] = "Lookup File Definition";

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
        expect_good_looks(dialog);
        script(dialog);
    });
    return defined ? text : "-";
}

// Goes to an edit by the tab key and types.
void type_into(HWND dialog, int control, const std::string& text) {
    while (focused_control(dialog) != control)
        press_key(VK_TAB);
    type_text(text);
}

TEST(LookupScreens, ATableIsTypedByKeysAndButtons) {
    const struct {
        UINT message;
        int what, times;
        const char* shown;
    } steps[] = {
        {WM_KEYDOWN, VK_DOWN, 7, "B|C|D|E|F|G*|"},
        {WM_KEYDOWN, VK_RETURN, 1, "C|D|E|F|G|*|"},
        {WM_CHAR, ',', 1, "C|D|E|F|G|,*|"},
        {WM_KEYDOWN, VK_UP, 1, "C|D|E|F|G*||"}, // and one more empty entry below
        {WM_VSCROLL, SB_LINEDOWN, 3, "E|F|G||*|< End of Entries >|"},
        {WM_VSCROLL, MAKELONG(SB_THUMBPOSITION, 2), 1, "B|C|D|E|F*|G|"},
        {BM_CLICK, IDC_TABLE_INSERT, 1, "B|C|D|E|*|F|"},
        {BM_CLICK, IDC_TABLE_DELETE, 2, "B|C|D|E|G*||"},
        {WM_SYSCHAR, 'd', 1, "B|C|D|E|*||"},
        {WM_KEYDOWN, VK_TAB, 2, "B|C|D|E|||"}, // to Insert
        {WM_KEYDOWN, VK_RETURN, 1, "B|C|D|E||*|"},
        {WM_KEYDOWN, VK_UP, 7, "A*|B|C|D|E||"},
        {BM_CLICK, IDC_TABLE_ADD, 1, "D|E||||*|"},
        {BM_CLICK, IDC_LOOKUP_PARTIAL, 1, "D|E|||||"},
    };
    const auto script = [&](HWND dialog) {
        for (const auto& [message, what, times, shown] : steps) {
            for (int i = 0; i < times; ++i) {
                const int control = message == BM_CLICK ? what : focused_control(dialog);
                PostMessageA(message == WM_VSCROLL ? dialog : GetDlgItem(dialog, control), message,
                             static_cast<WPARAM>(what), 0);
                settle();
            }
            std::string rows; // a star where the focus is
            for (int row = IDC_TABLE_ENTRY; row < IDC_TABLE_ENTRY + 6; ++row)
                rows += control_text(dialog, row) + (focused_control(dialog) == row ? "*|" : "|");
            EXPECT_EQ(rows, shown) << message << ' ' << what;
        }
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDC_TABLE_DELETE)));
        click(dialog, IDOK);
    };
    EXPECT_EQ(define(TABLE_TITLE, "ta,A,B,C,D,E,F,G,?/0d", script), "TAP,A,B,C,D,E,,,,,?/0D");
}

TEST(LookupScreens, ATableKeepsToItsLength) {
    const std::string entry = "T," + std::string(240, 'x');
    const auto script = [](HWND dialog) {
        type_into(dialog, IDC_TABLE_ENTRY + 1, "123456789");
        click(dialog, IDC_LOOKUP_ACCEPT); // no room for its letter
        click(dialog, IDC_TABLE_ADD);
        type_into(dialog, IDC_LOOKUP_MESSAGE, "m");
        press_key(VK_RETURN);
    };
    EXPECT_EQ(define(TABLE_TITLE, entry + ",y", script), entry + ",1234567");
}

TEST(LookupScreens, AFileIsCheckedAndWritten) {
    const std::string message(40, 'm');
    program_header = {};
    program_header.bit_values = ALLOW_APPEND | DISABLE_VIEW_LOOKUP;
    file_changed = no_lookup_target = false;
    const auto script = [&](HWND dialog) {
        EXPECT_EQ(control_text(dialog, IDC_LOOKUP_PREVIEW), "Input Not Found In  ");
        click(dialog, IDC_LOOKUP_BROWSE);
        answer_file_dialog("Open", temporary_path("PARTSLIST")); // that is not there
        wait_until([&] { return control_text(dialog, IDC_LOOKUP_NAME) != "PARTS"; }, "the name");
        type_into(dialog, IDC_LOOKUP_NAME, ",?"); // both refused
        type_into(dialog, IDC_LOOKUP_START_ROW, "4");
        click(dialog, IDOK);
        EXPECT_EQ(answer_box(FILE_TITLE, IDOK), "X Start Row/End Row Greater than 3");
        type_into(dialog, IDC_LOOKUP_START_ROW, "\b");
        type_into(dialog, IDC_LOOKUP_TARGET, "\b07");
        click(dialog, IDC_LOOKUP_NO_VIEW);
        type_into(dialog, IDC_LOOKUP_MESSAGE, message + "x");
        EXPECT_EQ(control_text(dialog, IDC_LOOKUP_PREVIEW + 1), message.substr(20));
        press_key(VK_RETURN);
        answer_box("Target Field", IDOK);
    };
    EXPECT_EQ(define(FILE_TITLE, "fd3s,PARTS,2,,9", script), "FD07S,PARTSLIS,2,1,9,1,1,?" + message);
    EXPECT_EQ(program_header.bit_values, ALLOW_APPEND);
    EXPECT_TRUE(file_changed && no_lookup_target);
}

TEST(LookupScreens, AnUntouchedDefinitionIsWrittenWhenItIsNew) {
    EXPECT_EQ(define(TABLE_TITLE, "ta,A", [](HWND dialog) { click(dialog, IDOK); }), "-");
    const auto choose_table = [](HWND) {
        press_key(VK_DOWN);
        press_key(VK_RETURN);
        click(wait_for_window(TABLE_TITLE), IDOK);
    };
    EXPECT_EQ(define("Lookup Choice", "", choose_table), "T");
}

} // namespace
