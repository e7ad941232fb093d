// The programming window's looks, and what it shows of a full program.
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

namespace {

TEST(ProgrammingWindow, ShowsAFullProgram) {
    init_programming();
    program_header.name = "STOCK";
    program_header.bit_values = RECEIVED_FILES_ONLY | AUTO_ALPHA_OFF;
    program_header.fields.resize(MAX_FIELDS);
    for (FIELD_DEFINITION& field : program_header.fields)
        init_field(field);
    command_line_string = temporary_path("good.pgt");
    ASSERT_EQ(save_program_file(command_line_string), 1);
    command_line_options_flag = 1;
    const auto script = [] {
        HWND window = wait_for_window("Programming (STOCK)");
        settle();
        EXPECT_EQ(SendDlgItemMessageA(window, IDC_FIELD_LIST, LB_GETCOUNT, 0, 0), 251);
        for (const int control : {IDC_EDIT_FIELD, IDC_DELETE_FIELD, IDC_ALLOW_APPEND})
            EXPECT_TRUE(IsWindowEnabled(GetDlgItem(window, control))) << control;
        EXPECT_TRUE(is_ticked(window, IDC_RECEIVED_FILES_ONLY));
        EXPECT_FALSE(is_ticked(window, IDC_ALLOW_APPEND) || is_ticked(window, IDC_AUTO_ALPHA));
        expect_good_looks(window);
        LRESULT place = 0; // of the picture too
        for (const WPARAM command : {CMD_NEW, CMD_OPEN, CMD_SAVE, CMD_EXIT})
            EXPECT_EQ(SendDlgItemMessageA(window, ID_FILE_TOOLBAR, TB_COMMANDTOINDEX, command, 0), place++);
        click(window, IDC_INSERT_FIELD);
        EXPECT_EQ(answer_box("Field Definition", IDOK),
                  "X Maximum number of Field Definitions allowed is 250.");
        choose_command(window, CMD_EXIT);
    };
    drive([] { EXPECT_EQ(run_dialog(DLG_PROGRAMMING, nullptr, PROGRAMMINGPROC), 1); }, script);
}

} // namespace
