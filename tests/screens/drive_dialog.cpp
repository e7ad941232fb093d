#include "tests/screens/drive_dialog.h"

#include "app/dialogs.h"
#include "resources/define.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <utility>

namespace {

constexpr DWORD STEP_LIMIT = 10000;   // milliseconds until a step that waits gives up
constexpr int FILE_NAME_EDIT = 0x47c; // of the system's file dialogs

DWORD dialog_thread;   // the one that runs the screens
HANDLE settled;        // set when the marker has been taken
HANDLE screen_ended;   // set when nothing will take messages any more
UINT settling_message; // the marker

LRESULT CALLBACK see_marker(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HC_ACTION && reinterpret_cast<const MSG*>(lParam)->message == settling_message)
        SetEvent(settled);
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

std::vector<HWND> thread_windows() {
    std::vector<HWND> windows;
    EnumThreadWindows(
        dialog_thread,
        [](HWND window, LPARAM list) -> BOOL {
            if (IsWindowVisible(window))
                reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&windows));
    return windows;
}

std::vector<HWND> child_windows(HWND parent) {
    std::vector<HWND> children;
    for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        children.push_back(child);
    return children;
}

std::string class_of(HWND window) {
    char name[64] = "";
    GetClassNameA(window, name, sizeof name);
    return name;
}

HWND focus() {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(dialog_thread, &info);
    return info.hwndFocus;
}

// After a failed step: answers what is open until the screen has ended, so that the test ends too. An answer
// that one question takes for going on, another takes for leaving: all have their turn.
void close_everything() {
    constexpr WPARAM ANSWERS[] = {IDCANCEL, IDNO, IDOK, IDYES};
    for (std::size_t turn = 0; WaitForSingleObject(screen_ended, 20) == WAIT_TIMEOUT; ++turn)
        for (HWND window : thread_windows())
            if (IsWindowEnabled(window))
                PostMessageA(window, WM_COMMAND, ANSWERS[turn % std::size(ANSWERS)], 0);
}

RECT place_in(HWND dialog, HWND control) {
    RECT place{};
    GetWindowRect(control, &place);
    MapWindowPoints(HWND_DESKTOP, dialog, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

// The room that a control's text takes in its font, with an access key's mark left out.
SIZE text_size(HWND control) {
    HDC dc = GetDC(control);
    const auto font = reinterpret_cast<HGDIOBJ>(SendMessageA(control, WM_GETFONT, 0, 0));
    HGDIOBJ old_font = SelectObject(dc, font);
    RECT bounds{};
    DrawTextA(dc, window_text(control).c_str(), -1, &bounds, DT_CALCRECT);
    SelectObject(dc, old_font);
    ReleaseDC(control, dc);
    return {bounds.right, bounds.bottom};
}

} // namespace

void drive(const std::function<void()>& screen, const std::function<void()>& script) {
    dialog_thread = GetCurrentThreadId();
    settling_message = RegisterWindowMessageA("Tolvan screen test step");
    settled = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    screen_ended = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    HHOOK hook = SetWindowsHookExA(WH_GETMESSAGE, see_marker, nullptr, dialog_thread);
    std::thread operator_thread([&] {
        try {
            script();
        } catch (const std::exception& failure) {
            ADD_FAILURE() << failure.what();
            close_everything();
        }
    });
    screen();
    SetEvent(screen_ended);
    operator_thread.join();
    UnhookWindowsHookEx(hook);
    CloseHandle(settled);
    CloseHandle(screen_ended);
}

void wait_until(const std::function<bool()>& condition, const std::string& what) {
    const DWORD begin = GetTickCount();
    while (!condition()) {
        if (GetTickCount() - begin > STEP_LIMIT)
            throw std::runtime_error("Waited in vain for " + what);
        Sleep(1);
    }
}

HWND wait_for_window(const std::string& title) {
    HWND found = nullptr;
    wait_until(
        [&] {
            for (HWND window : thread_windows()) {
                // A message box may be named like the dialog below it: that one is disabled.
                const bool fits = class_of(window) == "#32770" && window_text(window) == title;
                if (fits && (found == nullptr || IsWindowEnabled(window)))
                    found = window;
            }
            return found != nullptr;
        },
        "window \"" + title + '"');
    settle();
    return found;
}

void settle() {
    // Twice: what a message posts when it is taken (a key its character) stands behind the first marker.
    const HANDLE events[] = {settled, screen_ended};
    for (int i = 0; i < 2; ++i) {
        ResetEvent(settled);
        PostThreadMessageA(dialog_thread, settling_message, 0, 0);
        if (WaitForMultipleObjects(2, events, FALSE, STEP_LIMIT) == WAIT_TIMEOUT)
            throw std::runtime_error("The dialogs' thread takes no messages");
    }
}

void click(HWND dialog, int control) {
    HWND button = GetDlgItem(dialog, control);
    if (button == nullptr || !IsWindowEnabled(button) || !IsWindowVisible(button))
        throw std::runtime_error("No button to click: " + std::to_string(control));
    PostMessageA(button, BM_CLICK, 0, 0);
    settle();
}

void choose_entry(HWND dialog, int list, int index) {
    SendDlgItemMessageA(dialog, list, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(list, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, list)));
}

void press_key(int virtual_key) {
    HWND target = focus();
    PostMessageA(target, WM_KEYDOWN, static_cast<WPARAM>(virtual_key), 1);
    PostMessageA(target, WM_KEYUP, static_cast<WPARAM>(virtual_key), static_cast<LPARAM>(0xC0000001));
    settle();
}

void type_text(const std::string& text) {
    for (const char c : text)
        PostMessageA(focus(), WM_CHAR, static_cast<unsigned char>(c), 1);
    settle();
}

void choose_command(HWND window, int id) {
    PostMessageA(window, WM_COMMAND, static_cast<WPARAM>(id), 0);
    settle();
}

void close_window(HWND window) {
    PostMessageA(window, WM_SYSCOMMAND, SC_CLOSE, 0);
    settle();
}

int focused_control(HWND dialog) {
    HWND window = focus();
    while (window != nullptr && GetParent(window) != dialog)
        window = GetParent(window); // the edit inside a list belongs to the list
    return window == nullptr ? 0 : GetDlgCtrlID(window);
}

std::string answer_box(const std::string& caption, int button) {
    const std::pair<LPCSTR, char> ICONS[] = {
        {IDI_ERROR, 'X'}, {IDI_WARNING, '!'}, {IDI_QUESTION, '?'}, {IDI_INFORMATION, 'i'}};
    HWND box = wait_for_window(caption);
    std::string seen = "- ";
    for (HWND child : child_windows(box)) {
        if (class_of(child) != "Static")
            continue;
        const auto shown = reinterpret_cast<HICON>(SendMessageA(child, STM_GETICON, 0, 0));
        for (const auto& [icon, mark] : ICONS)
            if (shown != nullptr && shown == LoadIconA(nullptr, icon))
                seen[0] = mark;
        if (shown == nullptr)
            seen += window_text(child);
    }
    if (GetDlgItem(box, button) == nullptr)
        throw std::runtime_error("The message box \"" + seen + "\" has no such button");
    PostMessageA(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
    wait_until([&] { return !IsWindow(box); }, "the end of the message box");
    return seen;
}

void answer_file_dialog(const std::string& title, const std::string& path) {
    HWND dialog = wait_for_window(title);
    if (!path.empty())
        set_control_text(dialog, FILE_NAME_EDIT, path);
    PostMessageA(dialog, WM_COMMAND, path.empty() ? IDCANCEL : IDOK, 0);
    settle();
}

std::string temporary_path(const std::string& name) {
    char folder[MAX_PATH];
    GetTempPathA(sizeof folder, folder);
    return folder + name;
}

void take_steps(HWND window, const std::vector<STEP>& steps,
                const std::function<std::string(HWND)>& state_of) {
    for (const auto& [command_or_key, state, caption, text, button] : steps) {
        SCOPED_TRACE(std::to_string(command_or_key) + ' ' + text);
        if (command_or_key >= CMD_PROGRAMMING)
            choose_command(window, command_or_key);
        else if (command_or_key != 0)
            press_key(command_or_key);
        if (caption != nullptr && button == 0)
            answer_file_dialog(caption, text);
        EXPECT_EQ(button == 0 ? text : answer_box(caption, button), text);
        EXPECT_EQ(state.empty() ? "" : state_of(window), state);
    }
}

std::vector<int> unreached_by_tab(HWND dialog) {
    std::vector<int> unreached;
    for (HWND child : child_windows(dialog))
        if ((GetWindowLongA(child, GWL_STYLE) & (WS_TABSTOP | WS_VISIBLE | WS_DISABLED)) ==
            (WS_TABSTOP | WS_VISIBLE))
            unreached.push_back(GetDlgCtrlID(child));
    for (std::size_t left = unreached.size(); left > 0; --left) {
        std::erase(unreached, focused_control(dialog));
        press_key(VK_TAB);
    }
    return unreached;
}

std::vector<std::string> layout_faults(HWND dialog) {
    std::vector<std::string> faults;
    RECT inside{};
    GetClientRect(dialog, &inside);
    std::vector<HWND> seen;
    for (HWND control : child_windows(dialog)) {
        if (!IsWindowVisible(control))
            continue;
        const std::string name = class_of(control) + ' ' + std::to_string(GetDlgCtrlID(control)) + " \"" +
                                 window_text(control) + '"';
        const RECT place = place_in(dialog, control);
        RECT common{};
        if (!IntersectRect(&common, &place, &inside) || !EqualRect(&common, &place))
            faults.push_back(name + " reaches outside");
        const bool shows_caption = class_of(control) == "Static" || class_of(control) == "Button";
        const SIZE text = text_size(control);
        if (shows_caption && (text.cx > place.right - place.left || text.cy > place.bottom - place.top))
            faults.push_back(name + " is cut");
        const bool is_group_box = class_of(control) == "Button" &&
                                  (GetWindowLongA(control, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX;
        if (is_group_box || class_of(control) == UPDOWN_CLASSA)
            continue; // the one goes around others, the other into the border of its edit
        for (HWND other : seen) {
            const RECT other_place = place_in(dialog, other);
            if (IntersectRect(&common, &place, &other_place))
                faults.push_back(name + " covers control " + std::to_string(GetDlgCtrlID(other)));
        }
        seen.push_back(control);
    }
    return faults;
}

void expect_good_looks(HWND dialog) {
    EXPECT_EQ(layout_faults(dialog), std::vector<std::string>());
    EXPECT_EQ(unreached_by_tab(dialog), std::vector<int>());
}
