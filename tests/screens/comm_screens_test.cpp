// Communication Setup, the Send/Receive screen, their prompts, and the control block given to the port.
#include "app/command_line.h"
#include "app/desktop.h"
#include "app/dialogs.h"
#include "app/file_dialog.h"
#include "app/files.h"
#include "app/settings.h"
#include "comm/PCOM.h"
#include "comm/PCOM_screens.h"
#include "comm/line_win32.h"
#include "comm/transfer_screen.h"
#include "resources/control.h"
#include "resources/define.h"
#include "tests/screens/drive_dialog.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace {

using TEXTS = std::vector<std::string>;

constexpr std::uint32_t MISSING_PORT = 99;
constexpr int FILE_TYPE_LIST = 0x470; // of the system's file dialogs

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

// The Send/Receive screen with its first file dialog cancelled; the script's end closes it.
void run_send_receive(int action, const std::string& title, const std::string& file_dialog,
                      const std::function<void(HWND)>& script) {
    run_screen(DLG_SEND_RECEIVE, SENDRECEIVEPROC, action, title, [&](HWND screen) {
        answer_file_dialog(file_dialog, "");
        wait_until([&] { return IsWindowEnabled(screen) != FALSE; }, "the file dialog's end");
        script(screen);
        close_window(screen);
    });
}

std::string folder() {
    char path[MAX_PATH];
    GetTempPathA(sizeof path, path);
    return path;
}

std::string make_file(const std::string& name, std::size_t size) {
    const std::string path = folder() + name;
    const FILE_HANDLE file = open_file(path, "wb");
    std::fputs(std::string(size, 'x').c_str(), file.get());
    return path;
}

void step(HWND dialog, int updown, int direction) {
    NMUPDOWN notice{{GetDlgItem(dialog, updown), static_cast<UINT_PTR>(updown), UDN_DELTAPOS}, 0, direction};
    SendMessageA(dialog, WM_NOTIFY, notice.hdr.idFrom, reinterpret_cast<LPARAM>(&notice));
}

struct COMM_SCREENS : testing::Test {
    void SetUp() override {
        comm_settings = {};
        auto_receive_flag = false;
        quick_start_flag = false;
        send_directory = receive_directory = folder();
        write_com_setup();
    }
};

void expect_good_looks(HWND screen) {
    EXPECT_EQ(layout_faults(screen), TEXTS{});
    auto reached = tab_order(screen);
    auto stops = tab_stops(screen);
    std::sort(reached.begin(), reached.end());
    std::sort(stops.begin(), stops.end());
    EXPECT_EQ(reached, stops);
}

// --- the port ---

LINE_SETTINGS line_settings(const std::string& mode, bool cts, bool rts_handshake) {
    return {.device = mode.substr(0, mode.find(':')),
            .mode = mode,
            .baudrate = 57600,
            .xon_limit = 256,
            .xoff_limit = 256,
            .output_xon_xoff = false,
            .input_xon_xoff = false,
            .cts_output_flow = cts,
            .rts_handshake = rts_handshake,
            .write_limit = 2000};
}

TEST(LineWin32, FillsTheControlBlock) {
    struct CASE {
        const char* mode;
        bool cts;
        bool rts_handshake;
        BYTE parity, databits, stopbits;
    };
    const CASE cases[] = {
        {"COM1:9600,n,8,1", false, false, NOPARITY, 8, ONESTOPBIT},
        {"COM4:9600,o,7,1", true, true, ODDPARITY, 7, ONESTOPBIT},
        {"COM2:9600,e,7,2", true, true, EVENPARITY, 7, TWOSTOPBITS},
        {"COM99:9600,n,8,2", false, false, NOPARITY, 8, TWOSTOPBITS},
    };
    for (const CASE& c : cases) {
        SCOPED_TRACE(c.mode);
        DCB block;
        std::memset(&block, 0xEE, sizeof block);
        ASSERT_TRUE(fill_control_block(block, line_settings(c.mode, c.cts, c.rts_handshake)));
        EXPECT_EQ(block.DCBlength, sizeof block);
        EXPECT_EQ(block.BaudRate, 57600U);
        EXPECT_EQ(block.Parity, c.parity);
        EXPECT_EQ(block.ByteSize, c.databits);
        EXPECT_EQ(block.StopBits, c.stopbits);
        EXPECT_EQ(block.XonLim, 256);
        EXPECT_EQ(block.XoffLim, 256);
        EXPECT_EQ(block.XonChar, 0x11);
        EXPECT_EQ(block.XoffChar, 0x13);
        EXPECT_TRUE(block.fBinary);
        EXPECT_FALSE(block.fOutX);
        EXPECT_FALSE(block.fInX);
        EXPECT_EQ(block.fOutxCtsFlow, c.cts ? 1U : 0U);
        EXPECT_EQ(block.fRtsControl,
                  static_cast<DWORD>(c.rts_handshake ? RTS_CONTROL_HANDSHAKE : RTS_CONTROL_ENABLE));
        EXPECT_FALSE(block.fOutxDsrFlow);
    }
    DCB block;
    EXPECT_FALSE(fill_control_block(block, line_settings("COM1:9600,n,zz,1", false, false)));
}

TEST(LineWin32, SaysThatAPortIsMissing) {
    const OPENED_LINE opened = open_line(line_settings("COM99:9600,n,8,1", false, false));
    EXPECT_EQ(opened.result, LINE_OPENING::NO_PORT);
    EXPECT_EQ(opened.line, nullptr);
}

// --- Communication Setup ---

// The settings but the modem's initialisation, in the order of the record.
constexpr std::uint32_t COMM_SETTINGS::*NUMBERS[] = {
    &COMM_SETTINGS::port,         &COMM_SETTINGS::baudrate,       &COMM_SETTINGS::databits,
    &COMM_SETTINGS::stopbits,     &COMM_SETTINGS::parity,         &COMM_SETTINGS::protocol,
    &COMM_SETTINGS::flow_control, &COMM_SETTINGS::xmodem_retries, &COMM_SETTINGS::interface_mode,
    &COMM_SETTINGS::filemode,     &COMM_SETTINGS::dialmethod};
using NUMBER_VALUES = std::array<std::uint32_t, std::size(NUMBERS)>;

NUMBER_VALUES number_values() {
    NUMBER_VALUES values;
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = comm_settings.*NUMBERS[i];
    return values;
}

TEST_F(COMM_SCREENS, SetupShowsAndStoresTheSettings) {
    constexpr int CONTROLS[] = {IDC_COMM_PORT,      IDC_COMM_BAUDRATE, IDC_COMM_DATABITS,  IDC_COMM_STOPBITS,
                                IDC_COMM_PARITY,    IDC_COMM_PROTOCOL, IDC_COMM_FLOW,      IDC_COMM_RETRIES,
                                IDC_COMM_INTERFACE, IDC_COMM_FILEMODE, IDC_COMM_DIALMETHOD};
    const struct {
        NUMBER_VALUES given;
        std::size_t init_length;
        NUMBER_VALUES shown;  // entries of the lists; the retries as they are
        NUMBER_VALUES stored; // by OK
    } cases[] = {
        {{1, 9600, 8, 1, 0, 1, 2, 10, 0, 0, 0},
         8,
         {0, 5, 1, 0, 0, 1, 2, 10, 0, 0, 0},
         {1, 9600, 8, 1, 0, 1, 2, 10, 0, 0, 0}},
        {{4, 57600, 7, 2, 2, 0, 1, 99, 1, 1, 1},
         254,
         {3, 9, 0, 1, 2, 0, 1, 99, 1, 1, 1},
         {4, 57600, 7, 2, 2, 0, 1, 99, 1, 1, 1}},
        {{0, 110, 5, 0, 7, 9, 9, 0, 9, 9, 9},
         300,
         {0, 0, 0, 0, 2, 1, 2, 0, 1, 1, 1},
         {1, 300, 7, 1, 2, 1, 2, 1, 1, 1, 1}},
        {{77, 56000, 4000000000, 3, 3, 2, 3, 150, 2, 2, 2},
         0,
         {3, 0, 1, 1, 2, 1, 2, 150, 1, 1, 1},
         {4, 300, 8, 2, 2, 1, 2, 150, 1, 1, 1}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.given[0]);
        for (std::size_t i = 0; i < c.given.size(); ++i)
            comm_settings.*NUMBERS[i] = c.given[i];
        comm_settings.modem_init.assign(c.init_length, 'A');
        const INT_PTR result = run_setup([&](HWND screen) {
            NUMBER_VALUES shown;
            for (std::size_t i = 0; i < shown.size(); ++i)
                shown[i] = CONTROLS[i] == IDC_COMM_RETRIES
                               ? edit_number(screen, CONTROLS[i])
                               : static_cast<unsigned>(chosen_entry(screen, CONTROLS[i]));
            EXPECT_EQ(shown, c.shown);
            EXPECT_EQ(control_text(screen, IDC_COMM_MODEM_INIT).size(), c.init_length);
            click(screen, IDOK);
        });
        EXPECT_EQ(result, 1);
        EXPECT_EQ(number_values(), c.stored);
        EXPECT_EQ(comm_settings.modem_init.size(), std::min<std::size_t>(c.init_length, 254));
        comm_settings = {};
        read_com_setup();
        EXPECT_EQ(number_values(), c.stored) << "in the INI file";
    }
}

TEST_F(COMM_SCREENS, SetupListsItsEntries) {
    run_setup([](HWND screen) {
        EXPECT_EQ(list_entries(screen, IDC_COMM_PORT), (TEXTS{"COM1", "COM2", "COM3", "COM4"}));
        EXPECT_EQ(list_entries(screen, IDC_COMM_BAUDRATE),
                  (TEXTS{"300", "600", "1200", "2400", "4800", "9600", "14400", "19200", "38400", "57600"}));
        EXPECT_EQ(list_entries(screen, IDC_COMM_PARITY), (TEXTS{"None", "Odd", "Even"}));
        EXPECT_EQ(list_entries(screen, IDC_COMM_FLOW), (TEXTS{"NONE", "XON/XOFF", "RTS/CTS"}));
        expect_good_looks(screen);
        close_window(screen);
    });
}

TEST_F(COMM_SCREENS, SetupStepsTheRetries) {
    run_setup([](HWND screen) {
        const struct {
            const char* typed;
            int direction;
            const char* shown;
        } cases[] = {
            {"10", 1, "11"}, {"98", 1, "99"}, {"99", 1, "99"}, {"150", 1, "150"}, {"150", -1, "149"},
            {"2", -1, "1"},  {"1", -1, "1"},  {"0", -1, "0"},  {"", 1, "1"},      {"", -1, ""},
        };
        for (const auto& c : cases) {
            enter_text(screen, IDC_COMM_RETRIES, c.typed);
            step(screen, IDC_COMM_RETRIES_SPIN, c.direction);
            EXPECT_EQ(control_text(screen, IDC_COMM_RETRIES), c.shown) << c.typed << ' ' << c.direction;
        }
        enter_text(screen, IDC_COMM_RETRIES, "");
        move_focus(screen, IDC_COMM_RETRIES);
        type_text("1a2 -3\b4");
        EXPECT_EQ(control_text(screen, IDC_COMM_RETRIES), "124");
        press_key(VK_UP);
        press_key(VK_DOWN);
        press_key(VK_DOWN);
        EXPECT_EQ(control_text(screen, IDC_COMM_RETRIES), "122")
            << "the arrow keys beep at 124 and then step down";
        EXPECT_EQ(SendDlgItemMessageA(screen, IDC_COMM_RETRIES, EM_GETLIMITTEXT, 0, 0), 251);
        enter_text(screen, IDC_COMM_RETRIES, "99999999999");
        click(screen, IDOK);
    });
    EXPECT_EQ(comm_settings.xmodem_retries, 1U) << "no number";
}

TEST_F(COMM_SCREENS, SetupDefaultsAndCancel) {
    comm_settings.port = 3;
    write_com_setup();
    const SEEN_BOX QUESTION{"Communication Setup", "Reset to Default Settings?", LOWORD(IDI_QUESTION)};
    const INT_PTR result = run_setup([&](HWND screen) {
        choose_entry(screen, IDC_COMM_PORT, 1);
        click(screen, IDC_COMM_DEFAULTS);
        EXPECT_EQ(answer_box(QUESTION.caption, IDNO), QUESTION);
        EXPECT_EQ(chosen_entry(screen, IDC_COMM_PORT), 1) << "what was chosen stays";
        click(screen, IDC_COMM_DEFAULTS);
        EXPECT_EQ(answer_box(QUESTION.caption, IDYES), QUESTION);
        settle();
        EXPECT_EQ(chosen_entry(screen, IDC_COMM_PORT), 0);
        press_key(VK_ESCAPE);
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(comm_settings.port, 1U) << "the record is reset in spite of Cancel";
    EXPECT_EQ(read_setting_number("COMM", "PORT", 0), 3U) << "the file is not";
}

// --- prompts ---

TEST_F(COMM_SCREENS, PhoneNumberPrompt) {
    std::string number = "555 123";
    const auto run = [&](const std::function<void(HWND)>& script) {
        return run_screen(DLG_PHONE_NUMBER, PHONENUMPROC, reinterpret_cast<LPARAM>(&number), "Phone Number",
                          script);
    };
    EXPECT_EQ(run([](HWND prompt) {
                  EXPECT_EQ(control_text(prompt, IDC_PHONE_NUMBER), "555 123");
                  EXPECT_EQ(focused_control(prompt), IDC_PHONE_NUMBER);
                  expect_good_looks(prompt);
                  enter_text(prompt, IDC_PHONE_NUMBER, "1");
                  close_window(prompt);
              }),
              0);
    EXPECT_EQ(number, "555 123");
    EXPECT_EQ(run([](HWND prompt) {
                  enter_text(prompt, IDC_PHONE_NUMBER, std::string(40, '7'));
                  press_key(VK_RETURN);
              }),
              1);
    EXPECT_EQ(number, std::string(29, '7'));
}

TEST_F(COMM_SCREENS, StartingNumberPrompt) {
    const struct {
        std::uint32_t start;
        int direction, steps;
        std::uint32_t stored;
        bool by_ok;
    } cases[] = {{0, 0, 0, 0, true},   {0, -1, 1, 0, true},     {0, 1, 7, 7, false},
                 {7, -1, 10, 1, true}, {998, 1, 3, 999, false}, {500, -1, 1, 499, true}};
    for (const auto& c : cases) {
        auto_receive_counter = c.start;
        run_screen(DLG_EXTENSION, EXTENSIONPROC, 0, "Extension Starting Number", [&](HWND prompt) {
            EXPECT_EQ(control_text(prompt, IDC_EXTENSION), std::to_string(c.start));
            EXPECT_EQ(focused_control(prompt), IDC_EXTENSION);
            EXPECT_EQ(layout_faults(prompt), TEXTS{});
            for (int i = 0; i < c.steps; ++i)
                press_key(c.direction > 0 ? VK_UP : VK_DOWN);
            type_text("5");
            if (c.by_ok)
                click(prompt, IDOK);
            else
                close_window(prompt);
        });
        EXPECT_EQ(auto_receive_counter, c.stored) << c.start;
    }
}

// --- the Send/Receive screen ---

TEXTS visible_labels(HWND screen) {
    TEXTS labels;
    for (int i = 0; i < COUNTER_COUNT; ++i)
        if (IsWindowVisible(GetDlgItem(screen, IDC_SR_LABEL + i)) &&
            IsWindowVisible(GetDlgItem(screen, IDC_SR_VALUE + i)))
            labels.push_back(control_text(screen, IDC_SR_LABEL + i));
    return labels;
}

TEST_F(COMM_SCREENS, CountersByActionAndProtocol) {
    const struct {
        int action;
        bool automatic;
        std::uint32_t protocol, other_protocol;
        const char *title, *file_dialog, *button;
        TEXTS labels, other_labels;
    } cases[] = {
        {ACTION_SEND,
         false,
         PROTOCOL_XMODEM,
         PROTOCOL_NONE,
         "Send File",
         "Enter Filename To Send",
         "Send",
         {"Filesize:", "Blocks:", "Blocks Sent:", "Bytes Sent:", "Errors:", "Status:"},
         {"Filesize:", "Bytes Sent:", "Status:"}},
        {ACTION_RECEIVE,
         false,
         PROTOCOL_XMODEM,
         PROTOCOL_NONE,
         "Receive File",
         "Enter Filename To Receive",
         "Receive",
         {"Block Count:", "Byte Count:", "Errors:", "Status:"},
         {"Byte Count:", "Status:"}},
        {ACTION_RECEIVE,
         true,
         PROTOCOL_NONE,
         PROTOCOL_XMODEM,
         "Auto Receive File",
         "Enter Filename To Receive",
         "Receive",
         {"Byte Count:", "Status:"},
         {"Block Count:", "Byte Count:", "Errors:", "Status:"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.title);
        comm_settings = {.port = 4, .baudrate = 4000000000, .parity = EVEN_PARITY, .filemode = FILE_APPEND};
        comm_settings.protocol = c.protocol;
        auto_receive_flag = c.automatic;
        run_send_receive(c.action, c.title, c.file_dialog, [&](HWND screen) {
            EXPECT_EQ(visible_labels(screen), c.labels);
            EXPECT_EQ(control_text(screen, IDOK), c.button);
            EXPECT_FALSE(IsWindowEnabled(GetDlgItem(screen, IDOK)));
            for (const auto& [control, text] :
                 std::initializer_list<std::pair<int, const char*>>{{IDC_SR_INTERFACE, "DIRECT"},
                                                                    {IDC_SR_BAUDRATE, "4000000000"},
                                                                    {IDC_SR_LINE, "E81"},
                                                                    {IDC_SR_PORT, "COM4"},
                                                                    {IDC_SR_FILEMODE, "APPEND"},
                                                                    {IDC_SR_FILE, ""}})
                EXPECT_EQ(control_text(screen, control), text);
            expect_good_looks(screen);
            choose_command(screen, CMD_SENDRECEIVE_SETUP);
            HWND setup = wait_for_window("Communication Setup");
            choose_entry(setup, IDC_COMM_PROTOCOL, static_cast<int>(c.other_protocol));
            choose_entry(setup, IDC_COMM_FILEMODE, FILE_INCREMENT);
            click(setup, IDOK);
            EXPECT_EQ(visible_labels(screen), c.other_labels);
            EXPECT_EQ(control_text(screen, IDC_SR_FILEMODE), "INCREMENT");
        });
    }
}

TEST_F(COMM_SCREENS, SendShowsTheChosenFile) {
    const struct {
        std::size_t size;
        const char* blocks;
    } cases[] = {{0, "0"}, {1, "1"}, {128, "1"}, {129, "2"}, {300, "3"}};
    run_send_receive(ACTION_SEND, "Send File", "Enter Filename To Send", [&](HWND screen) {
        for (const auto& c : cases) {
            const std::string path = make_file("a file & more.dat", c.size);
            show_counter(screen, COUNTER::STATUS, "Completed");
            click(screen, IDC_SR_BROWSE);
            answer_file_dialog("Enter Filename To Send", path);
            wait_until([&] { return focused_control(screen) == IDOK; }, "the focus on Send");
            EXPECT_EQ(control_text(screen, IDC_SR_FILE), "a file & more.dat");
            EXPECT_EQ(control_text(screen, IDC_SR_VALUE), std::to_string(c.size));
            EXPECT_EQ(control_text(screen, IDC_SR_VALUE + 1), c.blocks);
            EXPECT_EQ(control_text(screen, IDC_SR_VALUE + 5), "");
        }
    });
    EXPECT_EQ(send_directory, folder());
}

TEST_F(COMM_SCREENS, ReceiveNamesTheFile) {
    constexpr int TXT_FILTER = 0;
    constexpr int DAT_FILTER = 1;
    const struct {
        const char* typed;
        int filter;
        const char* shown;
        int answer; // to the question about the name with its extension; 0 when nothing is asked
    } cases[] = {
        {"data", DAT_FILTER, "data.DAT", 0},   {"data.", DAT_FILTER, "data.DAT", 0},
        {"data", TXT_FILTER, "data.TXT", 0},   {"my.file", DAT_FILTER, "my.file", 0},
        {"old", DAT_FILTER, "old.DAT", IDYES},
    };
    const auto question = [](const std::string& path) {
        return SEEN_BOX{PROGRAM_TITLE, path + " already exists.\nDo you want to replace it?",
                        LOWORD(IDI_WARNING)};
    };
    make_file("old.DAT", 1);
    run_send_receive(ACTION_RECEIVE, "Receive File", "Enter Filename To Receive", [&](HWND screen) {
        for (const auto& c : cases) {
            SCOPED_TRACE(c.typed);
            click(screen, IDC_SR_BROWSE);
            HWND dialog = wait_for_window("Enter Filename To Receive");
            SendDlgItemMessageA(dialog, FILE_TYPE_LIST, CB_SETCURSEL, static_cast<WPARAM>(c.filter), 0);
            SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(FILE_TYPE_LIST, CBN_SELENDOK), 0);
            answer_file_dialog("Enter Filename To Receive", folder() + c.typed);
            if (c.answer != 0) {
                EXPECT_EQ(answer_box(PROGRAM_TITLE, c.answer), question(folder() + c.shown));
            }
            wait_until([&] { return control_text(screen, IDC_SR_FILE) == c.shown; }, c.shown);
            EXPECT_EQ(focused_control(screen), IDOK);
        }
    });
}

TEST_F(COMM_SCREENS, IncrementAsksForTheStartingNumber) {
    comm_settings.filemode = FILE_INCREMENT;
    auto_receive_flag = true;
    const std::string title = "Enter Filename Without Extension To Receive";
    make_file("COUNT", 1); // exists, but is not the name of a file to be received
    run_send_receive(ACTION_RECEIVE, "Auto Receive File", title, [&](HWND screen) {
        click(screen, IDC_SR_BROWSE);
        answer_file_dialog(title, folder() + "COUNT");
        HWND prompt = wait_for_window("Extension Starting Number");
        press_key(VK_UP);
        press_key(VK_UP);
        click(prompt, IDOK);
        wait_until([&] { return control_text(screen, IDC_SR_FILE) == "COUNT.002"; }, "COUNT.002");
    });
}

// A transfer that stops at once, in its message: the screen while it runs, and after.
TEST_F(COMM_SCREENS, TransferLocksTheScreen) {
    comm_settings.port = MISSING_PORT;
    const SEEN_BOX NO_PORT{"Tolvan Programmer", "Error Opening Com Port.", LOWORD(IDI_ERROR)};
    run_send_receive(ACTION_SEND, "Send File", "Enter Filename To Send", [&](HWND screen) {
        click(screen, IDC_SR_BROWSE);
        answer_file_dialog("Enter Filename To Send", make_file("send.dat", 300));
        wait_until([&] { return focused_control(screen) == IDOK; }, "the focus on Send");
        press_key(VK_RETURN);
        wait_for_window(NO_PORT.caption);
        EXPECT_TRUE(is_transfer_running());
        for (const int control : {IDCANCEL, IDC_SR_BROWSE})
            EXPECT_FALSE(IsWindowEnabled(GetDlgItem(screen, control)));
        EXPECT_TRUE(GetMenuState(GetMenu(screen), CMD_SENDRECEIVE_SETUP, MF_BYCOMMAND) & MF_GRAYED);
        PostMessageA(screen, WM_CLOSE, 0, 0);
        PostMessageA(screen, WM_COMMAND, IDCANCEL, 0);
        PostMessageA(screen, WM_COMMAND, CMD_SENDRECEIVE_SETUP, 0);
        EXPECT_EQ(answer_box(NO_PORT.caption, IDOK), NO_PORT);
        settle();
        EXPECT_TRUE(IsWindowVisible(screen));
        EXPECT_FALSE(is_transfer_running());
        for (const int control : {IDOK, IDCANCEL, IDC_SR_BROWSE})
            EXPECT_TRUE(IsWindowEnabled(GetDlgItem(screen, control)));
        EXPECT_FALSE(GetMenuState(GetMenu(screen), CMD_SENDRECEIVE_SETUP, MF_BYCOMMAND) & MF_GRAYED);
        EXPECT_EQ(focused_control(screen), IDOK);
    });
}

TEST_F(COMM_SCREENS, QuickStartRunsOnceAndCloses) {
    comm_settings.port = MISSING_PORT;
    quick_start_flag = true;
    command_line_string = "C:\\somewhere\\prog.pgt";
    run_screen(DLG_SEND_RECEIVE, SENDRECEIVEPROC, ACTION_SEND, "Send File", [](HWND screen) {
        wait_for_window("Tolvan Programmer");
        EXPECT_TRUE(IsWindowVisible(screen));
        EXPECT_EQ(control_text(screen, IDC_SR_FILE), "prog.pgt");
        answer_box("Tolvan Programmer", IDOK);
        wait_until_closed(screen);
    });
    EXPECT_FALSE(quick_start_flag);
}

TEST_F(COMM_SCREENS, CancelIsSeenOnTheButtonOnly) {
    HWND screen = CreateDialogParamA(hInstance, MAKEINTRESOURCEA(DLG_SEND_RECEIVE), nullptr, SENDRECEIVEPROC,
                                     ACTION_SEND);
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) // with it the screen's first file dialog
        ;
    HWND button = GetDlgItem(screen, IDOK);
    HWND browse = GetDlgItem(screen, IDC_SR_BROWSE);
    const struct {
        HWND target;
        UINT message;
        WPARAM wParam;
        bool cancels;
    } cases[] = {{button, WM_LBUTTONDOWN, 0, true},   {button, WM_LBUTTONUP, 0, false},
                 {browse, WM_LBUTTONDOWN, 0, false},  {button, WM_CHAR, 13, true},
                 {button, WM_CHAR, ' ', false},       {browse, WM_CHAR, 13, false},
                 {button, WM_KEYUP, VK_SPACE, true},  {button, WM_KEYUP, 'A', false},
                 {screen, WM_KEYUP, VK_SPACE, false}, {button, WM_KEYDOWN, VK_ESCAPE, false}};
    for (const auto& c : cases) {
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
            ;
        PostMessageA(c.target, c.message, c.wParam, 0);
        EXPECT_EQ(is_cancel_button_pressed(screen), c.cancels) << c.message << ' ' << c.wParam;
        ReleaseCapture();
    }
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        ;
    EXPECT_FALSE(is_cancel_button_pressed(screen));
    PostQuitMessage(5);
    EXPECT_TRUE(is_cancel_button_pressed(screen));
    EXPECT_TRUE(is_cancel_button_pressed(screen)) << "it stays cancelled";
    ASSERT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, 5U);
    DestroyWindow(screen);
    EXPECT_TRUE(is_cancel_button_pressed(screen));
    show_counter(screen, COUNTER::STATUS, "User Abort"); // the rest of the transfer still speaks to it
    show_transfer_button(screen, "Send");
}

} // namespace
