#include "app/dialogs.h"
#include "comm/PCOM.h"
#include "comm/PCOM_screens.h"
#include "comm/transfer_screen.h"
#include "resources/control.h"
#include "resources/define.h"
#include "tests/screens/drive_dialog.h"

#include <gtest/gtest.h>

#include <fstream>

namespace {

constexpr char TITLE[] = "Upgrade Flash";
constexpr char WARNING[] = "X WARNING: The Tolvan Portable will lose all program and data files.\n"
                           "Options will be reset to factory defaults. Continue?";

void run_upgrade(const std::function<void(HWND)>& script) {
    comm_settings = {.port = 99, .baudrate = 300, .protocol = PROTOCOL_NONE};
    drive([] { run_dialog(DLG_SEND_RECEIVE, nullptr, UPGRADEPROC, ACTION_UPGRADE); },
          [&] { script(wait_for_window(TITLE)); });
}

// 5000 NULs, which carry their right CRC, or with one byte that makes it wrong.
std::string make_file(char changed = 0) {
    const std::string path = testing::TempDir() + "image.upg";
    std::ofstream(path, std::ios::binary) << std::string(2500, '\0') + changed + std::string(2499, '\0');
    return path;
}

TEST(FLASH_SCREEN, DecliningKeepsTheForcedSettings) {
    run_upgrade([](HWND) { EXPECT_EQ(answer_box(TITLE, IDNO), WARNING); });
    EXPECT_EQ(comm_settings.baudrate, 38400U);
}

TEST(FLASH_SCREEN, TakesValidFilesOnly) {
    run_upgrade([&](HWND) {
        EXPECT_EQ(answer_box(TITLE, IDYES), WARNING);
        answer_file_dialog("Enter Filename To Send", make_file('x'));
        EXPECT_EQ(answer_box("Tolvan Programmer", IDOK), "X Invalid Upgrade File");
        HWND screen = wait_for_window(TITLE);
        const auto shown = [&] { // file, counters, and whether Send is enabled
            std::string texts = control_text(screen, IDC_SR_FILE);
            for (int i = 0; i < COUNTER_COUNT; ++i)
                texts += '/' + control_text(screen, IDC_SR_VALUE + i);
            return texts + (IsWindowEnabled(GetDlgItem(screen, IDOK)) ? " Send" : "");
        };
        const auto wait_shown = [&](const std::string& texts) {
            wait_until([&] { return shown() == texts; }, texts);
        };
        wait_shown("//////Flash Error");
        click(screen, IDC_SR_BROWSE);
        answer_file_dialog("Enter Filename To Send", make_file());
        wait_shown("image.upg/5000/5////File OK Send");
        EXPECT_EQ(focused_control(screen), IDOK);
        click(screen, IDOK);
        EXPECT_EQ(answer_box("Tolvan Programmer", IDOK), "X Error Opening Com Port.");
        make_file('x'); // since it was chosen
        click(screen, IDOK);
        EXPECT_EQ(answer_box("Tolvan Programmer", IDOK), "X Invalid Upgrade File");
        wait_shown("image.upg/5000/5////Flash Error Send");
        EXPECT_TRUE(GetMenuState(GetMenu(screen), CMD_SENDRECEIVE_SETUP, MF_BYCOMMAND) & MF_GRAYED);
        EXPECT_EQ(control_text(screen, IDC_SR_BAUDRATE), "38400");
        press_key(VK_ESCAPE);
    });
    EXPECT_EQ(comm_settings.baudrate, 300U);
}

} // namespace
