#include "program/Prog_edits.h"

#include "app/dialogs.h"
#include "program/Prog_screens.h"
#include "program/Prog_text.h"
#include "resources/define.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

bool picker_open;
bool own_change;

// What the commands of the context menu send to the edit.
struct EDIT_MESSAGE {
    int command;
    UINT message;
    LPARAM lParam; // wParam is always 0
    EDIT_COMMAND result;
};
constexpr EDIT_MESSAGE EDIT_MESSAGES[] = {
    {CMD_UNDO, EM_UNDO, 0, EDIT_COMMAND::EDITED},   {CMD_CUT, WM_CUT, 0, EDIT_COMMAND::EDITED},
    {CMD_COPY, WM_COPY, 0, EDIT_COMMAND::NO_EDIT},  {CMD_PASTE, WM_PASTE, 0, EDIT_COMMAND::EDITED},
    {CMD_CLEAR, WM_CLEAR, 0, EDIT_COMMAND::EDITED}, {CMD_SELECT_ALL, EM_SETSEL, -1, EDIT_COMMAND::NO_EDIT},
};

// The edit of this dialog that has the focus; nullptr when something else has it.
HWND focused_edit(HWND dialog) {
    HWND focus = GetFocus();
    const bool is_edit = focus != nullptr && GetParent(focus) == dialog &&
                         (SendMessageA(focus, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL) != 0;
    return is_edit ? focus : nullptr;
}

EDIT_COMMAND paste_special_characters(HWND dialog, HWND edit) {
    picker_open = true;
    const bool chosen = run_dialog(DLG_SPECIAL, dialog, SPECIALCHARPROC) == 1;
    picker_open = false;
    if (!chosen)
        return EDIT_COMMAND::NO_EDIT;
    SetFocus(edit);
    SendMessageA(edit, WM_PASTE, 0, 0);
    return EDIT_COMMAND::EDITED;
}

void enable_edit_menu(HMENU menu, HWND edit) {
    // A caret behind the first character counts as a selection: only 0 to 0 is none.
    const bool has_selection = SendMessageA(edit, EM_GETSEL, 0, 0) != 0;
    const std::pair<UINT, bool> items[] = {
        {CMD_UNDO, SendMessageA(edit, EM_CANUNDO, 0, 0) != 0},
        {CMD_CUT, has_selection},
        {CMD_COPY, has_selection},
        {CMD_PASTE, IsClipboardFormatAvailable(CF_TEXT) != FALSE},
        {CMD_CLEAR, has_selection},
        {CMD_SELECT_ALL, GetWindowTextLengthA(edit) != 0},
    };
    for (const auto& [command, enabled] : items)
        EnableMenuItem(menu, command, enabled ? MF_ENABLED : MF_GRAYED);
}

// On the screen: the pointer that WM_CONTEXTMENU gives, or below the caret when the keyboard asked.
POINT menu_position(HWND edit, LPARAM position) {
    if (position != -1)
        return {static_cast<short>(LOWORD(position)), static_cast<short>(HIWORD(position))};
    RECT inside{};
    GetClientRect(edit, &inside);
    POINT place{};
    GetCaretPos(&place);
    place = {std::clamp(place.x, inside.left, inside.right), inside.bottom};
    ClientToScreen(edit, &place);
    return place;
}

void show_edit_menu(HWND edit, LPARAM position) {
    SetFocus(edit);
    HMENU bar = LoadMenuA(hInstance, MAKEINTRESOURCEA(MENU_EDIT));
    HMENU menu = GetSubMenu(bar, 0);
    enable_edit_menu(menu, edit);
    const POINT place = menu_position(edit, position);
    TrackPopupMenu(menu, TPM_RIGHTBUTTON, place.x, place.y, 0, GetParent(edit), nullptr);
    DestroyMenu(bar);
}

void go_to_next_control(HWND dialog) {
    const bool backwards = GetKeyState(VK_SHIFT) < 0;
    SendMessageA(dialog, WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS), 0);
    SendMessageA(dialog, WM_NEXTDLGCTL, backwards ? TRUE : FALSE, FALSE);
}

// True when the key is done with and does not go on to the control.
bool take_key(HWND control, WPARAM key) {
    HWND dialog = GetParent(control);
    const bool list_is_open = SendMessageA(control, CB_GETDROPPEDSTATE, 0, 0) != 0;
    switch (key) {
    case VK_TAB:
        go_to_next_control(dialog);
        return true;
    case VK_ESCAPE:
        if (!list_is_open)
            PostMessageA(dialog, WM_COMMAND, IDCANCEL,
                         reinterpret_cast<LPARAM>(GetDlgItem(dialog, IDCANCEL)));
        return !list_is_open;
    case VK_RETURN:
        return !list_is_open;
    default:
        return false;
    }
}

// The tab family: `claimed` is what the control claims of the keyboard, as DLGC_ bits; what the family leaves
// goes to `next`.
LRESULT filter_tab(LRESULT claimed, WNDPROC next, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_GETDLGCODE:
        return claimed | next(hwnd, message, wParam, lParam);
    case WM_SETFOCUS: {
        const LRESULT result = next(hwnd, message, wParam, lParam);
        SendMessageA(GetParent(hwnd), WM_CONTROL_FOCUSED, static_cast<WPARAM>(GetDlgCtrlID(hwnd)), 0);
        return result;
    }
    case WM_KEYDOWN:
        if (take_key(hwnd, wParam))
            return 0;
        break;
    case WM_KEYUP:
        if (wParam == VK_TAB)
            return 0;
        break;
    case WM_CHAR: // the characters of these keys are their keys' codes
        if (wParam == VK_TAB || wParam == VK_RETURN || wParam == VK_ESCAPE)
            return 0;
        break;
    default:
        break;
    }
    return next(hwnd, message, wParam, lParam);
}

} // namespace

EDIT_COMMAND do_edit_command(HWND dialog, int command) {
    const auto* found = std::ranges::find(EDIT_MESSAGES, command, &EDIT_MESSAGE::command);
    const bool is_message = found != std::end(EDIT_MESSAGES);
    if (!is_message && command != CMD_SPECIAL_ASCII)
        return EDIT_COMMAND::NONE;
    HWND edit = focused_edit(dialog);
    if (edit == nullptr)
        return EDIT_COMMAND::NO_EDIT;
    if (!is_message)
        return paste_special_characters(dialog, edit);
    SendMessageA(edit, found->message, 0, found->lParam);
    return found->result;
}

bool is_picker_open() {
    return picker_open;
}

void set_own_text(HWND dialog, int control, const std::string& text) {
    const bool outer = std::exchange(own_change, true); // a notification may lead to another text set here
    set_control_text(dialog, control, text);
    own_change = outer;
}

bool is_own_change() {
    return own_change;
}

void normalise_edit(HWND dialog, int control) {
    if (picker_open)
        return;
    const std::string text = control_text(dialog, control);
    const std::string normal = normal_escaped_text(text);
    if (normal != text)
        set_own_text(dialog, control, normal);
}

LRESULT CALLBACK PROGEDITPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_CONTEXTMENU)
        return call_own_procedure(hwnd, message, wParam, lParam);
    show_edit_menu(hwnd, lParam);
    return 0;
}

LRESULT CALLBACK EDITTABPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    return filter_tab(DLGC_WANTALLKEYS, PROGEDITPROC, hwnd, message, wParam, lParam);
}

LRESULT CALLBACK CHECKBOXTABPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    return filter_tab(DLGC_WANTALLKEYS, call_own_procedure, hwnd, message, wParam, lParam);
}

LRESULT CALLBACK COMBOBOXTABPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    return filter_tab(DLGC_WANTALLKEYS, call_own_procedure, hwnd, message, wParam, lParam);
}

LRESULT CALLBACK BUTTONTABPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    return filter_tab(DLGC_WANTTAB, call_own_procedure, hwnd, message, wParam, lParam);
}

LRESULT CALLBACK INTTABPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    return filter_tab(DLGC_WANTALLKEYS, INTPROC, hwnd, message, wParam, lParam);
}
