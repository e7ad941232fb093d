// Communication Setup, the Send/Receive screen, their prompts, and the control block given to the port.
#include "app/desktop.h"
#include "app/dialogs.h"
#include "app/files.h"
#include "comm/PCOM.h"
#include "comm/PCOM_screens.h"
#include "comm/line_win32.h"
#include "comm/transfer_screen.h"
#include "resources/control.h"
#include "resources/define.h"
#include "tests/screens/drive_dialog.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

constexpr int FILE_TYPE_LIST = 0x470; // of the system's file dialogs
constexpr char RECEIVE_PROMPT[] = "Enter Filename To Receive";

// Runs one of the screens under a script that is given its window.
INT_PTR run_screen(int dialog, DLGPROC procedure, LPARAM parameter, const std::string& title,
                   const std::function<void(HWND)>& script) {
    INT_PTR result = -1;
    drive([&] { result = run_dialog(dialog, nullptr, procedure, parameter); },
          [&] { script(wait_for_window(title)); });
    return result;
}

INT_PTR run_setup(const std::function<void(HWND)>& script) {
    return run_screen(DLG_COMM_SETUP, SETUPPROC, 0, "Communication Setup", script);
}

struct COMM_SCREENS : testing::Test {
    void SetUp() override {
        comm_settings = {};
    }
};

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

// --- Communication Setup ---

TEST_F(COMM_SCREENS, SetupShowsAndStoresTheSettings) {
    const struct {
        COMM_SETTINGS given;
        const char* shown;
        COMM_SETTINGS stored; // by OK
    } cases[] = {
        {{3, 57600, 7, 2, 1, 0, 1, 99, 1, 1, 1, std::string(254, 'A')},
         "MODEM COM3 57600 7 2 Odd XON/XOFF NONE 99  INCREMENT PULSE ",
         {3, 57600, 7, 2, 1, 0, 1, 99, 1, 1, 1, ""}},
        {{0, 110, 5, 0, 7, 9, 0, 0, 9, 9, 9, std::string(300, 'A')},
         "MODEM COM1 300 7 1 Even NONE XMODEM 0  INCREMENT PULSE ",
         {1, 300, 7, 1, 2, 1, 0, 1, 1, 1, 1, ""}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.shown);
        comm_settings = c.given;
        std::string shown;
        const INT_PTR result = run_setup([&](HWND screen) {
            for (int control = IDC_COMM_INTERFACE; control <= IDC_COMM_DIALMETHOD; ++control)
                shown += control_text(screen, control) + ' ';
            EXPECT_EQ(control_text(screen, IDC_COMM_MODEM_INIT), c.given.modem_init);
            click(screen, IDOK);
        });
        EXPECT_EQ(result, 1);
        EXPECT_EQ(shown, c.shown);
        comm_settings = {};
        read_com_setup();
        EXPECT_EQ(std::memcmp(&comm_settings, &c.stored, offsetof(COMM_SETTINGS, modem_init)), 0);
        EXPECT_EQ(comm_settings.modem_init, c.given.modem_init.substr(0, MODEM_INIT_LIMIT));
    }
}

TEST_F(COMM_SCREENS, SetupStepsTheRetriesAndGoesBackToTheDefaults) {
    constexpr std::tuple<const char*, int, const char*> STEPS[] = {
        {"98", VK_UP, "99"}, {"99", VK_UP, "99"}, {"1", VK_DOWN, "1"}, {"1a2 -3", VK_DOWN, "122"}};
    comm_settings.port = 3;
    write_com_setup();
    const INT_PTR result = run_setup([&](HWND screen) {
        expect_good_looks(screen);
        while (focused_control(screen) != IDC_COMM_RETRIES)
            press_key(VK_TAB);
        for (const auto& [typed, key, shown] : STEPS) {
            set_control_text(screen, IDC_COMM_RETRIES, "");
            type_text(typed);
            press_key(key);
            EXPECT_EQ(control_text(screen, IDC_COMM_RETRIES), shown) << typed << ' ' << key;
        }
        for (const auto& [answer, shown] : {std::pair{IDNO, "COM3 122"}, {IDYES, "COM1 10"}}) {
            click(screen, IDC_COMM_DEFAULTS);
            EXPECT_EQ(answer_box("Communication Setup", answer), "? Reset to Default Settings?");
            settle();
            EXPECT_EQ(control_text(screen, IDC_COMM_PORT) + " " + control_text(screen, IDC_COMM_RETRIES),
                      shown);
        }
        press_key(VK_ESCAPE);
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(comm_settings.port, 1U) << "the record is reset in spite of Cancel";
    EXPECT_EQ(read_setting_number("COMM", "PORT", 0), 3U) << "the file is not";
}

// --- prompts ---

TEST_F(COMM_SCREENS, PhoneNumberPrompt) {
    std::string number = "555 123";
    for (const int key : {VK_ESCAPE, VK_RETURN}) {
        const auto script = [&](HWND prompt) {
            EXPECT_EQ(control_text(prompt, IDC_PHONE_NUMBER), "555 123");
            expect_good_looks(prompt);
            type_text(std::string(40, '7'));
            press_key(key);
        };
        run_screen(DLG_PHONE_NUMBER, PHONENUMPROC, reinterpret_cast<LPARAM>(&number), "Phone Number", script);
        EXPECT_EQ(number, key == VK_RETURN ? std::string(29, '7') : "555 123");
    }
}

TEST_F(COMM_SCREENS, StartingNumberPrompt) {
    for (const auto& [start, key, stored] : {std::tuple{0U, VK_DOWN, 0U}, {998U, VK_UP, 999U}}) {
        auto_receive_counter = start;
        run_screen(DLG_EXTENSION, EXTENSIONPROC, 0, "Extension Starting Number", [&](HWND prompt) {
            EXPECT_EQ(layout_faults(prompt), std::vector<std::string>());
            press_key(key);
            press_key(key);
            type_text("5"); // is refused: the arrows alone change the number
            close_window(prompt);
        });
        EXPECT_EQ(auto_receive_counter, stored) << start;
    }
}

// --- the Send/Receive screen ---

TEST_F(COMM_SCREENS, ReceiveShowsTheSettingsAndNamesTheFile) {
    constexpr std::tuple<const char*, int, const char*> CASES[] = {
        {"data.", 1, "data.DAT"},
        {"a.file & more", 1, "a.file & more"},
        {"old", 0, "old.TXT"}}; // which is there and asked about
    const std::string old_file = temporary_path("old.TXT");
    open_file(old_file, "wb");
    comm_settings = {.port = 4, .baudrate = 4000000000, .parity = EVEN_PARITY};
    run_screen(DLG_SEND_RECEIVE, SENDRECEIVEPROC, ACTION_RECEIVE, "Receive File", [&](HWND screen) {
        const auto shown_texts = [&] {
            std::string texts;
            for (int control = IDC_SR_INTERFACE; control <= IDC_SR_FILE; ++control)
                texts += control_text(screen, control) + ' ';
            for (int i = 0; i < COUNTER_COUNT; ++i)
                if (IsWindowVisible(GetDlgItem(screen, IDC_SR_VALUE + i)))
                    texts += control_text(screen, IDC_SR_LABEL + i);
            return texts;
        };
        answer_file_dialog(RECEIVE_PROMPT, "");
        wait_until([&] { return IsWindowEnabled(screen) != FALSE; }, "the file dialog's end");
        expect_good_looks(screen);
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(screen, IDOK)));
        EXPECT_EQ(shown_texts(),
                  "DIRECT 4000000000 E81 COM4 XMODEM APPEND  Block Count:Byte Count:Errors:Status:");
        choose_command(screen, CMD_SENDRECEIVE_SETUP);
        HWND setup = wait_for_window("Communication Setup");
        choose_entry(setup, IDC_COMM_PROTOCOL, PROTOCOL_NONE);
        click(setup, IDOK);
        EXPECT_EQ(shown_texts(), "DIRECT 300 E81 COM4 NONE APPEND  Byte Count:Status:");
        for (const auto& [typed, filter, shown] : CASES) {
            SCOPED_TRACE(typed);
            click(screen, IDC_SR_BROWSE);
            HWND dialog = wait_for_window(RECEIVE_PROMPT);
            SendDlgItemMessageA(dialog, FILE_TYPE_LIST, CB_SETCURSEL, static_cast<WPARAM>(filter), 0);
            SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(FILE_TYPE_LIST, CBN_SELENDOK), 0);
            answer_file_dialog(RECEIVE_PROMPT, temporary_path(typed));
            if (temporary_path(shown) == old_file) {
                EXPECT_EQ(answer_box(PROGRAM_TITLE, IDYES),
                          "! " + old_file + " already exists.\nDo you want to replace it?");
            }
            wait_until([&, name = shown] { return control_text(screen, IDC_SR_FILE) == name; }, shown);
        }
        close_window(screen);
    });
}

TEST_F(COMM_SCREENS, CancelIsSeenOnTheButtonOnly) {
    HWND screen = CreateDialogParamA(hInstance, MAKEINTRESOURCEA(DLG_SEND_RECEIVE), nullptr, SENDRECEIVEPROC,
                                     ACTION_SEND);
    MSG message;
    const auto drop_messages = [&] {
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
            continue;
    };
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
    ASSERT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT)) << "is for the loops further up";
    EXPECT_EQ(message.wParam, 5U);
    DestroyWindow(screen);
    show_counter(screen, COUNTER::STATUS, "User Abort"); // the rest of the transfer still speaks to it
}

} // namespace
