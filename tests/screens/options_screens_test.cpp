// Global data options and bar code types.
#include "app/dialogs.h"
#include "program/Prog.h"
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
              expect_good_looks(screen);
              script(screen);
          });
    return result;
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
