#include "app/main_window.h"

#include "app/TolvanP.h"
#include "app/about.h"
#include "app/command_line.h"
#include "app/desktop.h"
#include "app/dialogs.h"
#include "app/file_dialog.h"
#include "app/help.h"
#include "app/paths.h"
#include "app/settings.h"
#include "comm/PCOM.h"
#include "comm/PCOM_screens.h"
#include "files/FILEGEN.h"
#include "files/FILEGEN_screens.h"
#include "library/LIB_screens.h"
#include "monitor/MONITOR_screens.h"
#include "program/Prog_screens.h"
#include "resources/define.h"
#include "setup/SETUP.h"
#include "setup/SETUP_screens.h"

#include <commctrl.h>

#include <algorithm>
#include <string>

bool tolvan_app_active;

namespace {

constexpr int FIRST_WIDTH = 437; // pixels, of the window as it is created
constexpr int FIRST_HEIGHT = 80;
constexpr int PICTURE_WIDTH = 29; // pixels, of the toolbar's buttons
constexpr int PICTURE_HEIGHT = 30;

constexpr char DEFAULT_SETUP_NAME[] = "Default"; // stands in the title until a setup has a file

constexpr UINT_PTR CLOSING_TIMER = 1;
constexpr UINT CLOSING_INTERVAL = 50; // milliseconds

constexpr int TOOLBAR_COMMANDS[] = {CMD_PROGRAMMING, CMD_LOOKUP_EDITOR, CMD_DATA_EDITOR,  CMD_LIBRARIAN,
                                    CMD_SEND,        CMD_RECEIVE,       CMD_AUTO_RECEIVE, CMD_UPGRADE,
                                    CMD_MONITOR,     CMD_EXIT};

HWND hWndToolBar;

// The title names the setup file that the setup dialogs edit.
std::string title_with(const std::string& setup_name) {
    return std::string(PROGRAM_TITLE) + " (" + setup_name + ")";
}

void set_title(const std::string& setup_name) {
    SetWindowTextA(hwndmain, title_with(setup_name).c_str());
}

// --- commands ---

// The end of a transfer that the command line asked for is the program's.
void run_transfer(HWND hwnd, LPARAM action) {
    run_dialog(DLG_SEND_RECEIVE, hwnd, SENDRECEIVEPROC, action);
    if (command_line_options_flag != 0)
        PostMessageA(hwnd, WM_COMMAND, CMD_EXIT, 0);
}

void run_send(HWND hwnd) {
    run_transfer(hwnd, ACTION_SEND);
}

void run_receive(HWND hwnd) {
    run_transfer(hwnd, ACTION_RECEIVE);
}

void run_auto_receive(HWND hwnd) {
    auto_receive_flag = true;
    run_dialog(DLG_SEND_RECEIVE, hwnd, SENDRECEIVEPROC, ACTION_RECEIVE);
    auto_receive_flag = false;
}

void run_lookup_editor(HWND hwnd) {
    file_generation(LOOKUP_FILE_EDITED, hwnd);
}

void run_data_editor(HWND hwnd) {
    file_generation(DATA_FILE_EDITED, hwnd);
}

void open_setup(HWND hwnd) {
    static constexpr FILE_FILTER FILTERS[] = {{"Tolvan Setup Files(*.CFT)", "*.cft"},
                                              {"Quendal Setup Files(*.CFG)", "*.cfg"},
                                              {"All Files(*.*)", "*.*"}};
    FILE_DIALOG dialog{.owner = hwnd, .filters = FILTERS, .directory = &config_directory};
    // A setup with a wrong checksum is loaded, but it is not the file's: the title stays.
    if (ask_open_name(dialog) && open_setup_file(dialog.name) == 1)
        set_title(path_file_title(dialog.name));
}

void save_setup(HWND hwnd) {
    static constexpr FILE_FILTER FILTERS[] = {{"Setup Files(*.CFT)", "*.cft"}};
    FILE_DIALOG dialog{.owner = hwnd, .filters = FILTERS, .directory = &config_directory};
    if (!ask_save_name(dialog, ".cft"))
        return;
    save_setup_file(dialog.name);
    set_title(path_file_title(dialog.name));
}

void reset_setup(HWND hwnd) {
    constexpr char CAPTION[] = "Reset Setups";
    if (show_message(hwnd, "Reset Setup to Defaults?", CAPTION, MESSAGE_ICON::NONE,
                     MESSAGE_BUTTONS::YES_NO) != BUTTON::YES)
        return;
    reset_setups();
    set_title(DEFAULT_SETUP_NAME);
    show_message(hwnd, "Setup Reset to Defaults.", CAPTION, MESSAGE_ICON::INFORMATION);
}

void run_upgrade(HWND hwnd) {
    run_dialog(DLG_SEND_RECEIVE, hwnd, UPGRADEPROC, ACTION_UPGRADE);
}

void leave(HWND hwnd) {
    DestroyWindow(hwnd);
}

// What a command does: run a procedure, or run a modal dialog.
struct COMMAND {
    int id;
    int dialog = 0;
    void (*run)(HWND hwnd) = nullptr;
    DLGPROC dialog_procedure = nullptr;
};

const COMMAND COMMANDS[] = {
    {.id = CMD_PROGRAMMING, .dialog = DLG_PROGRAMMING, .dialog_procedure = PROGRAMMINGPROC},
    {.id = CMD_LOOKUP_EDITOR, .run = run_lookup_editor},
    {.id = CMD_DATA_EDITOR, .run = run_data_editor},
    {.id = CMD_LIBRARIAN, .dialog = DLG_LIBRARIAN, .dialog_procedure = LIBRARYPROC},
    {.id = CMD_EXIT, .run = leave},
    {.id = CMD_COMM_SETUP, .dialog = DLG_COMM_SETUP, .dialog_procedure = SETUPPROC},
    {.id = CMD_SEND, .run = run_send},
    {.id = CMD_RECEIVE, .run = run_receive},
    {.id = CMD_AUTO_RECEIVE, .run = run_auto_receive},
    {.id = CMD_NON_PORTABLE, .dialog = DLG_NON_PORTABLE, .dialog_procedure = NONPORTPROC},
    {.id = CMD_WEDGE, .dialog = DLG_WEDGE, .dialog_procedure = KEYBOARDWEDGEPROC},
    {.id = CMD_SETUP_TRANSMIT, .dialog = DLG_SETUP_TRANSMIT, .dialog_procedure = TRANSMITPROC},
    {.id = CMD_SETUP_OTHER, .dialog = DLG_SETUP_OTHER, .dialog_procedure = OTHERPROC},
    {.id = CMD_OPEN_SETUP, .run = open_setup},
    {.id = CMD_SAVE_SETUP, .run = save_setup},
    {.id = CMD_RESET_SETUP, .run = reset_setup},
    {.id = CMD_CODE39, .dialog = DLG_CODE39, .dialog_procedure = CODE39PROC},
    {.id = CMD_UPC, .dialog = DLG_UPC, .dialog_procedure = UPCPROC},
    {.id = CMD_EAN, .dialog = DLG_EAN, .dialog_procedure = EANPROC},
    {.id = CMD_ADDONS, .dialog = DLG_ADDONS, .dialog_procedure = SUPPROC},
    {.id = CMD_I2OF5, .dialog = DLG_I2OF5, .dialog_procedure = I2OF5PROC},
    {.id = CMD_CODABAR, .dialog = DLG_CODABAR, .dialog_procedure = CODABARPROC},
    {.id = CMD_CODE128, .dialog = DLG_CODE128, .dialog_procedure = CODE128PROC},
    {.id = CMD_CODE93, .dialog = DLG_CODE93, .dialog_procedure = CODE93PROC},
    {.id = CMD_MSI_PLESSEY, .dialog = DLG_MSI_PLESSEY, .dialog_procedure = MSIPLESSEYPROC},
    {.id = CMD_CODE11, .dialog = DLG_CODE11, .dialog_procedure = CODE11PROC},
    {.id = CMD_TERMCHAR, .dialog = DLG_TERMCHAR, .dialog_procedure = TERMCHARPROC},
    {.id = CMD_AMBLES, .dialog = DLG_AMBLES, .dialog_procedure = PRE_POST_AMBLEPROC},
    {.id = CMD_BAR_EDIT, .dialog = DLG_BAR_EDIT, .dialog_procedure = BAREDITPROC},
    {.id = CMD_BAR_BEEPER, .dialog = DLG_BAR_BEEPER, .dialog_procedure = BARBEEPPROC},
    {.id = CMD_LASER_CCD, .dialog = DLG_LASER_CCD, .dialog_procedure = LASERCCDPROC},
    {.id = CMD_BAR_OTHER, .dialog = DLG_BAR_OTHER, .dialog_procedure = BAROTHERPROC},
    {.id = CMD_UPGRADE, .run = run_upgrade},
    {.id = CMD_MONITOR, .run = open_monitor},
    {.id = CMD_HELP_TOPICS, .run = show_help},
    {.id = CMD_ABOUT, .dialog = DLG_ABOUT, .dialog_procedure = TolvanABOUTPROC},
};

// False when the table has no such command.
bool run_command(HWND hwnd, int id) {
    const auto* command = std::ranges::find(COMMANDS, id, &COMMAND::id);
    if (command == std::ranges::end(COMMANDS))
        return false;
    if (!IsWindowEnabled(hwnd)) // a dialog is open: a command posted now would start a second one over it
        return true;
    if (command->run != nullptr)
        command->run(hwnd);
    else
        run_dialog(command->dialog, hwnd, command->dialog_procedure);
    return true;
}

// --- the end ---

// Behind an open dialog the window does not close, as what was typed there would be lost; a transfer is asked
// to end, and the window closes when it has.
void close_main_window(HWND hwnd) {
    if (is_transfer_running()) {
        request_transfer_end();
        SetTimer(hwnd, CLOSING_TIMER, CLOSING_INTERVAL, nullptr);
    } else if (IsWindowEnabled(hwnd)) {
        DestroyWindow(hwnd);
    } else {
        beep();
        SetForegroundWindow(GetLastActivePopup(hwnd));
    }
}

// --- the size ---

SIZE size_of(const RECT& rect) {
    return {.cx = rect.right - rect.left, .cy = rect.bottom - rect.top};
}

SIZE window_size(HWND hwnd) {
    RECT rect{};
    GetWindowRect(hwnd, &rect);
    return size_of(rect);
}

SIZE client_size(HWND hwnd) {
    RECT rect{};
    GetClientRect(hwnd, &rect);
    return size_of(rect);
}

LONG menu_width(HMENU menu) {
    LONG width = 0;
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        RECT item{};
        GetMenuItemRect(hwndmain, menu, static_cast<UINT>(i), &item);
        width += size_of(item).cx;
    }
    return width;
}

void resize_main_window(LONG width, LONG height) {
    SetWindowPos(hwndmain, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOREDRAW);
}

// The default size is that of the captions and menus of its day. Where they are larger now, the first start
// shows the menu in one row and the toolbar whole all the same; from then on the size is the operator's.
void grow_to_show_contents() {
    SIZE window = window_size(hwndmain);
    const LONG borders = window.cx - client_size(hwndmain).cx;
    window.cx = std::max(window.cx, menu_width(GetMenu(hwndmain)) + borders);
    resize_main_window(window.cx, window.cy); // first the width: the rows of the menu take from the height
    const LONG missing = window_size(hWndToolBar).cy - client_size(hwndmain).cy;
    resize_main_window(window.cx, window.cy + std::max(missing, 0L));
}

} // namespace

LRESULT CALLBACK MAINPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        hWndToolBar = create_toolbar(hwnd, ID_MAIN_TOOLBAR, BITMAP_MAIN_TOOLBAR, TOOLBAR_COMMANDS,
                                     PICTURE_WIDTH, PICTURE_HEIGHT);
        return 0;
    case WM_SIZE:
        SendMessageA(hWndToolBar, TB_AUTOSIZE, 0, 0);
        return 0;
    case WM_ACTIVATEAPP:
        tolvan_app_active = wParam != FALSE;
        return 0;
    case WM_NOTIFY:
        if (!give_tooltip_text(lParam))
            break;
        return 0;
    case WM_COMMAND:
        if (!run_command(hwnd, LOWORD(wParam)))
            break;
        return 0;
    case WM_CLOSE:
        close_main_window(hwnd);
        return 0;
    case WM_TIMER:
        if (wParam != CLOSING_TIMER)
            break;
        if (!is_transfer_running())
            DestroyWindow(hwnd);
        return 0;
    case WM_QUERYENDSESSION:
        if (is_transfer_running())
            request_transfer_end(); // now, while there is time to close its file
        return TRUE;
    case WM_ENDSESSION:
        if (wParam != FALSE) { // the process may not live on to its own end
            write_mainwindow_size();
            write_directory_setup();
        }
        return 0;
    case WM_DESTROY:
        write_mainwindow_size();
        PostQuitMessage(0);
        return 0;
    default:
        break;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

void register_window_classes() {
    WNDCLASSA main_class{};
    main_class.lpfnWndProc = MAINPROC;
    main_class.hInstance = hInstance;
    main_class.hIcon = LoadIconA(hInstance, MAKEINTRESOURCEA(ICON_MAIN));
    main_class.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    main_class.hbrBackground = static_cast<HBRUSH>(GetStockObject(LTGRAY_BRUSH));
    main_class.lpszMenuName = MAKEINTRESOURCEA(MENU_MAIN);
    main_class.lpszClassName = PROGRAM_TITLE;
    RegisterClassA(&main_class);

    WNDCLASSA monitor_class{};
    monitor_class.style = CS_HREDRAW | CS_VREDRAW;
    monitor_class.lpfnWndProc = MONITORPROC;
    monitor_class.hInstance = hInstance;
    monitor_class.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    monitor_class.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    monitor_class.lpszMenuName = MAKEINTRESOURCEA(MENU_MONITOR);
    monitor_class.lpszClassName = MONITOR_CLASS;
    RegisterClassA(&monitor_class);
}

bool create_main_window() {
    hwndmain = CreateWindowExA(0, PROGRAM_TITLE, title_with(DEFAULT_SETUP_NAME).c_str(), WS_OVERLAPPEDWINDOW,
                               CW_USEDEFAULT, CW_USEDEFAULT, FIRST_WIDTH, FIRST_HEIGHT, nullptr, nullptr,
                               hInstance, nullptr);
    return hwndmain != nullptr;
}

void read_mainwindow_size() {
    RECT window{};
    GetWindowRect(hwndmain, &window);
    const WINDOW_SIZE size = read_window_size();
    MoveWindow(hwndmain, window.left, window.top, static_cast<int>(size.cx), static_cast<int>(size.cy),
               FALSE);
    if (!is_window_size_stored())
        grow_to_show_contents();
}

void write_mainwindow_size() {
    SIZE size = window_size(hwndmain);
    if (IsIconic(hwndmain)) {
        WINDOWPLACEMENT placement{};
        placement.length = sizeof placement;
        GetWindowPlacement(hwndmain, &placement);
        size = size_of(placement.rcNormalPosition);
    }
    write_window_size({.cx = static_cast<std::uint32_t>(size.cx), .cy = static_cast<std::uint32_t>(size.cy)});
}
