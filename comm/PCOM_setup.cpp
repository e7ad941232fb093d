// Communication Setup, and the prompts for the phone number and the starting number.
#include "comm/PCOM_screens.h"

#include "app/desktop.h"
#include "app/dialogs.h"
#include "comm/PCOM.h"
#include "resources/control.h"
#include "resources/define.h"

#include <commctrl.h>

#include <algorithm>
#include <iterator>

namespace {

constexpr unsigned LOWEST_RETRIES = 1;
constexpr unsigned HIGHEST_RETRIES = 99; // by the arrows; a typed number may be larger
constexpr unsigned LOWEST_EXTENSION = 1;
constexpr unsigned HIGHEST_EXTENSION = 999;
constexpr char SETUP_CAPTION[] = "Communication Setup";

constexpr const char* PORTS[] = {"COM1", "COM2", "COM3", "COM4"};
constexpr const char* DATABITS[] = {"7", "8"};
constexpr const char* STOPBITS[] = {"1", "2"};
constexpr const char* PARITIES[] = {"None", "Odd", "Even"};
constexpr const char* PROTOCOLS[] = {"NONE", "XMODEM"};
constexpr const char* FLOW_CONTROLS[] = {"NONE", "XON/XOFF", "RTS/CTS"};
constexpr const char* INTERFACES[] = {"DIRECT", "MODEM"};
constexpr const char* FILEMODES[] = {"APPEND", "INCREMENT"};
constexpr const char* DIALMETHODS[] = {"TONE", "PULSE"};

// The lists whose entries stand for consecutive numbers.
struct NUMBER_LIST {
    int control;
    std::span<const char* const> texts;
    std::uint32_t COMM_SETTINGS::*value;
    std::uint32_t first; // what the first entry stands for
};
constexpr NUMBER_LIST NUMBER_LISTS[] = {
    {IDC_COMM_PORT, PORTS, &COMM_SETTINGS::port, 1},
    {IDC_COMM_DATABITS, DATABITS, &COMM_SETTINGS::databits, 7},
    {IDC_COMM_STOPBITS, STOPBITS, &COMM_SETTINGS::stopbits, 1},
    {IDC_COMM_PARITY, PARITIES, &COMM_SETTINGS::parity, 0},
    {IDC_COMM_PROTOCOL, PROTOCOLS, &COMM_SETTINGS::protocol, 0},
    {IDC_COMM_FLOW, FLOW_CONTROLS, &COMM_SETTINGS::flow_control, 0},
    {IDC_COMM_INTERFACE, INTERFACES, &COMM_SETTINGS::interface_mode, 0},
    {IDC_COMM_FILEMODE, FILEMODES, &COMM_SETTINGS::filemode, 0},
    {IDC_COMM_DIALMETHOD, DIALMETHODS, &COMM_SETTINGS::dialmethod, 0},
};

constexpr const char* BAUDRATE_TEXTS[] = {"300",  "600",   "1200",  "2400",  "4800",
                                          "9600", "14400", "19200", "38400", "57600"};
constexpr std::uint32_t BAUDRATES[] = {300, 600, 1200, 2400, 4800, 9600, 14400, 19200, 38400, 57600};

unsigned baudrate_entry(std::uint32_t baudrate) {
    const auto* found = std::find(std::begin(BAUDRATES), std::end(BAUDRATES), baudrate);
    return found == std::end(BAUDRATES) ? 0 : static_cast<unsigned>(found - BAUDRATES);
}

void update_setup_dialog(HWND screen) {
    for (const NUMBER_LIST& list : NUMBER_LISTS) {
        const auto last = list.first + static_cast<std::uint32_t>(list.texts.size()) - 1;
        fill_list(screen, list.control, list.texts,
                  std::clamp(comm_settings.*list.value, list.first, last) - list.first);
    }
    fill_list(screen, IDC_COMM_BAUDRATE, BAUDRATE_TEXTS, baudrate_entry(comm_settings.baudrate));
    SendDlgItemMessageA(screen, IDC_COMM_RETRIES, EM_LIMITTEXT, 2, 0);
    SetDlgItemInt(screen, IDC_COMM_RETRIES, comm_settings.xmodem_retries, FALSE);
    set_control_text(screen, IDC_COMM_MODEM_INIT, comm_settings.modem_init);
    SendDlgItemMessageA(screen, IDC_COMM_RETRIES, EM_LIMITTEXT, 251, 0); // the limit in force
}

void read_setup_dialog(HWND screen, COMM_SETTINGS& settings) {
    for (const NUMBER_LIST& list : NUMBER_LISTS)
        settings.*list.value = list.first + selected_entry(screen, list.control, 0);
    settings.baudrate = BAUDRATES[selected_entry(screen, IDC_COMM_BAUDRATE, 0)];
    settings.xmodem_retries = std::max(edit_number(screen, IDC_COMM_RETRIES), LOWEST_RETRIES);
    settings.modem_init = control_text(screen, IDC_COMM_MODEM_INIT).substr(0, MODEM_INIT_LIMIT);
}

void reset_on_request(HWND screen) {
    if (show_message(screen, "Reset to Default Settings?", SETUP_CAPTION, MESSAGE_ICON::QUESTION,
                     MESSAGE_BUTTONS::YES_NO) != BUTTON::YES)
        return;
    reset_com_setups();
    update_setup_dialog(screen);
}

void do_setup_command(HWND screen, int command) {
    switch (command) {
    case IDOK:
        read_setup_dialog(screen, comm_settings);
        write_com_setup();
        EndDialog(screen, 1);
        break;
    case IDCANCEL:
        EndDialog(screen, 0);
        break;
    case IDC_COMM_DEFAULTS:
        reset_on_request(screen);
        break;
    default:
        break;
    }
}

} // namespace

INT_PTR CALLBACK SETUPPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        center_window(hDlg);
        install_filter(GetDlgItem(hDlg, IDC_COMM_RETRIES), INTPROC);
        prepare_stepper(hDlg, IDC_COMM_RETRIES_SPIN);
        update_setup_dialog(hDlg);
        return TRUE;
    case WM_DESTROY:
        remove_filter(GetDlgItem(hDlg, IDC_COMM_RETRIES));
        return TRUE;
    case WM_NOTIFY:
        if (const int direction = step_direction(lParam); direction != 0)
            step_edit(hDlg, IDC_COMM_RETRIES, direction, {LOWEST_RETRIES, HIGHEST_RETRIES});
        return FALSE;
    case WM_COMMAND:
        do_setup_command(hDlg, LOWORD(wParam));
        return TRUE;
    default:
        return FALSE;
    }
}

INT_PTR CALLBACK PHONENUMPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        center_window(hDlg);
        SetWindowLongPtrA(hDlg, DWLP_USER, lParam);
        SendDlgItemMessageA(hDlg, IDC_PHONE_NUMBER, EM_LIMITTEXT, PHONE_NUMBER_LIMIT, 0);
        set_control_text(hDlg, IDC_PHONE_NUMBER, *reinterpret_cast<const std::string*>(lParam));
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK) {
            auto& number = *reinterpret_cast<std::string*>(GetWindowLongPtrA(hDlg, DWLP_USER));
            number = control_text(hDlg, IDC_PHONE_NUMBER).substr(0, PHONE_NUMBER_LIMIT);
            EndDialog(hDlg, 1);
        } else if (LOWORD(wParam) == IDCANCEL) {
            EndDialog(hDlg, 0);
        }
        return TRUE;
    default:
        return FALSE;
    }
}

INT_PTR CALLBACK EXTENSIONPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        center_window(hDlg);
        prepare_stepper(hDlg, IDC_EXTENSION_SPIN);
        SetDlgItemInt(hDlg, IDC_EXTENSION, auto_receive_counter, FALSE);
        return TRUE;
    case WM_NOTIFY:
        if (const int direction = step_direction(lParam); direction != 0)
            step_edit(hDlg, IDC_EXTENSION, direction, {LOWEST_EXTENSION, HIGHEST_EXTENSION});
        return FALSE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) { // the close box counts as OK
            auto_receive_counter = edit_number(hDlg, IDC_EXTENSION);
            EndDialog(hDlg, 1);
        }
        return TRUE;
    default:
        return FALSE;
    }
}
