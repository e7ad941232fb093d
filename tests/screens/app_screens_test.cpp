// The main window, its boxes, and the desktop's own procedures.
#include "app/TolvanP.h"
#include "app/about.h"
#include "app/checksum.h"
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

// A menu as one line an item: its depth in blanks, its text, and its command unless it opens another menu.
std::string menu_lines(HMENU menu, int depth = 0) {
    std::string lines;
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        char text[64] = ""; // of a separator nothing
        GetMenuStringA(menu, static_cast<UINT>(i), text, sizeof text, MF_BYPOSITION);
        lines += std::string(static_cast<std::size_t>(depth), ' ') + text;
        if (HMENU popup = GetSubMenu(menu, i))
            lines += '\n' + menu_lines(popup, depth + 1);
        else
            lines += (GetMenuItemID(menu, i) == 0 ? "" : ' ' + std::to_string(GetMenuItemID(menu, i))) + '\n';
    }
    return lines;
}

TEST_F(MainWindow, HasItsMenu) {
    EXPECT_EQ(menu_lines(GetMenu(hwndmain)),
              "&Programming 101\n"
              "Portable &Setup\n"
              " Bar Codes\n"
              "  Code 39 119\n  UPC 120\n  EAN 121\n  UPC/EAN Addons 122\n  I 2 of 5 123\n  Codabar 124\n"
              "  Code 128 125\n  Code 93 126\n  MSI/Plessey 127\n  Code 11 128\n  Termination Char 129\n"
              "  Preamble/Postamble 130\n  Bar Code Edit 131\n  Bar Code Beeper 132\n"
              "  Laser/CCD Options 133\n  Other Bar Code Options 134\n"
              " Communications 114\n Laser/CCD Options 133\n Other Setup 115\n \n"
              " Open Setup 116\n Save Setup 117\n Reset Setup 118\n"
              "&Editor\n Lookup File 102\n Data File 103\n"
              "&Librarian 105\n"
              "&Communications\n Setup 107\n Send File 108\n Receive File 109\n Auto Receive 110\n"
              " Upgrade Flash 135\n"
              "&Monitor 136\n"
              "&Help\n Help Topics 155\n \n About TolvanP 156\n");
}

TEST_F(MainWindow, HasItsToolbar) {
    constexpr std::pair<int, const char*> ROWS[] = {{101, "Programming"},       {102, "Lookup File Editor"},
                                                    {103, "Data File Editor"},  {105, "Librarian"},
                                                    {108, "Send File"},         {109, "Receive File"},
                                                    {110, "Auto Receive File"}, {135, "Upgrade Flash"},
                                                    {136, "Comm Monitor"},      {106, "Exit"}};
    HWND toolbar = GetDlgItem(hwndmain, 17);
    ASSERT_EQ(SendMessageA(toolbar, TB_BUTTONCOUNT, 0, 0), static_cast<LRESULT>(std::size(ROWS)));
    for (std::size_t i = 0; i < std::size(ROWS); ++i) {
        const auto& [command, tooltip] = ROWS[i];
        SCOPED_TRACE(tooltip);
        TBBUTTON button{};
        SendMessageA(toolbar, TB_GETBUTTON, i, reinterpret_cast<LPARAM>(&button));
        EXPECT_EQ(button.idCommand, command);
        EXPECT_EQ(button.iBitmap, static_cast<int>(i));
        EXPECT_EQ(button.fsState, TBSTATE_ENABLED);
        RECT place{};
        SendMessageA(toolbar, TB_GETITEMRECT, i, reinterpret_cast<LPARAM>(&place));
        EXPECT_EQ(place.right - place.left, 29);
        EXPECT_EQ(place.bottom - place.top, 30);
        NMTTDISPINFOA request{};
        request.hdr.code = TTN_GETDISPINFOA;
        request.hdr.idFrom = static_cast<UINT_PTR>(command);
        SendMessageA(hwndmain, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&request));
        EXPECT_STREQ(request.lpszText, tooltip);
    }
    const auto pictures = reinterpret_cast<HIMAGELIST>(SendMessageA(toolbar, TB_GETIMAGELIST, 0, 0));
    EXPECT_EQ(ImageList_GetImageCount(pictures), static_cast<int>(std::size(ROWS)));
}

TEST_F(MainWindow, TakesNoCommandBehindADialog) {
    drive([] { SendMessageA(hwndmain, WM_COMMAND, CMD_ABOUT, 0); },
          [] {
              HWND about = wait_for_window(ABOUT_TITLE);
              for (const int command : {CMD_EXIT, CMD_ABOUT, CMD_RESET_SETUP})
                  choose_command(hwndmain, command);
              PostMessageA(hwndmain, WM_CLOSE, 0, 0);
              settle();
              EXPECT_TRUE(IsWindow(hwndmain));
              EXPECT_EQ(wait_for_window(ABOUT_TITLE), about);
              PostMessageA(about, WM_CLOSE, 0, 0);
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

TEST(AboutBox, EndsByEveryKeyAndByItsCloseBox) {
    constexpr std::pair<UINT, WPARAM> ENDINGS[] = {
        {WM_KEYDOWN, VK_RETURN}, {WM_KEYDOWN, VK_ESCAPE}, {WM_SYSCOMMAND, SC_CLOSE}};
    for (const auto& [message, parameter] : ENDINGS) {
        INT_PTR result = 0;
        drive([&] { result = run_dialog(DLG_ABOUT, nullptr, TolvanABOUTPROC); },
              [&] {
                  HWND about = wait_for_window(ABOUT_TITLE);
                  EXPECT_EQ(focused_control(about), IDOK);
                  PostMessageA(about, message, parameter, 0);
              });
        EXPECT_EQ(result, 1);
    }
}

// The pixels of the progress bar's middle row, as the box draws them again when a window has passed over it.
std::string bar_pixels(HWND box) {
    RECT client{};
    GetClientRect(GetDlgItem(box, IDC_STATUS_BAR), &client);
    HDC dc = CreateCompatibleDC(nullptr);
    HBITMAP bitmap = CreateBitmap(client.right, client.bottom, 1, 32, nullptr);
    HGDIOBJ old_bitmap = SelectObject(dc, bitmap);
    DRAWITEMSTRUCT item{};
    item.hDC = dc;
    SendMessageA(box, WM_DRAWITEM, IDC_STATUS_BAR, reinterpret_cast<LPARAM>(&item));
    std::string pixels;
    for (int x = 0; x < client.right; ++x) {
        const COLORREF colour = GetPixel(dc, x, client.bottom / 2);
        pixels += colour == RGB(0, 0, 255)              ? '#'
                  : colour == RGB(0, 0, 0)              ? '|'
                  : colour == GetSysColor(COLOR_WINDOW) ? ' '
                                                        : '?';
    }
    SelectObject(dc, old_bitmap);
    DeleteObject(bitmap);
    DeleteDC(dc);
    return pixels;
}

TEST(ProgressBox, ShowsHowFarTheWorkIs) {
    STATUS_BOX* status = open_status_box(STATUS_CHECKSUM);
    HWND box = FindWindowA(nullptr, "Open File Checksum");
    ASSERT_TRUE(IsWindowVisible(box));
    EXPECT_EQ(control_text(box, IDC_STATUS_TEXT), "Verifying Checksum");
    EXPECT_EQ(layout_faults(box), std::vector<std::string>());

    const std::size_t inner = bar_pixels(box).size() - 2;
    const auto bar = [&](std::size_t filled) {
        return '|' + std::string(filled, '#') + std::string(inner - filled, ' ') + '|';
    };
    constexpr std::int64_t SIZE = 1'000'000'000'000; // past 32 bits
    EXPECT_EQ(bar_pixels(box), bar(0));
    update_status_bar(status, 0, SIZE);
    EXPECT_EQ(bar_pixels(box), bar(1));
    update_status_bar(status, SIZE / 2, SIZE);
    EXPECT_EQ(bar_pixels(box), bar((inner + 1) / 2 + 1));
    update_status_bar(status, SIZE, SIZE);
    EXPECT_EQ(bar_pixels(box), bar(inner));
    close_status_box(status);
    EXPECT_FALSE(IsWindow(box));
}

TEST(Message, CanBeCancelled) {
    BUTTON answer = BUTTON::OK; // Yes and No are pressed in Communication Setup
    drive(
        [&] {
            answer = show_message(nullptr, "Save?", PROGRAM_TITLE, MESSAGE_ICON::WARNING,
                                  MESSAGE_BUTTONS::YES_NO_CANCEL);
        },
        [&] { EXPECT_EQ(answer_box(PROGRAM_TITLE, IDCANCEL), "! Save?"); });
    EXPECT_EQ(answer, BUTTON::CANCEL);
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

std::string file_bytes(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(IniFile, IsProbedWithoutATrace) {
    const std::string name = temporary_file_name();
    std::ofstream(name) << "[DIRECT]";
    EXPECT_TRUE(can_write_file(name));
    EXPECT_EQ(file_bytes(name), "[DIRECT]");
    DeleteFileA(name.c_str());
    EXPECT_TRUE(can_write_file(name));
    EXPECT_EQ(GetFileAttributesA(name.c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_FALSE(can_write_file(name + "\\no such folder\\TolvanP.INI"));
    EXPECT_FALSE(can_write_file("C:\\")); // a folder
}

TEST(Desktop, ReplacesAFileOnlyByAnother) {
    const std::string from = temporary_file_name();
    const std::string to = temporary_file_name();
    ASSERT_NE(from, to);
    std::ofstream(from) << "new";
    std::ofstream(to) << "old";
    EXPECT_TRUE(replace_file(from, to));
    EXPECT_EQ(file_bytes(to), "new");
    EXPECT_FALSE(replace_file(from, to)); // it is gone
    EXPECT_EQ(file_bytes(to), "new");
    DeleteFileA(to.c_str());
}

} // namespace
