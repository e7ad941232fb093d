#include "app/dialogs.h"

#include "app/TolvanP.h"
#include "app/desktop.h"
#include "resources/define.h"

#include <commctrl.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <vector>

HINSTANCE hInstance;
HWND hwndmain;

namespace {

constexpr char OWN_PROCEDURE[] = "own_procedure"; // the property of a control that a filter stands before
constexpr WPARAM BACKSPACE = 8;

constexpr int FILE_COMMANDS[] = {CMD_NEW, CMD_OPEN, CMD_SAVE, CMD_EXIT};
constexpr int FILE_PICTURE_WIDTH = 21; // pixels
constexpr int FILE_PICTURE_HEIGHT = 18;

constexpr INT_PTR KEY_DONE = -2; // answers to WM_VKEYTOITEM
constexpr INT_PTR KEY_LEFT_TO_LIST = -1;

WNDPROC own_procedure(HWND control) {
    return reinterpret_cast<WNDPROC>(GetPropA(control, OWN_PROCEDURE));
}

// In pixels, of the rows of a list box.
WPARAM widest_row(HWND dialog, HWND list, const std::vector<std::string>& rows,
                  std::span<const int> tab_stops) {
    std::vector<int> stops;
    for (const int tab_stop : tab_stops) {
        RECT stop{0, 0, tab_stop, 0};
        MapDialogRect(dialog, &stop);
        stops.push_back(stop.right);
    }
    HDC dc = GetDC(list);
    HGDIOBJ old_font = SelectObject(dc, reinterpret_cast<HGDIOBJ>(SendMessageA(list, WM_GETFONT, 0, 0)));
    WPARAM width = 0;
    for (const std::string& row : rows)
        width = std::max<WPARAM>(width,
                                 LOWORD(GetTabbedTextExtentA(dc, row.data(), static_cast<int>(row.size()),
                                                             static_cast<int>(stops.size()), stops.data())));
    SelectObject(dc, old_font);
    ReleaseDC(list, dc);
    return width;
}

// The pictures of a toolbar. A toolbar does not own its pictures: they are loaded once and kept.
HIMAGELIST toolbar_pictures(int bitmap_id, int count, int width, int height) {
    static std::map<int, HIMAGELIST> loaded; // by bitmap
    HIMAGELIST& pictures = loaded[bitmap_id];
    if (pictures == nullptr) {
        pictures = ImageList_Create(width, height, ILC_COLOR32 | ILC_MASK, count, 0);
        auto* bitmap = static_cast<HBITMAP>(
            LoadImageA(hInstance, MAKEINTRESOURCEA(bitmap_id), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
        ImageList_Add(pictures, bitmap, nullptr);
        DeleteObject(bitmap);
    }
    return pictures;
}

} // namespace

void center_window(HWND hwnd) {
    RECT window{};
    GetWindowRect(hwnd, &window);
    const int width = window.right - window.left;
    const int height = window.bottom - window.top;
    const int area_width = std::max(GetSystemMetrics(SM_CXFULLSCREEN), width);
    const int area_height = std::max(GetSystemMetrics(SM_CYFULLSCREEN) + GetSystemMetrics(SM_CYMENU), height);
    MoveWindow(hwnd, area_width / 2 - width / 2, area_height / 2 - height / 2, width, height, FALSE);
}

INT_PTR run_dialog(int dialog_id, HWND owner, DLGPROC procedure, LPARAM parameter) {
    return DialogBoxParamA(hInstance, MAKEINTRESOURCEA(dialog_id), owner, procedure, parameter);
}

std::string window_text(HWND window) {
    std::string text(static_cast<std::size_t>(GetWindowTextLengthA(window)) + 1, '\0'); // and its NUL
    text.resize(static_cast<std::size_t>(GetWindowTextA(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

std::string control_text(HWND dialog, int control) {
    return window_text(GetDlgItem(dialog, control));
}

void set_control_text(HWND dialog, int control, const std::string& text) {
    SetDlgItemTextA(dialog, control, text.c_str());
}

bool is_ticked(HWND dialog, int box) {
    return IsDlgButtonChecked(dialog, box) == BST_CHECKED;
}

void tick(HWND dialog, int box, bool ticked) {
    CheckDlgButton(dialog, box, ticked ? BST_CHECKED : BST_UNCHECKED);
}

INT_PTR run_choice_dialog(HWND dialog, UINT message, WPARAM wParam, std::span<const RADIO_CHOICE> choices) {
    switch (message) {
    case WM_INITDIALOG:
        center_window(dialog);
        tick(dialog, choices.front().button, true);
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDCANCEL)
            EndDialog(dialog, 0);
        else if (LOWORD(wParam) == IDOK)
            for (const RADIO_CHOICE& choice : choices)
                if (is_ticked(dialog, choice.button))
                    EndDialog(dialog, choice.result);
        return TRUE;
    default:
        return FALSE;
    }
}

bool answers_yes(HWND owner, const std::string& question) {
    return show_message(owner, question, PROGRAM_TITLE, MESSAGE_ICON::QUESTION, MESSAGE_BUTTONS::YES_NO) ==
           BUTTON::YES;
}

bool saves_or_gives_up(HWND owner, const std::string& question, const std::function<bool()>& save) {
    switch (show_message(owner, question, PROGRAM_TITLE, MESSAGE_ICON::QUESTION,
                         MESSAGE_BUTTONS::YES_NO_CANCEL)) {
    case BUTTON::YES:
        return save();
    case BUTTON::NO:
        return true;
    default:
        return false;
    }
}

void move_focus(HWND dialog, int control) {
    SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, control)), TRUE);
}

void enable_control(HWND dialog, int control, bool enabled, int next_focus) {
    HWND window = GetDlgItem(dialog, control);
    if (!enabled && GetFocus() == window)
        move_focus(dialog, next_focus);
    EnableWindow(window, enabled);
}

void install_filter(HWND control, WNDPROC filter) {
    SetPropA(control, OWN_PROCEDURE, reinterpret_cast<HANDLE>(GetWindowLongPtrA(control, GWLP_WNDPROC)));
    SetWindowLongPtrA(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(filter));
}

void remove_filter(HWND control) {
    SetWindowLongPtrA(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(own_procedure(control)));
    RemovePropA(control, OWN_PROCEDURE);
}

LRESULT CALLBACK call_own_procedure(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
    return CallWindowProcA(own_procedure(control), control, message, wParam, lParam);
}

LRESULT filter_entry_keys(bool (*take_key)(HWND dialog, WPARAM key), std::span<const ACCESS_KEY> access_keys,
                          HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    HWND dialog = GetParent(hwnd);
    switch (message) {
    case WM_GETDLGCODE:
        return DLGC_WANTALLKEYS | call_own_procedure(hwnd, message, wParam, lParam);
    case WM_KEYDOWN:
        if (wParam == VK_ESCAPE)
            PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
        else if (!take_key(dialog, wParam))
            break;
        return 0;
    case WM_CHAR: // the characters of these keys are their keys' codes
        if (wParam == VK_TAB || wParam == VK_RETURN || wParam == VK_ESCAPE)
            return 0;
        break;
    case WM_SYSCHAR:
        for (const ACCESS_KEY& key : access_keys) {
            if (wParam == key.letter || wParam == key.letter + 'a' - 'A') {
                SendMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(key.button), 0);
                return 0;
            }
        }
        break;
    default:
        break;
    }
    return call_own_procedure(hwnd, message, wParam, lParam);
}

LRESULT CALLBACK INTPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    const bool digit = wParam >= '0' && wParam <= '9';
    if (message == WM_CHAR && !digit && wParam != BACKSPACE) {
        beep();
        return 0;
    }
    return call_own_procedure(hwnd, message, wParam, lParam);
}

unsigned edit_number(HWND dialog, int control) {
    const std::string text = control_text(dialog, control);
    unsigned number = 0; // from_chars leaves it alone when there is nothing to read or too much
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

void step_edit(HWND dialog, int control, int direction, const STEP_RANGE& range) {
    if (const auto value = step_value(edit_number(dialog, control), direction, range))
        SetDlgItemInt(dialog, control, *value, FALSE);
}

void prepare_stepper(HWND dialog, int updown) {
    // A range with room both ways and no fellow window: the position moves freely and means nothing.
    SendDlgItemMessageA(dialog, updown, UDM_SETRANGE32, static_cast<WPARAM>(INT_MIN / 2), INT_MAX / 2);
    SendDlgItemMessageA(dialog, updown, UDM_SETPOS32, 0, 0);
}

int step_direction(LPARAM lParam) {
    const auto* step = reinterpret_cast<const NMUPDOWN*>(lParam);
    return step->hdr.code == UDN_DELTAPOS ? step->iDelta : 0;
}

void fill_list(HWND dialog, int control, std::span<const char* const> texts, unsigned selected) {
    HWND list = GetDlgItem(dialog, control);
    SendMessageA(list, CB_RESETCONTENT, 0, 0);
    for (const char* text : texts)
        SendMessageA(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    if (selected < texts.size())
        SendMessageA(list, CB_SETCURSEL, selected, 0);
}

unsigned selected_entry(HWND dialog, int control, unsigned if_none) {
    const LRESULT selected = SendDlgItemMessageA(dialog, control, CB_GETCURSEL, 0, 0);
    return selected == CB_ERR ? if_none : static_cast<unsigned>(selected);
}

void show_rows(HWND dialog, int list, const std::vector<std::string>& rows, std::size_t selected,
               std::span<const int> tab_stops) {
    HWND window = GetDlgItem(dialog, list);
    const LRESULT top = SendMessageA(window, LB_GETTOPINDEX, 0, 0);
    SendMessageA(window, WM_SETREDRAW, FALSE, 0);
    SendMessageA(window, LB_RESETCONTENT, 0, 0);
    for (const std::string& row : rows)
        SendMessageA(window, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(row.c_str()));
    SendMessageA(window, LB_SETHORIZONTALEXTENT, widest_row(dialog, window, rows, tab_stops), 0);
    SendMessageA(window, LB_SETTOPINDEX, static_cast<WPARAM>(top), 0);
    SendMessageA(window, LB_SETCURSEL, selected, 0);
    SendMessageA(window, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(window, nullptr, TRUE);
}

void show_scroll_place(HWND bar, std::size_t first, std::size_t count, int rows) {
    const bool fills_rows = count >= static_cast<std::size_t>(rows);
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    info.nMin = 1;
    info.nMax = fills_rows ? static_cast<int>(count) : 1;
    info.nPage = fills_rows ? static_cast<UINT>(rows) : 1;
    info.nPos = static_cast<int>(first);
    SetScrollInfo(bar, SB_CTL, &info, TRUE);
}

INT_PTR take_list_key(HWND dialog, int key, int insert_command, int delete_command) {
    if (key != VK_INSERT && key != VK_DELETE)
        return KEY_LEFT_TO_LIST;
    const int command = key == VK_INSERT ? insert_command : delete_command;
    SendMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(command), 0);
    return KEY_DONE;
}

HWND create_toolbar(HWND owner, int control_id, int bitmap_id, std::span<const int> commands, int width,
                    int height) {
    const auto count = static_cast<WPARAM>(commands.size());
    HWND toolbar = CreateWindowExA(
        0, TOOLBARCLASSNAMEA, nullptr, WS_CHILD | WS_VISIBLE | TBSTYLE_TOOLTIPS | TBSTYLE_FLAT, 0, 0, 0, 0,
        owner, reinterpret_cast<HMENU>(static_cast<INT_PTR>(control_id)), hInstance, nullptr);
    if (toolbar == nullptr) {
        show_message(nullptr, "Toolbar Bar not created!", "", MESSAGE_ICON::NONE);
        return nullptr;
    }
    std::vector<TBBUTTON> buttons(commands.size());
    for (std::size_t i = 0; i < commands.size(); ++i)
        buttons[i] = {.iBitmap = static_cast<int>(i),
                      .idCommand = commands[i],
                      .fsState = TBSTATE_ENABLED,
                      .fsStyle = BTNS_BUTTON,
                      .bReserved = {},
                      .dwData = 0,
                      .iString = -1};
    HIMAGELIST pictures = toolbar_pictures(bitmap_id, static_cast<int>(commands.size()), width, height);
    SendMessageA(toolbar, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
    SendMessageA(toolbar, TB_SETBITMAPSIZE, 0, MAKELPARAM(width, height));
    SendMessageA(toolbar, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(pictures));
    SendMessageA(toolbar, TB_ADDBUTTONSA, count, reinterpret_cast<LPARAM>(buttons.data()));
    // The pictures bring their own margin: without padding a button is exactly as large as its picture.
    SendMessageA(toolbar, TB_SETPADDING, 0, MAKELPARAM(0, 0));
    SendMessageA(toolbar, TB_SETBUTTONSIZE, 0, MAKELPARAM(width, height));
    SendMessageA(toolbar, TB_AUTOSIZE, 0, 0);
    return toolbar;
}

HWND create_file_toolbar(HWND owner) {
    return create_toolbar(owner, ID_FILE_TOOLBAR, BITMAP_FILE_TOOLBAR, FILE_COMMANDS, FILE_PICTURE_WIDTH,
                          FILE_PICTURE_HEIGHT);
}

bool give_tooltip_text(LPARAM lParam) {
    static char szBuf[128]; // read by the tooltip after this procedure has returned
    auto* request = reinterpret_cast<NMTTDISPINFOA*>(lParam);
    if (request->hdr.code != TTN_GETDISPINFOA)
        return false;
    LoadStringA(hInstance, static_cast<UINT>(request->hdr.idFrom), szBuf, sizeof szBuf);
    request->lpszText = szBuf;
    return true;
}
