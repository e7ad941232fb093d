// The Send/Receive screen, which is the Upgrade Flash screen too, and what a running transfer asks of it.
#include "comm/PCOM_screens.h"

#include "app/command_line.h"
#include "app/desktop.h"
#include "app/dialogs.h"
#include "app/file_dialog.h"
#include "app/files.h"
#include "app/paths.h"
#include "app/settings.h"
#include "comm/PCOM.h"
#include "comm/PCOM_local.h"
#include "comm/transfer_screen.h"
#include "resources/control.h"
#include "resources/define.h"

#include <array>
#include <optional>
#include <utility>

namespace {

constexpr UINT WM_SCREEN_SHOWN = WM_APP; // posted by the screen to itself, to begin once it can be seen
constexpr WPARAM ENTER_CHARACTER = 13;

struct COUNTER_ROW {
    COUNTER counter;
    const char* label;
};
constexpr COUNTER_ROW SEND_XMODEM_ROWS[] = {
    {COUNTER::FILESIZE, "Filesize:"},       {COUNTER::BLOCKS, "Blocks:"},
    {COUNTER::BLOCKS_DONE, "Blocks Sent:"}, {COUNTER::BYTES_DONE, "Bytes Sent:"},
    {COUNTER::ERRORS, "Errors:"},           {COUNTER::STATUS, "Status:"},
};
constexpr COUNTER_ROW SEND_ASCII_ROWS[] = {
    {COUNTER::FILESIZE, "Filesize:"},
    {COUNTER::BYTES_DONE, "Bytes Sent:"},
    {COUNTER::STATUS, "Status:"},
};
constexpr COUNTER_ROW RECEIVE_XMODEM_ROWS[] = {
    {COUNTER::BLOCKS_DONE, "Block Count:"},
    {COUNTER::BYTES_DONE, "Byte Count:"},
    {COUNTER::ERRORS, "Errors:"},
    {COUNTER::STATUS, "Status:"},
};
constexpr COUNTER_ROW RECEIVE_ASCII_ROWS[] = {
    {COUNTER::BYTES_DONE, "Byte Count:"},
    {COUNTER::STATUS, "Status:"},
};

constexpr FILE_FILTER SEND_FILTERS[] = {
    {"Tolvan Files(*.PGT;*.LKT;*.CFT;*.LBT;*.DAT;*.TXT)", "*.pgt;*.lkt;*.cft;*.lbt;*.dat;*.txt"},
    {"Program Files(*.PGT)", "*.pgt"},
    {"Lookup Files(*.LKT)", "*.lkt"},
    {"Setup Files(*.CFT)", "*.cft"},
    {"Library Files(*.LBT)", "*.lbt"},
    {"Data Files(*.DAT)", "*.dat"},
    {"Ascii Files(*.TXT)", "*.txt"},
    {"All Files(*.*)", "*.*"},
};
constexpr FILE_FILTER UPGRADE_FILTERS[] = {{"Flash Upgrade Files(*.UPG)", "*.upg"}};
constexpr FILE_FILTER RECEIVE_FILTERS[] = {
    {"Ascii Files(*.TXT)", "*.txt"},  {"Data Files(*.DAT)", "*.dat"},  {"Program Files(*.PGT)", "*.pgt"},
    {"Lookup Files(*.LKT)", "*.lkt"}, {"Setup Files(*.CFT)", "*.cft"}, {"Library Files(*.LBT)", "*.lbt"},
};
constexpr const char* RECEIVE_EXTENSIONS[] = {".TXT", ".DAT", ".PGT", ".LKT", ".CFT", ".LBT"}; // by filter
constexpr FILE_FILTER INCREMENT_FILTERS[] = {{"Increment File Name(*.)", "*."}};

// What the actions of the screen differ in.
struct SCREEN_ACTION {
    const char* title;
    const char* button;
    std::span<const COUNTER_ROW> xmodem_rows, plain_rows;
    std::size_t block_size; // bytes, of the file to send; 0: there is none yet
    bool uses_setup;        // the operator may change the settings
    void (*browse)(HWND screen);
    void (*transfer)(WINDOW screen, const std::string& path);
};

// The screen is modal, so there is one at most. Its record outlives the window: a transfer still on the stack
// may ask for it when the window is gone.
struct SENDRECEIVE_SCREEN {
    const SCREEN_ACTION* action;
    bool transferring;
    bool end_requested; // by the main window or by the system: the transfer and the screen are to end
    std::string path;
    std::array<std::string, COUNTER_COUNT> counters; // the texts shown, or kept for a layout that shows them
};
SENDRECEIVE_SCREEN current;

// Kept while an upgrade's settings are in force, to be put back at the screen's end.
std::optional<COMM_SETTINGS> operators_settings;

// --- what the screen shows ---

std::string& counter_text(COUNTER counter) {
    return current.counters[static_cast<std::size_t>(counter)];
}

std::span<const COUNTER_ROW> counter_rows() {
    const bool xmodem = comm_settings.protocol == PROTOCOL_XMODEM;
    return xmodem ? current.action->xmodem_rows : current.action->plain_rows;
}

// Lays out the counters for the action and the protocol in use; the rows left over are hidden.
void initialize_sendreceive_dialog(HWND screen) {
    const auto rows = counter_rows();
    for (int i = 0; i < COUNTER_COUNT; ++i) {
        const auto row = static_cast<std::size_t>(i);
        const bool used = row < rows.size();
        set_control_text(screen, IDC_SR_LABEL + i, used ? rows[row].label : "");
        set_control_text(screen, IDC_SR_VALUE + i, used ? counter_text(rows[row].counter) : "");
        ShowWindow(GetDlgItem(screen, IDC_SR_LABEL + i), used ? SW_SHOW : SW_HIDE);
        ShowWindow(GetDlgItem(screen, IDC_SR_VALUE + i), used ? SW_SHOW : SW_HIDE);
    }
}

void update_sendreceive_status(HWND screen) {
    const SETTINGS_SUMMARY summary = summarize_settings(comm_settings);
    set_control_text(screen, IDC_SR_INTERFACE, summary.interface_mode);
    set_control_text(screen, IDC_SR_BAUDRATE, summary.baudrate);
    set_control_text(screen, IDC_SR_LINE, summary.line);
    set_control_text(screen, IDC_SR_PORT, summary.port);
    set_control_text(screen, IDC_SR_PROTOCOL, summary.protocol);
    set_control_text(screen, IDC_SR_FILEMODE, summary.filemode);
}

// --- the choice of a file ---

void show_file_size(HWND screen) {
    const FILE_HANDLE file = open_file(current.path, "rb");
    const std::int64_t size = file ? file_length(file.get()) : -1;
    if (size < 0)
        return;
    show_counter(screen, COUNTER::FILESIZE, std::to_string(size));
    const auto blocks = xmodem_blocks(static_cast<std::uint64_t>(size), current.action->block_size);
    show_counter(screen, COUNTER::BLOCKS, std::to_string(blocks));
}

void take_file(HWND screen, const std::string& path, const std::string& shown_name) {
    current.path = path;
    for (int i = 0; i < COUNTER_COUNT; ++i)
        show_counter(screen, static_cast<COUNTER>(i), "");
    show_transfer_file(screen, shown_name);
    if (current.action->block_size != 0)
        show_file_size(screen);
    EnableWindow(GetDlgItem(screen, IDOK), TRUE);
    move_focus(screen, IDOK);
}

FILE_DIALOG send_dialog(HWND screen, std::span<const FILE_FILTER> filters, std::string& directory) {
    return {.owner = screen, .filters = filters, .title = "Enter Filename To Send", .directory = &directory};
}

void browse_send(HWND screen) {
    FILE_DIALOG dialog = send_dialog(screen, SEND_FILTERS, send_directory);
    if (ask_open_name(dialog))
        take_file(screen, dialog.name, path_file_title(dialog.name));
}

// A damaged file must never reach the portable, which would be left without a program.
bool is_verified(WINDOW screen, const std::string& path) {
    if (isflash_file(path))
        return true;
    show_comm_error("Invalid Upgrade File");
    show_counter(screen, COUNTER::STATUS, "Flash Error");
    return false;
}

void browse_upgrade(HWND screen) {
    FILE_DIALOG dialog = send_dialog(screen, UPGRADE_FILTERS, upgrade_directory);
    if (!ask_open_name(dialog))
        return;
    show_counter(screen, COUNTER::STATUS, "Verifying...");
    if (!is_verified(screen, dialog.name))
        return;
    take_file(screen, dialog.name, path_file_title(dialog.name));
    show_counter(screen, COUNTER::STATUS, "File OK");
}

// The chosen name with the extension of the chosen filter, unless it brings one of its own.
std::string with_filter_extension(const FILE_DIALOG& chosen) {
    if (path_extension(chosen.name).size() > 1 || chosen.filter_index < 1 ||
        chosen.filter_index > std::size(RECEIVE_EXTENSIONS))
        return chosen.name;
    std::string name = chosen.name;
    while (name.ends_with('.'))
        name.pop_back();
    return name + RECEIVE_EXTENSIONS[chosen.filter_index - 1];
}

void browse_receive_one(HWND screen) {
    FILE_DIALOG dialog{.owner = screen,
                       .filters = RECEIVE_FILTERS,
                       .title = "Enter Filename To Receive",
                       .directory = &receive_directory};
    if (ask_save_name(dialog, with_filter_extension))
        take_file(screen, dialog.name, path_file_title(dialog.name));
}

void browse_increment(HWND screen) {
    FILE_DIALOG dialog{.owner = screen,
                       .filters = INCREMENT_FILTERS,
                       .title = "Enter Filename Without Extension To Receive",
                       .directory = &receive_directory,
                       .asks_to_replace = false}; // the files are numbered, none is called by this name
    if (!ask_save_name(dialog, ""))
        return;
    run_dialog(DLG_EXTENSION, screen, EXTENSIONPROC);
    take_file(screen, dialog.name, path_base_name(dialog.name) + increment_extension(auto_receive_counter));
}

void browse_receive(HWND screen) {
    if (is_increment())
        browse_increment(screen);
    else
        browse_receive_one(screen);
}

// --- the transfer ---

// The file may have changed since it was chosen.
void send_upgrade(WINDOW screen, const std::string& path) {
    if (is_verified(screen, path))
        upgrade_flash(screen, path);
}

// By TRANSFER_ACTION.
constexpr SCREEN_ACTION ACTIONS[] = {
    {"Upgrade Flash", "Send", SEND_XMODEM_ROWS, {}, FLASH_BLOCK_SIZE, false, browse_upgrade, send_upgrade},
    {"Send File", "Send", SEND_XMODEM_ROWS, SEND_ASCII_ROWS, XMODEM_BLOCK_SIZE, true, browse_send, send_file},
    {"Receive File", "Receive", RECEIVE_XMODEM_ROWS, RECEIVE_ASCII_ROWS, 0, true, browse_receive,
     receive_file},
};

void enable_commands(HWND screen, bool enabled) {
    EnableWindow(GetDlgItem(screen, IDCANCEL), enabled);
    EnableWindow(GetDlgItem(screen, IDC_SR_BROWSE), enabled);
    EnableMenuItem(GetMenu(screen), CMD_SENDRECEIVE_SETUP,
                   enabled && current.action->uses_setup ? MF_ENABLED : MF_GRAYED);
    DrawMenuBar(screen);
}

void run_transfer(HWND screen) {
    if (current.path.empty())
        return;
    const bool quick_start = quick_start_flag;
    quick_start_flag = false;
    current.transferring = true;
    move_focus(screen, IDOK); // before the control that has the focus is disabled
    enable_commands(screen, false);
    current.action->transfer(screen, current.path);
    enable_commands(screen, true);
    current.transferring = false;
    if (quick_start || current.end_requested)
        EndDialog(screen, 0);
}

// --- the screen's messages ---

void open_screen(HWND screen, int action) {
    current = {};
    current.action = &ACTIONS[action];
    auto_receive_counter = 0;
    center_window(screen);
    SetWindowTextA(screen, action == ACTION_RECEIVE && auto_receive_flag ? "Auto Receive File"
                                                                         : current.action->title);
    set_control_text(screen, IDOK, current.action->button);
    enable_commands(screen, true);
    EnableWindow(GetDlgItem(screen, IDOK), quick_start_flag);
    update_sendreceive_status(screen);
    show_transfer_file(screen, "");
    initialize_sendreceive_dialog(screen);
    PostMessageA(screen, WM_SCREEN_SHOWN, 0, 0);
}

void show_screen(HWND screen) {
    ShowWindow(screen, SW_SHOW);
    UpdateWindow(screen);
}

void begin(HWND screen) {
    show_screen(screen);
    if (!quick_start_flag) {
        current.action->browse(screen);
        return;
    }
    take_file(screen, command_line_string, path_file_title(command_line_string));
    run_transfer(screen);
}

void change_setup(HWND screen) {
    if (run_dialog(DLG_COMM_SETUP, screen, SETUPPROC) != 1)
        return;
    update_sendreceive_status(screen);
    initialize_sendreceive_dialog(screen);
}

void do_command(HWND screen, int command) {
    if (current.transferring)
        return; // the button's presses are seen by is_cancel_button_pressed
    switch (command) {
    case IDOK:
        run_transfer(screen);
        break;
    case IDCANCEL:
        EndDialog(screen, 0);
        break;
    case IDC_SR_BROWSE:
        current.action->browse(screen);
        break;
    case CMD_SENDRECEIVE_SETUP:
        if (current.action->uses_setup)
            change_setup(screen);
        break;
    default:
        break;
    }
}

// After a No the upgrade's settings stay in force until they are changed or the program ends.
bool accepts_upgrade(HWND screen) {
    const BUTTON answer = show_message(screen,
                                       "WARNING: The Tolvan Portable will lose all program and data files.\n"
                                       "Options will be reset to factory defaults. Continue?",
                                       current.action->title, MESSAGE_ICON::STOP, MESSAGE_BUTTONS::YES_NO);
    if (answer == BUTTON::NO)
        operators_settings.reset();
    return answer == BUTTON::YES;
}

void begin_upgrade(HWND screen) {
    show_screen(screen);
    if (accepts_upgrade(screen))
        browse_upgrade(screen);
    else
        EndDialog(screen, 0);
}

} // namespace

INT_PTR CALLBACK SENDRECEIVEPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        open_screen(hDlg, static_cast<int>(lParam));
        return TRUE;
    case WM_SCREEN_SHOWN:
        begin(hDlg);
        return TRUE;
    case WM_COMMAND:
        do_command(hDlg, LOWORD(wParam));
        return TRUE;
    case WM_CLOSE:
        do_command(hDlg, IDCANCEL);
        return TRUE;
    default:
        return FALSE;
    }
}

// Whatever ends the screen destroys it: that is where the settings go back.
INT_PTR CALLBACK UPGRADEPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        operators_settings = comm_settings;
        force_flash_settings();
        break;
    case WM_SCREEN_SHOWN:
        begin_upgrade(hDlg);
        return TRUE;
    case WM_DESTROY:
        if (operators_settings)
            comm_settings = *std::exchange(operators_settings, std::nullopt);
        break;
    default:
        break;
    }
    return SENDRECEIVEPROC(hDlg, message, wParam, lParam);
}

bool is_transfer_running() {
    return current.transferring;
}

void request_transfer_end() {
    current.end_requested = current.transferring;
}

void show_counter(WINDOW screen, COUNTER counter, const std::string& text) {
    if (counter_text(counter) == text)
        return;
    counter_text(counter) = text;
    const auto rows = counter_rows();
    for (std::size_t row = 0; row < rows.size(); ++row)
        if (rows[row].counter == counter)
            set_control_text(static_cast<HWND>(screen), IDC_SR_VALUE + static_cast<int>(row), text);
}

void show_transfer_button(WINDOW screen, const std::string& caption) {
    set_control_text(static_cast<HWND>(screen), IDOK, caption);
}

void show_transfer_file(WINDOW screen, const std::string& name) {
    set_control_text(static_cast<HWND>(screen), IDC_SR_FILE, name);
}

bool is_cancel_button_pressed(WINDOW screen) {
    auto* window = static_cast<HWND>(screen);
    if (current.end_requested || !IsWindow(window))
        return true;
    MSG message;
    if (!PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        return false;
    if (message.message == WM_QUIT) {
        current.end_requested = true;
        PostQuitMessage(static_cast<int>(message.wParam)); // for the loops further up
        return true;
    }
    const bool to_button = message.hwnd == GetDlgItem(window, IDOK);
    if (to_button && message.message == WM_LBUTTONDOWN)
        return true; // not dispatched: the button would wait for its release
    const bool enter = message.message == WM_CHAR && message.wParam == ENTER_CHARACTER;
    const bool space = message.message == WM_KEYUP && message.wParam == VK_SPACE;
    TranslateMessage(&message);
    DispatchMessageA(&message);
    return (to_button && (enter || space)) || current.end_requested;
}

bool ask_phone_number(WINDOW screen, std::string& number) {
    return run_dialog(DLG_PHONE_NUMBER, static_cast<HWND>(screen), PHONENUMPROC,
                      reinterpret_cast<LPARAM>(&number)) == 1;
}
