// The context menu of edits, special characters, global data options and bar code types.
#include "app/dialogs.h"
#include "program/Prog.h"
#include "program/Prog_edits.h"
#include "program/Prog_screens.h"
#include "resources/control.h"
#include "resources/define.h"
#include "tests/screens/drive_dialog.h"

#include <gtest/gtest.h>

namespace {

INT_PTR run_options(int dialog, DLGPROC procedure, const std::function<void(HWND)>& script) {
    INT_PTR result = -1;
    drive([&] { result = run_dialog(dialog, nullptr, procedure); },
          [&] {
              HWND screen =
                  wait_for_window(dialog == DLG_GLOBAL_DATA ? "Global Data Options" : "Bar Code Types");
              EXPECT_EQ(layout_faults(screen), std::vector<std::string>());
              EXPECT_EQ(unreached_by_tab(screen), std::vector<int>());
              script(screen);
          });
    return result;
}

// The captions of the open context menu, those of greyed items in brackets.
std::string read_menu() {
    const auto popup = [] { return FindWindowA("#32768", nullptr); };
    wait_until([&] { return IsWindowVisible(popup()) != FALSE; }, "the context menu");
    const auto menu = reinterpret_cast<HMENU>(SendMessageA(popup(), MN_GETHMENU, 0, 0));
    std::string items;
    for (UINT i = 0; i < static_cast<UINT>(GetMenuItemCount(menu)); ++i) {
        char caption[40];
        GetMenuStringA(menu, i, caption, sizeof caption, MF_BYPOSITION);
        const bool greyed = (GetMenuState(menu, i, MF_BYPOSITION) & MF_GRAYED) != 0;
        items += greyed ? '[' + std::string(caption) + ']' : caption;
    }
    return items;
}

TEST(OptionsScreens, ContextMenuAndSpecialCharacters) {
    OpenClipboard(nullptr);
    EmptyClipboard();
    CloseClipboard();
    run_options(DLG_GLOBAL_DATA, GLOBALDATAPROC, [](HWND screen) {
        HWND edit = GetDlgItem(screen, IDC_GLOBAL_COMPARE);
        remove_filter(edit);
        install_filter(edit, EDITTABPROC); // on a numeric edit here, as it serves any
        SendMessageA(edit, EM_LIMITTEXT, 0, 0);
        const auto open_menu = [edit](const char* text, WPARAM start, LPARAM end) {
            SetWindowTextA(edit, text);
            SendMessageA(edit, EM_SETSEL, start, end);
            PostMessageA(edit, WM_CONTEXTMENU, 0, -1);
            return read_menu();
        };
        const auto choose = [screen](UINT message, WPARAM key) {
            PostMessageA(screen, message, key, 0);
            settle();
        };
        EXPECT_EQ(open_menu("", 0, 0),
                  "[&Undo][][Cu&t][&Copy][&Paste][&Delete][]&Special ASCII[Select &All]");
        choose(WM_KEYDOWN, VK_ESCAPE);
        EXPECT_EQ(open_menu("a//b", 0, 3), "[&Undo][]Cu&t&Copy[&Paste]&Delete[]&Special ASCIISelect &All");
        choose(WM_CHAR, 'T');
        EXPECT_EQ(window_text(edit), "b");
        EXPECT_EQ(open_menu("abc", 1, 2), "[&Undo][]Cu&t&Copy&Paste&Delete[]&Special ASCIISelect &All");
        choose(WM_CHAR, 'S');
        HWND picker = wait_for_window("Special ASCII Characters");
        EXPECT_EQ(layout_faults(picker), std::vector<std::string>());
        EXPECT_EQ(unreached_by_tab(picker), std::vector<int>());
        for (const int key : {VK_SPACE, VK_HOME, VK_RETURN, VK_DOWN, VK_DOWN, VK_SPACE})
            press_key(key); // the first finds nothing selected
        while (focused_control(picker) != IDC_SPECIAL_TEXT)
            press_key(VK_TAB);
        press_key(VK_END);
        type_text("+");
        press_key(VK_RETURN);
        EXPECT_EQ(window_text(edit), "a/00/02+c");
        press_key(VK_RETURN); // does nothing
        press_key(VK_ESCAPE);
    });
}

TEST(OptionsScreens, GlobalDataOptions) {
    const struct {
        std::vector<std::int32_t> typed;
        bool warns; // of both options
    } cases[] = {{{0, 0, 5, 0, 0, 0}, false},
                 {{2, 3, 5, 1, 2, 3}, false},
                 {{2, 0, 5, 1, 2, 0}, true},
                 {{0, 3, 5, 1, 0, 3}, true},
                 {{2, 3, 0, 0, 2, 3}, true}};
    const GLOBAL_DATA_OPTIONS& o = global_options;
    for (const auto& c : cases) {
        global_options = {.amount_to_inc = INT32_MIN, .mult_field_operator = 2};
        file_changed = false;
        const auto script = [&](HWND screen) {
            EXPECT_EQ(control_text(screen, IDC_GLOBAL_AMOUNT), "-2147483648");
            EXPECT_FALSE(file_changed);
            for (int i = 0; i < 6; ++i) // the check box stands between the two groups
                set_control_text(screen, IDC_GLOBAL_COMPARE + i + i / 3, std::to_string(c.typed[i]));
            for (const int control : {IDC_GLOBAL_DUP_WARNING, IDC_GLOBAL_DIVIDE, IDOK})
                click(screen, control);
            if (!c.warns)
                return;
            EXPECT_EQ(answer_box("Autoincrement Options", IDOK),
                      "! You must have a compare field\nand an increment field\nand an increment amount\n"
                      "for this option to work.");
            EXPECT_EQ(answer_box("Multiple Field Calculation Option", IDOK),
                      "! All fields must have data\nfor this option to work.");
        };
        EXPECT_EQ(run_options(DLG_GLOBAL_DATA, GLOBALDATAPROC, script), 1);
        EXPECT_TRUE(file_changed && o.dup_warning == 1 && o.mult_field_operator == 4);
        EXPECT_EQ(c.typed, (std::vector{o.field_compare, o.field_to_inc, o.amount_to_inc, o.mult_field_1,
                                        o.mult_field_2, o.mult_field_result}));
    }
    const auto cancel = [](HWND screen) {
        set_control_text(screen, IDC_GLOBAL_COMPARE, "99");
        press_key(VK_ESCAPE);
    };
    EXPECT_EQ(run_options(DLG_GLOBAL_DATA, GLOBALDATAPROC, cancel), 0);
    EXPECT_TRUE(o.field_compare == 2 && !file_changed) << "whatever had been changed before";
}

TEST(OptionsScreens, BarCodeTypes) {
    current_barcode_bit_values = 0x8013;
    const auto script = [](HWND screen) {
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(screen, IDC_BAR_CODE11)));
        for (const int box : {IDC_BAR_ALL, IDC_BAR_UPC_A})
            click(screen, box);
        EXPECT_TRUE(IsWindowEnabled(GetDlgItem(screen, IDC_BAR_CODE11)));
        close_window(screen);
    };
    EXPECT_EQ(run_options(DLG_BAR_TYPES, BARTYPESPROC, script), 1);
    EXPECT_EQ(current_barcode_bit_values, 0x2013);
    EXPECT_EQ(run_options(DLG_BAR_TYPES, BARTYPESPROC, close_window), 0) << "no change";
}

} // namespace
