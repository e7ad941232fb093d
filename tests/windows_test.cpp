// What no script sees from outside: the desktop's own procedures, and a screen that must stand still.
#include "app/desktop.h"
#include "app/dialogs.h"
#include "app/ini_file.h"
#include "comm/PCOM.h"
#include "comm/PCOM_screens.h"
#include "comm/line_win32.h"
#include "comm/transfer_screen.h"
#include "files/FILEGEN_screens.h"
#include "resources/control.h"
#include "resources/define.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>

namespace {

TEST(LineWin32, FillsTheControlBlock) {
    LINE_SETTINGS settings{};
    settings.mode = "COM2:9600,e,7,2";
    settings.baudrate = 57600;
    settings.xon_limit = settings.xoff_limit = 256;
    DCB block;
    for (const bool hardware_flow : {false, true}) {
        settings.rts_cts = hardware_flow;
        std::memset(&block, 0xEE, sizeof block);
        ASSERT_TRUE(fill_control_block(block, settings));
        EXPECT_TRUE(block.DCBlength == sizeof block && block.fBinary && block.BaudRate == 57600);
        EXPECT_TRUE(block.Parity == EVENPARITY && block.ByteSize == 7 && block.StopBits == TWOSTOPBITS);
        EXPECT_TRUE(block.XonLim == 256 && block.XoffLim == 256 && block.XonChar != block.XoffChar);
        EXPECT_FALSE(block.fOutX || block.fInX || block.fOutxDsrFlow);
        EXPECT_EQ(block.fOutxCtsFlow != 0, hardware_flow);
        EXPECT_EQ(block.fRtsControl == RTS_CONTROL_HANDSHAKE, hardware_flow);
        EXPECT_NE(block.fRtsControl, static_cast<DWORD>(RTS_CONTROL_DISABLE));
    }
    settings.mode = "COM1:9600,n,zz,1";
    EXPECT_FALSE(fill_control_block(block, settings));
}

void drop_messages() {
    for (MSG message; PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);)
        continue;
}

TEST(TransferScreen, CancelIsSeenOnTheButtonOnly) {
    HWND screen = CreateDialogParamA(hInstance, MAKEINTRESOURCEA(DLG_SEND_RECEIVE), nullptr, SENDRECEIVEPROC,
                                     ACTION_SEND);
    HWND button = GetDlgItem(screen, IDOK);
    HWND browse = GetDlgItem(screen, IDC_SR_BROWSE);
    const std::tuple<HWND, UINT, WPARAM, bool> cases[] = {
        {button, WM_LBUTTONDOWN, 0, true},  {browse, WM_LBUTTONDOWN, 0, false},
        {button, WM_CHAR, 13, true},        {button, WM_CHAR, ' ', false},
        {button, WM_KEYUP, VK_SPACE, true}, {screen, WM_KEYUP, VK_SPACE, false}};
    for (const auto& [target, posted, parameter, cancels] : cases) {
        drop_messages(); // at first that which opens the file dialog
        PostMessageA(target, posted, parameter, 0);
        EXPECT_EQ(is_cancel_button_pressed(screen), cancels) << posted << ' ' << parameter;
        ReleaseCapture();
    }
    drop_messages();
    EXPECT_FALSE(is_cancel_button_pressed(screen));
    EXPECT_TRUE(is_cancel_button_pressed(nullptr)) << "the window is gone";
    PostQuitMessage(5);
    for (int poll = 0; poll < 2; ++poll)
        EXPECT_TRUE(is_cancel_button_pressed(screen)) << "it stays cancelled";
    MSG message;
    ASSERT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_TRUE(message.message == WM_QUIT && message.wParam == 5) << "is for the loops further up";
    DestroyWindow(screen);
    show_counter(screen, COUNTER::STATUS, "User Abort"); // the rest of the transfer still speaks to it
}

// How many of the bar's pixels are filled when the box draws it again, uncovered by another window.
int filled_pixels(HWND box, const RECT& bar) {
    DRAWITEMSTRUCT item{};
    item.hDC = CreateCompatibleDC(nullptr);
    HBITMAP bitmap = CreateBitmap(bar.right, bar.bottom, 1, 32, nullptr);
    SelectObject(item.hDC, bitmap);
    SendMessageA(box, WM_DRAWITEM, IDC_STATUS_BAR, reinterpret_cast<LPARAM>(&item));
    int filled = 0;
    for (int x = 0; x < bar.right; ++x)
        filled += GetPixel(item.hDC, x, bar.bottom / 2) == RGB(0, 0, 255);
    DeleteDC(item.hDC);
    DeleteObject(bitmap);
    return filled;
}

TEST(ProgressBox, ShowsHowFarTheWorkIs) {
    STATUS_BOX* status = open_status_box(STATUS_CHECKSUM);
    HWND box = FindWindowA(nullptr, "Open File Checksum");
    ASSERT_TRUE(IsWindowVisible(box));
    EXPECT_EQ(control_text(box, IDC_STATUS_TEXT), "Verifying Checksum");
    RECT bar{};
    GetClientRect(GetDlgItem(box, IDC_STATUS_BAR), &bar);
    EXPECT_EQ(filled_pixels(box, bar), 0);
    constexpr std::int64_t SIZE = 1'000'000'000'000; // past 32 bits
    const std::pair<std::int64_t, long> cases[] = {
        {-1, 1}, {0, 1}, {SIZE / 2, bar.right / 2 + 1}, {SIZE + 1, bar.right - 2}};
    for (const auto& [position, filled] : cases) {
        update_status_bar(status, position, SIZE);
        EXPECT_EQ(filled_pixels(box, bar), filled) << position;
    }
    update_status_bar(status, 5, 0);
    EXPECT_EQ(filled_pixels(box, bar), 0);
    close_status_box(status);
    EXPECT_FALSE(IsWindow(box));
}

TEST(IniFile, IsChosenByWhatCanBeWritten) {
    using enum INI_CHOICE;
    for (const bool in_windows : {false, true}) {
        EXPECT_EQ(choose_ini_file(false, true, in_windows), WINDOWS);
        EXPECT_EQ(choose_ini_file(false, false, in_windows),
                  in_windows ? COPY_TO_APPLICATION_DATA : APPLICATION_DATA);
        for (const bool windows_writable : {false, true})
            EXPECT_EQ(choose_ini_file(true, windows_writable, in_windows), APPLICATION_DATA);
    }
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

// The list of intervals is drawn by its owner.
TEST(RepetitiveEdits, NameTheirIntervals) {
    EXPECT_EQ(interval_text(1) + interval_text(2) + interval_text(3) + interval_text(4) + interval_text(21),
              "everyevery 2ndevery 3rdevery 4thevery 21th");
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    hInstance = GetModuleHandleA(nullptr);
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_WIN95_CLASSES};
    InitCommonControlsEx(&classes);
    return RUN_ALL_TESTS();
}
