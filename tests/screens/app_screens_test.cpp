// The main window, its boxes, and the desktop's own procedures.
#include "app/TolvanP.h"
#include "app/about.h"
#include "app/desktop.h"
#include "app/dialogs.h"
#include "app/ini_file.h"
#include "app/main_window.h"
#include "app/settings.h"
#include "resources/control.h"
#include "resources/define.h"
#include "tests/screens/drive_dialog.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <fstream>

namespace {

constexpr char ABOUT_TITLE[] = "About Tolvan Programmer";

class MainWindow : public testing::Test {
protected:
    static void SetUpTestSuite() {
        register_window_classes();
    }
    void SetUp() override {
        ASSERT_TRUE(create_main_window());
    }
    void TearDown() override {
        DestroyWindow(hwndmain);
        hwndmain = nullptr;
        MSG message; // the quit message must not end the next test's dialogs
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
            continue;
    }
};

TEST_F(MainWindow, HasItsToolbar) {
    HWND toolbar = GetDlgItem(hwndmain, 17);
    int picture = 0;
    for (const int command : {101, 102, 103, 105, 108, 109, 110, 135, 136, 106}) {
        TBBUTTON button{};
        RECT place{};
        SendMessageA(toolbar, TB_GETBUTTON, static_cast<WPARAM>(picture), reinterpret_cast<LPARAM>(&button));
        SendMessageA(toolbar, TB_GETITEMRECT, static_cast<WPARAM>(picture), reinterpret_cast<LPARAM>(&place));
        EXPECT_TRUE(button.idCommand == command && button.iBitmap == picture++) << command;
        EXPECT_TRUE(place.right - place.left == 29 && place.bottom - place.top == 30);
    }
    NMTTDISPINFOA request{};
    request.hdr.code = TTN_GETDISPINFOA;
    request.hdr.idFrom = CMD_MONITOR;
    SendMessageA(hwndmain, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&request));
    EXPECT_STREQ(request.lpszText, "Comm Monitor");
    const auto pictures = reinterpret_cast<HIMAGELIST>(SendMessageA(toolbar, TB_GETIMAGELIST, 0, 0));
    EXPECT_EQ(ImageList_GetImageCount(pictures), picture);
}

TEST_F(MainWindow, TakesNoCommandBehindADialog) {
    for (const int key : {VK_RETURN, VK_ESCAPE, 0}) // or the close box
        drive([] { SendMessageA(hwndmain, WM_COMMAND, CMD_ABOUT, 0); },
              [&] {
                  HWND about = wait_for_window(ABOUT_TITLE);
                  for (const int command : {CMD_EXIT, CMD_ABOUT, CMD_RESET_SETUP})
                      choose_command(hwndmain, command);
                  PostMessageA(hwndmain, WM_CLOSE, 0, 0);
                  settle();
                  EXPECT_TRUE(IsWindow(hwndmain));
                  EXPECT_EQ(wait_for_window(ABOUT_TITLE), about);
                  EXPECT_EQ(focused_control(about), IDOK);
                  key == 0 ? close_window(about) : press_key(key);
              });
    EXPECT_TRUE(IsWindowEnabled(hwndmain));
    SendMessageA(hwndmain, WM_COMMAND, 104, 0); // a number without an entry
    SendMessageA(hwndmain, WM_COMMAND, CMD_EXIT, 0);
    EXPECT_FALSE(IsWindow(hwndmain));
}

TEST_F(MainWindow, WritesItsSettingsWhenTheSessionEnds) {
    monitor_directory = "C:\\trace\\";
    EXPECT_TRUE(SendMessageA(hwndmain, WM_QUERYENDSESSION, 0, 0));
    SendMessageA(hwndmain, WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(read_setting_text("DIRECT", "M_DIRECT", "", DIRECTORY_LIMIT), "C:\\trace\\");
    EXPECT_EQ(read_setting_text("DIRECT", "M_DIRECT", "", 4), "C:\\t") << "cut to its limit";
    EXPECT_EQ(read_setting_number("DIRECT", "M_DIRECT", 9), 0U) << "no number";
}

// How many pixels of the progress bar are filled when the box draws it again, uncovered by another window.
int filled_pixels(HWND box) {
    RECT client{};
    GetClientRect(GetDlgItem(box, IDC_STATUS_BAR), &client);
    DRAWITEMSTRUCT item{};
    item.hDC = CreateCompatibleDC(nullptr);
    HBITMAP bitmap = CreateBitmap(client.right, client.bottom, 1, 32, nullptr);
    SelectObject(item.hDC, bitmap);
    SendMessageA(box, WM_DRAWITEM, IDC_STATUS_BAR, reinterpret_cast<LPARAM>(&item));
    int filled = 0;
    for (int x = 0; x < client.right; ++x)
        filled += GetPixel(item.hDC, x, client.bottom / 2) == RGB(0, 0, 255);
    DeleteDC(item.hDC);
    DeleteObject(bitmap);
    return filled;
}

TEST(ProgressBox, ShowsHowFarTheWorkIs) {
    STATUS_BOX* status = open_status_box(STATUS_CHECKSUM);
    HWND box = FindWindowA(nullptr, "Open File Checksum");
    ASSERT_TRUE(IsWindowVisible(box));
    EXPECT_EQ(control_text(box, IDC_STATUS_TEXT), "Verifying Checksum");
    EXPECT_EQ(layout_faults(box), std::vector<std::string>());
    EXPECT_EQ(filled_pixels(box), 0);
    RECT bar{};
    GetClientRect(GetDlgItem(box, IDC_STATUS_BAR), &bar);
    constexpr std::int64_t SIZE = 1'000'000'000'000; // past 32 bits
    const std::tuple<std::int64_t, std::int64_t, long> cases[] = {{0, SIZE, 1},
                                                                  {SIZE / 2, SIZE, bar.right / 2 + 1},
                                                                  {SIZE + 1, SIZE, bar.right - 2},
                                                                  {-1, SIZE, 1},
                                                                  {5, 0, 0}};
    for (const auto& [position, size, filled] : cases) {
        update_status_bar(status, position, size);
        EXPECT_EQ(filled_pixels(box), filled);
    }
    close_status_box(status);
    EXPECT_FALSE(IsWindow(box));
}

TEST(IniFile, IsChosenByWhatCanBeWritten) {
    struct ROW {
        bool in_application_data, windows_writable, in_windows;
        INI_CHOICE choice;
    };
    for (const ROW& row : {ROW{false, true, false, INI_CHOICE::WINDOWS},
                           {false, true, true, INI_CHOICE::WINDOWS},
                           {false, false, false, INI_CHOICE::APPLICATION_DATA},
                           {false, false, true, INI_CHOICE::COPY_TO_APPLICATION_DATA},
                           {true, true, true, INI_CHOICE::APPLICATION_DATA},
                           {true, false, false, INI_CHOICE::APPLICATION_DATA}})
        EXPECT_EQ(choose_ini_file(row.in_application_data, row.windows_writable, row.in_windows), row.choice);
}

TEST(IniFile, IsProbedWithoutATrace) {
    const std::string name = temporary_file_name();
    std::ofstream(name) << "[DIRECT]";
    EXPECT_TRUE(can_write_file(name));
    std::string text;
    std::ifstream(name) >> text;
    EXPECT_EQ(text, "[DIRECT]");
    DeleteFileA(name.c_str());
    EXPECT_TRUE(can_write_file(name));
    EXPECT_EQ(GetFileAttributesA(name.c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_FALSE(can_write_file(name + "\\no such folder\\TolvanP.INI"));
    EXPECT_FALSE(can_write_file("C:\\")); // a folder
}

} // namespace
