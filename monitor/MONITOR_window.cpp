// The monitor's window: capture, and the commands of its menu.
#include "monitor/MONITOR_screens.h"

#include "app/TolvanP.h"
#include "app/desktop.h"
#include "app/dialogs.h"
#include "app/file_dialog.h"
#include "app/settings.h"
#include "comm/line.h"
#include "monitor/MONITOR_text.h"
#include "monitor/MONITOR_view.h"
#include "resources/define.h"

#include <array>
#include <utility>

namespace {

constexpr char TITLE_CAPTURE_ON[] = "Tolvan Monitor--Capture Mode[ON]";
constexpr char TITLE_CAPTURE_OFF[] = "Tolvan Monitor--Capture Mode[OFF]";
constexpr int COMMANDS_OUT_OF_CAPTURE[] = {CMD_OPEN, CMD_SAVE, CMD_MON_PRINT};

// At the fastest rate, 38400 bit/s, some 100 bytes come meanwhile; the driver holds thousands.
constexpr DWORD POLL_INTERVAL = 25; // milliseconds
constexpr UINT_PTR POLL_TIMER = 1;
constexpr int MOST_ERRORS_AT_ONCE = 100; // a line held in break reports errors without end
constexpr int BYTES_AT_ONCE = 4096;      // until the window's messages have their turn

struct CAPTURE {
    bool on = false;
    LINE* port = nullptr; // nullptr: the keyboard only
    bool close_requested = false;
    bool loop_runs = false;
    std::array<BYTE, 256> held_before{}; // keys that were held when capture began, as GetKeyboardState tells
};
CAPTURE capture;

HWND monitor_window; // nullptr while the monitor is closed

// --- capture ---

void show_capture_state(HWND hwnd) {
    HMENU menu = GetMenu(hwnd);
    const UINT availability = MF_BYCOMMAND | (capture.on ? MF_GRAYED : MF_ENABLED);
    CheckMenuItem(menu, CMD_MON_CAPTURE, MF_BYCOMMAND | (capture.on ? MF_CHECKED : MF_UNCHECKED));
    for (const int command : COMMANDS_OUT_OF_CAPTURE)
        EnableMenuItem(menu, static_cast<UINT>(command), availability);
    for (int item = 0; item < MONITOR_SERIAL_ITEM_COUNT; ++item)
        EnableMenuItem(menu, static_cast<UINT>(CMD_MON_SETTING + item), availability);
    SetWindowTextA(hwnd, capture.on ? TITLE_CAPTURE_ON : TITLE_CAPTURE_OFF);
}

// True when bytes had come.
bool receive_bytes(HWND hwnd) {
    if (capture.port == nullptr)
        return false;
    for (int tries = 0; clear_line_error(capture.port, nullptr) != 0; ++tries)
        if (tries == MOST_ERRORS_AT_ONCE)
            return false;
    std::uint8_t byte = 0;
    int count = 0;
    while (count < BYTES_AT_ONCE && read_line_byte(capture.port, &byte)) {
        write_serkey(byte);
        ++count;
    }
    if (count != 0)
        show_changes(hwnd);
    return count != 0;
}

// Takes one message. False when there was none.
bool pump_message() {
    MSG message;
    if (!PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        return false;
    if (message.message == WM_QUIT) {
        capture.close_requested = true;
        PostQuitMessage(static_cast<int>(message.wParam)); // for the loops further up
        return true;
    }
    TranslateMessage(&message);
    DispatchMessageA(&message);
    return true;
}

// Runs until capture is off or is to end with the window, which may be gone when this returns. A dialog of
// the main window has a loop of its own, which could not see the dialog's end below this one: then the timer
// alone reads the port, as it does while a loop of the system's runs (an open menu, a window that is moved).
void run_capture_loop(HWND hwnd) {
    HWND owner = GetWindow(hwnd, GW_OWNER);
    const bool dialog_is_open = owner != nullptr && !IsWindowEnabled(owner);
    if (capture.loop_runs || dialog_is_open)
        return;
    capture.loop_runs = true;
    while (capture.port != nullptr && !capture.close_requested) {
        const bool message_came = pump_message();
        const bool bytes_came = receive_bytes(hwnd);
        if (!message_came && !bytes_came)
            MsgWaitForMultipleObjects(0, nullptr, FALSE, POLL_INTERVAL, QS_ALLINPUT);
    }
    capture.loop_runs = false;
    if (capture.close_requested)
        PostMessageA(hwnd, WM_CLOSE, 0, 0);
}

void close_port(HWND hwnd) {
    if (capture.port == nullptr)
        return;
    KillTimer(hwnd, POLL_TIMER);
    close_line(capture.port);
    capture.port = nullptr;
}

void begin_capture(HWND hwnd) {
    clear_captured_text();
    GetKeyboardState(capture.held_before.data());
    capture.on = true;
    ShowScrollBar(hwnd, SB_VERT, FALSE);
    show_capture_state(hwnd);
    show_changes(hwnd);
    if (monitor_settings.port == 0)
        return;
    capture.port = mon_comm_initialize();
    if (capture.port == nullptr)
        return;
    SetTimer(hwnd, POLL_TIMER, POLL_INTERVAL, nullptr);
    run_capture_loop(hwnd);
}

void end_capture(HWND hwnd) {
    capture.on = false;
    show_capture_state(hwnd);
    close_port(hwnd);
    show_scroll_bar(hwnd);
    show_changes(hwnd);
}

// The release of the key that chose the command from the menu belongs to the menu.
bool was_held_before(WPARAM key) {
    constexpr BYTE HELD = 0x80;
    return (std::exchange(capture.held_before[key % capture.held_before.size()], BYTE{0}) & HELD) != 0;
}

// A key that is pressed or released while capture is on. False when the system is to have it. Alt, F10 and
// what is pressed with Alt would open the menu or close the window: they are shown like all others.
bool capture_key(HWND hwnd, WPARAM key, bool pressed) {
    if (key == VK_CAPITAL)
        return false;
    const bool held_before = was_held_before(key);
    if (hold_winkey(static_cast<unsigned>(key), pressed) || pressed || held_before)
        return true;
    const HELD_KEYS& held = captured_text.held_keys;
    const bool caps_lock = (GetKeyState(VK_CAPITAL) & 1) != 0;
    write_winkey(static_cast<unsigned>(key), held.shift, held.ctrl, held.alt, caps_lock);
    show_changes(hwnd);
    return true;
}

// --- commands ---

void open_capture(HWND hwnd) {
    static constexpr FILE_FILTER FILTERS[] = {{"Monitor Capture Files(*.CAP)", "*.cap"},
                                              {"All Files(*.*)", "*.*"}};
    if (!captured_text.lines.empty() &&
        show_message(hwnd, "Overwrite Captured Data?", COMM_TITLE, MESSAGE_ICON::QUESTION,
                     MESSAGE_BUTTONS::YES_NO) != BUTTON::YES)
        return;
    FILE_DIALOG dialog{.owner = hwnd, .filters = FILTERS, .directory = &monitor_directory};
    if (!ask_open_name(dialog) || !open_capture_file(hwnd, dialog.name))
        return;
    show_scroll_bar(hwnd);
    show_changes(hwnd);
}

// Says so when there is nothing to save or print.
bool has_captured_data(HWND hwnd, const char* if_none) {
    if (captured_text.lines.empty())
        show_message(hwnd, if_none, COMM_TITLE, MESSAGE_ICON::STOP);
    return !captured_text.lines.empty();
}

void save_capture(HWND hwnd) {
    static constexpr FILE_FILTER FILTERS[] = {{"Monitor Capture File (*.CAP)", "*.cap"}};
    if (!has_captured_data(hwnd, "No Captured Data to Save."))
        return;
    FILE_DIALOG dialog{.owner = hwnd, .filters = FILTERS, .directory = &monitor_directory};
    if (ask_save_name(dialog, ".cap"))
        save_capture_file(hwnd, dialog.name);
}

void print_capture(HWND hwnd) {
    if (has_captured_data(hwnd, "No Captured Data to Print."))
        print_captured_text(hwnd);
}

void toggle_capture(HWND hwnd) {
    if (capture.on)
        end_capture(hwnd);
    else
        begin_capture(hwnd);
}

void show_setting(HWND hwnd, MONITOR_ITEM item) {
    const auto id = static_cast<UINT>(CMD_MON_SETTING + item);
    HMENU menu = GetMenu(hwnd);
    const UINT availability = GetMenuState(menu, id, MF_BYCOMMAND) & MF_GRAYED;
    ModifyMenuA(menu, id, MF_BYCOMMAND | MF_STRING | availability, id, monitor_item_text(item).c_str());
}

void change_setting(HWND hwnd, MONITOR_ITEM item) {
    static constexpr DLGPROC PROMPTS[MONITOR_ITEM_COUNT] = {PORTPROC,     BAUDRATEPROC, DATABITSPROC,
                                                            STOPBITSPROC, PARITYPROC,   XONPROC,
                                                            FUNCPROC,     SPECIALPROC,  TRANSCRPROC};
    if (run_dialog(DLG_MON_SETTING, hwnd, PROMPTS[item]) == 1)
        update_com_menu(hwnd, item);
}

// True when the command is the monitor's. One that is not available now does nothing.
bool run_command(HWND hwnd, int id) {
    const UINT state = GetMenuState(GetMenu(hwnd), static_cast<UINT>(id), MF_BYCOMMAND);
    if (state == UINT_MAX)
        return false;
    if ((state & MF_GRAYED) != 0 || !IsWindowEnabled(hwnd))
        return true;
    switch (id) {
    case CMD_OPEN:
        open_capture(hwnd);
        break;
    case CMD_SAVE:
        save_capture(hwnd);
        break;
    case CMD_MON_PRINT:
        print_capture(hwnd);
        break;
    case CMD_MON_CLOSE:
        SendMessageA(hwnd, WM_CLOSE, 0, 0);
        break;
    case CMD_MON_CAPTURE:
        toggle_capture(hwnd);
        break;
    case CMD_MON_ABOUT:
        run_dialog(DLG_MON_ABOUT, hwnd, MONABOUTPROC);
        break;
    default:
        change_setting(hwnd, static_cast<MONITOR_ITEM>(id - CMD_MON_SETTING));
        break;
    }
    return true;
}

// --- the window's life ---

void prepare(HWND hwnd) {
    monitor_window = hwnd;
    // The class brings no icon, and the system's stands for any program.
    SendMessageA(hwnd, WM_SETICON, ICON_SMALL,
                 reinterpret_cast<LPARAM>(LoadIconA(hInstance, MAKEINTRESOURCEA(ICON_MAIN))));
    capture = {.loop_runs = capture.loop_runs};
    clear_captured_text();
    initialize_com_settings();
    for (int item = 0; item < MONITOR_ITEM_COUNT; ++item)
        show_setting(hwnd, static_cast<MONITOR_ITEM>(item));
}

// The port is read by a loop that must end first; the close is posted again when it has.
void request_close(HWND hwnd) {
    if (capture.port != nullptr && !capture.close_requested)
        capture.close_requested = true;
    else
        DestroyWindow(hwnd);
}

// Also when the window goes with its owner.
void leave(HWND hwnd) {
    capture.on = false;
    capture.close_requested = false;
    close_port(hwnd);
    clear_captured_text();
    monitor_window = nullptr;
}

void take_size(HWND hwnd) {
    fit_rows(hwnd);
    if (!capture.on)
        show_scroll_bar(hwnd);
    show_changes(hwnd);
}

void poll_port(HWND hwnd) {
    receive_bytes(hwnd);
    if (capture.close_requested)
        PostMessageA(hwnd, WM_CLOSE, 0, 0);
}

} // namespace

LRESULT CALLBACK MONITORPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        prepare(hwnd);
        return 0;
    case WM_PAINT:
        paint_view(hwnd);
        return 0;
    case WM_SIZE:
        if (wParam != SIZE_MINIMIZED)
            take_size(hwnd);
        return 0;
    case WM_VSCROLL:
        scroll_view(hwnd, LOWORD(wParam));
        return 0;
    case WM_MOUSEWHEEL:
        if (!capture.on)
            scroll_by_wheel(hwnd, GET_WHEEL_DELTA_WPARAM(wParam));
        return 0;
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
        if (capture.on && capture_key(hwnd, wParam, true))
            return 0;
        if (message == WM_KEYDOWN && !capture.on)
            scroll_by_key(hwnd, wParam);
        break;
    case WM_KEYUP:
    case WM_SYSKEYUP:
        if (capture.on && capture_key(hwnd, wParam, false))
            return 0;
        break;
    case WM_SYSCHAR: // would choose from the menu
        if (capture.on)
            return 0;
        break;
    case WM_KILLFOCUS: // releases go to another window from now on
        captured_text.held_keys = {};
        break;
    case WM_TIMER:
        poll_port(hwnd);
        return 0;
    case WM_COMMAND:
        if (!run_command(hwnd, LOWORD(wParam)))
            break;
        return 0;
    case WM_CLOSE:
        request_close(hwnd);
        return 0;
    case WM_DESTROY:
        leave(hwnd);
        return 0;
    default:
        break;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

void update_com_menu(HWND window, MONITOR_ITEM item) {
    show_setting(window, item);
    save_monitor_value(item);
}

void open_monitor(HWND owner) {
    if (monitor_window != nullptr) {
        if (IsIconic(monitor_window))
            ShowWindow(monitor_window, SW_RESTORE);
        SetForegroundWindow(GetLastActivePopup(monitor_window));
        return;
    }
    const SIZE size = usual_window_size();
    CreateWindowExA(0, MONITOR_CLASS, PROGRAM_TITLE, WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, size.cx, size.cy,
                    owner, nullptr, hInstance, nullptr);
}
