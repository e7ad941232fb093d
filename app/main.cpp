// The program's start and end.
#include "app/TolvanP.h"
#include "app/command_line.h"
#include "app/desktop.h"
#include "app/dialogs.h"
#include "app/main_window.h"
#include "app/settings.h"
#include "comm/PCOM.h"
#include "program/Prog.h"
#include "resources/define.h"
#include "setup/SETUP.h"

#include <windows.h>

#include <commctrl.h>

namespace {

constexpr int OLDEST_WINDOWS = 3; // major version

// Restores the running instance and brings forward the window of it that was used last. False when none runs.
bool bring_running_instance_forward() {
    HWND running = FindWindowA(PROGRAM_TITLE, nullptr);
    if (running == nullptr)
        return false;
    ShowWindow(running, SW_RESTORE);
    SetForegroundWindow(GetLastActivePopup(running));
    return true;
}

// The request is carried out by posting its command, so that the main window stands first.
void obey_command_line(const char* command_line) {
    command_line_options_flag = 0;
    command_line_string = command_line;
    const COMMAND_LINE_REQUEST request = parse_command_line(command_line);
    if (request.option == 0)
        return;
    command_line_string = request.file;
    command_line_options_flag = 1;
    quick_start_flag = request.option != 'F';
    const int command = request.option == 'S'   ? CMD_SEND
                        : request.option == 'R' ? CMD_RECEIVE
                                                : CMD_PROGRAMMING;
    PostMessageA(hwndmain, WM_COMMAND, static_cast<WPARAM>(command), 0);
}

int run_message_loop() {
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return static_cast<int>(message.wParam);
}

} // namespace

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): the system's names differ.
int WINAPI WinMain(HINSTANCE instance, HINSTANCE hprevinstance, LPSTR lpszcmdparam, int ncmdshow) {
    hInstance = instance;
    if (LOBYTE(LOWORD(GetVersion())) < OLDEST_WINDOWS) {
        show_message(nullptr, "Must use MS-Windows 3.0 or later!", PROGRAM_TITLE, MESSAGE_ICON::STOP);
        return 0;
    }
    if (bring_running_instance_forward() || hprevinstance != nullptr)
        return 0;
    // Long work runs without pumping messages: a ghost in the window's place would hide its progress box.
    DisableProcessWindowsGhosting();

    register_window_classes();
    InitCommonControls();
    if (!create_main_window())
        return 0;
    read_mainwindow_size();
    read_com_setup();
    read_directory_setup();
    center_window(hwndmain);
    reset_setups();
    init_programming();
    if (!IsWindowVisible(hwndmain))
        ShowWindow(hwndmain, ncmdshow);
    UpdateWindow(hwndmain);
    obey_command_line(lpszcmdparam);
    const int exit_code = run_message_loop();
    write_directory_setup();
    return exit_code;
}
