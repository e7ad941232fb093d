// The monitor's window and its prompts, opened from the main window.
#include "app/desktop.h"
#include "app/dialogs.h"
#include "app/main_window.h"
#include "monitor/MONITOR_screens.h"
#include "monitor/MONITOR_text.h"
#include "resources/control.h"
#include "resources/define.h"
#include "tests/screens/drive_dialog.h"

#include <gtest/gtest.h>

namespace {

// Each setting's key, number of choices, last choice, and the menu's text with that.
// clang-format off
constexpr std::tuple<const char*, int, unsigned, const char*> SETTINGS[] = {
    {"M_PORT", 5, 4, "Serial Port [COM:4]"}, {"M_BAUDRATE", 8, 38400, "Baud Rate [38400]"},
    {"M_DATABITS", 2, 8, "Data Bits [8]"}, {"M_STOPBITS", 2, 2, "Stop Bits [2]"},
    {"M_PARITY", 3, 2, "Parity [Even]"}, {"M_XON", 2, 1, "Use XON/XOFF [Yes]"},
    {"M_FKEYS", 4, 3, "Function Keys [Both]"}, {"M_SKEYS", 4, 3, "Special Keys [Both]"},
    {"M_CR", 2, 1, "Translate {CR} [Yes]"}};
// clang-format on

void post(HWND monitor, UINT message, std::initializer_list<int> parameters) {
    for (const int parameter : parameters)
        PostMessageA(monitor, message, static_cast<WPARAM>(parameter), 0);
    settle();
}

void change_all_settings(HWND monitor) {
    for (int command = CMD_MON_SETTING; const auto& [key, count, last, text] : SETTINGS) {
        for (const int choice : {count - 1, 0}) {
            choose_command(monitor, command);
            HWND prompt = wait_for_window(std::string(text).substr(0, strcspn(text, "[") - 1));
            EXPECT_TRUE(choice != 0 || focused_control(prompt) == IDC_MON_CHOICE + count - 1) << text;
            EXPECT_EQ(layout_faults(prompt), std::vector<std::string>());
            click(prompt, IDC_MON_CHOICE + choice);
            press_key(choice != 0 ? VK_RETURN : VK_ESCAPE);
            char shown[100] = "";
            GetMenuStringA(GetMenu(monitor), static_cast<UINT>(command), shown, 100, 0);
            EXPECT_STREQ(shown, text);
            EXPECT_EQ(read_setting_number("MONITOR", key, 99), last) << text;
        }
        ++command;
    }
}

void capture_keys(HWND monitor) {
    const auto expect_command = [&](int command, int button, const char* said) {
        choose_command(monitor, command);
        EXPECT_EQ(answer_box("Tolvan Programmer", button), said);
    };
    const auto flags = [&](int id) { return GetMenuState(GetMenu(monitor), static_cast<UINT>(id), 0); };
    expect_command(CMD_SAVE, IDOK, "X No Captured Data to Save.");
    expect_command(CMD_MON_PRINT, IDOK, "X No Captured Data to Print.");
    monitor_settings.port = 99;
    expect_command(CMD_MON_CAPTURE, IDOK, "X Error Opening Com Port."); // the keyboard is left
    EXPECT_EQ(window_text(monitor), "Tolvan Monitor--Capture Mode[ON]");
    for (int item = 0; item < MONITOR_ITEM_COUNT; ++item)
        EXPECT_EQ((flags(CMD_MON_SETTING + item) & MF_GRAYED) != 0, item < MONITOR_SERIAL_ITEM_COUNT);
    EXPECT_TRUE(flags(CMD_OPEN) & flags(CMD_SAVE) & flags(CMD_MON_PRINT) & MF_GRAYED);
    EXPECT_TRUE(flags(CMD_MON_CAPTURE) & MF_CHECKED);
    post(monitor, WM_SYSKEYDOWN, {VK_MENU, VK_F4}); // neither the menu nor the end
    post(monitor, WM_SYSKEYUP, {VK_F4, VK_MENU, VK_F10});
    post(monitor, WM_KEYDOWN, {VK_CONTROL});
    post(monitor, WM_KILLFOCUS, {0}); // takes its release away
    post(monitor, WM_KEYUP, {'B', VK_SNAPSHOT});
    EXPECT_STREQ(captured_text.lines.back().string.data(), "{Alt {F4}}{F10}b{PrtScr}");
    ShowWindowAsync(monitor, SW_MINIMIZE);
    choose_command(hwndmain, CMD_MONITOR);
    EXPECT_TRUE(!IsIconic(monitor) && FindWindowExA(nullptr, monitor, MONITOR_CLASS, nullptr) == nullptr);
    for (int i = 0; i < 40; ++i)
        post(monitor, WM_KEYUP, {VK_RETURN});
    choose_command(monitor, CMD_MON_CAPTURE);
    EXPECT_EQ(window_text(monitor), "Tolvan Monitor--Capture Mode[OFF]");
    EXPECT_EQ(GetScrollPos(monitor, SB_VERT), 41 - 15);
    post(monitor, WM_KEYDOWN, {VK_PRIOR});
    EXPECT_EQ(GetScrollPos(monitor, SB_VERT), 41 - 17 - 16);
    expect_command(CMD_OPEN, IDNO, "? Overwrite Captured Data?");
}

TEST(Monitor, WorksAsShown) {
    register_window_classes();
    ASSERT_TRUE(create_main_window());
    const auto run_messages = [] {
        for (MSG message; GetMessageA(&message, nullptr, 0, 0) > 0;)
            DispatchMessageA(&message);
    };
    drive(run_messages, [] {
        const std::unique_ptr<HWND, void (*)(HWND*)> end(
            &hwndmain, [](HWND* window) { PostMessageA(*window, WM_COMMAND, CMD_EXIT, 0); });
        choose_command(hwndmain, CMD_MONITOR);
        HWND monitor = FindWindowA(MONITOR_CLASS, "Tolvan Programmer V1.17");
        change_all_settings(monitor);
        capture_keys(monitor);
    });
}

} // namespace
