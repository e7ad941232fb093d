// The picker of special characters.
#include "program/Prog_screens.h"

#include "app/desktop.h"
#include "app/dialogs.h"
#include "program/Prog_edits.h"
#include "program/Prog_text.h"
#include "resources/control.h"

#include <cstring>
#include <string>

namespace {

constexpr UINT WM_ADD_SPECIAL = WM_USER + 11; // from the list to the dialog: append the selected character
constexpr int TEXT_LIMIT = 250;
constexpr int TAB_STOPS[] = {2, 44, 124}; // dialog units; every token reaches past the first

void create_specialchar_table(HWND dialog) {
    HWND list = GetDlgItem(dialog, IDC_SPECIAL_LIST);
    SendMessageA(list, LB_SETTABSTOPS, std::size(TAB_STOPS), reinterpret_cast<LPARAM>(TAB_STOPS));
    SendMessageA(list, LB_RESETCONTENT, 0, 0);
    for (const SPECIAL_CHARACTER& row : CHAR_TABLE) {
        const std::string line = std::string(row.hex_string) + '\t' + row.ascii_def + '\t' + row.output;
        SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
    }
}

void add_selected_character(HWND dialog) {
    const LRESULT row = SendDlgItemMessageA(dialog, IDC_SPECIAL_LIST, LB_GETCURSEL, 0, 0);
    if (row == LB_ERR)
        return;
    const char* token = CHAR_TABLE[static_cast<std::size_t>(row)].hex_string;
    HWND edit = GetDlgItem(dialog, IDC_SPECIAL_TEXT);
    const int end = GetWindowTextLengthA(edit);
    if (end + static_cast<int>(std::strlen(token)) > TEXT_LIMIT) {
        beep(); // a part of a token would be another token
        return;
    }
    SendMessageA(edit, EM_SETSEL, static_cast<WPARAM>(end), end);
    SendMessageA(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(token));
}

void copy_to_clipboard(HWND dialog) {
    HWND edit = GetDlgItem(dialog, IDC_SPECIAL_TEXT);
    SendMessageA(edit, EM_SETSEL, 0, -1);
    SendMessageA(edit, WM_COPY, 0, 0);
}

// Filter of the list: Enter and Space add.
LRESULT CALLBACK ADDSPECIALPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    const bool adds = wParam == VK_RETURN || wParam == VK_SPACE; // both are their characters too
    switch (message) {
    case WM_GETDLGCODE:
        return DLGC_WANTALLKEYS; // or Enter would press "Done"
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
        if (!adds)
            break;
        SendMessageA(GetParent(hwnd), WM_ADD_SPECIAL, 0, 0);
        return 0;
    case WM_KEYUP:
    case WM_SYSKEYUP:
    case WM_CHAR:
    case WM_SYSCHAR:
        if (adds)
            return 0;
        break;
    default:
        break;
    }
    // Tab and Escape are claimed with the rest and must still work.
    return COMBOBOXTABPROC(hwnd, message, wParam, lParam);
}

void do_special_command(HWND dialog, int control, int notification) {
    switch (control) {
    case IDC_SPECIAL_ADD:
        add_selected_character(dialog);
        break;
    case IDC_SPECIAL_LIST:
        if (notification == LBN_DBLCLK)
            add_selected_character(dialog);
        break;
    case IDOK:
        copy_to_clipboard(dialog);
        EndDialog(dialog, 1);
        break;
    case IDCANCEL:
        EndDialog(dialog, 0);
        break;
    default:
        break;
    }
}

} // namespace

INT_PTR CALLBACK SPECIALCHARPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
    HWND list = GetDlgItem(hDlg, IDC_SPECIAL_LIST);
    switch (message) {
    case WM_INITDIALOG:
        center_window(hDlg);
        install_filter(list, ADDSPECIALPROC);
        SendDlgItemMessageA(hDlg, IDC_SPECIAL_TEXT, EM_LIMITTEXT, TEXT_LIMIT, 0);
        create_specialchar_table(hDlg);
        SetFocus(list);
        return FALSE;
    case WM_DESTROY:
        remove_filter(list);
        return TRUE;
    case WM_ADD_SPECIAL:
        add_selected_character(hDlg);
        return TRUE;
    case WM_COMMAND:
        do_special_command(hDlg, LOWORD(wParam), HIWORD(wParam));
        return TRUE;
    default:
        return FALSE;
    }
}
