// Lookup Table Definition.
#include "program/LOOKUP_definitions.h"

#include "app/desktop.h"
#include "app/dialogs.h"
#include "program/Prog_edits.h"
#include "program/Prog_lcd.h"
#include "program/Prog_text.h"
#include "resources/control.h"
#include "resources/define.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr int VISIBLE_ENTRIES = 6;
constexpr int NO_ROW = -1;
constexpr std::size_t FULL_TABLE = 248; // characters from which on no entry is added
constexpr char END_OF_ENTRIES[] = "< End of Entries >";

// What the keys of an entry edit ask of the dialog, beyond the messages of all dialogs, which begin at
// WM_USER.
constexpr UINT WM_NEXT_CONTROL = WM_APP + 1;
constexpr UINT WM_PREVIOUS_CONTROL = WM_APP + 2;
constexpr UINT WM_ENTRY_DONE = WM_APP + 3;
constexpr UINT WM_ENTRY_UP = WM_APP + 4;
constexpr UINT WM_ENTRY_DOWN = WM_APP + 5;
// An entry or a button that acts on it has lost the focus, and the new focus is known.
constexpr UINT WM_ENTRY_LEFT = WM_APP + 6;

struct TABLE_EDITOR {
    LOOKUP_TABLE table;    // as the controls have it, but for the entry that is being typed
    bool changed;          // a new definition counts as changed from the start
    std::size_t first = 0; // the entry in the first row
    int row = NO_ROW;      // of the entry that Insert and Delete act on
};

TABLE_EDITOR& table_editor(HWND hDlg) {
    return *reinterpret_cast<TABLE_EDITOR*>(GetWindowLongPtrA(hDlg, DWLP_USER));
}

std::size_t entry_in(const TABLE_EDITOR& editor, int row) {
    return editor.first + static_cast<std::size_t>(row);
}

int row_of(int control) {
    const int row = control - IDC_TABLE_ENTRY;
    return row >= 0 && row < VISIBLE_ENTRIES ? row : NO_ROW;
}

void show_entries(HWND hDlg, TABLE_EDITOR& editor) {
    const std::vector<std::string>& entries = editor.table.entries;
    const int count = static_cast<int>(entries.size());
    const bool fills_rows = count >= VISIBLE_ENTRIES;
    // No further down than to the end mark in the last row.
    editor.first = std::min(editor.first, fills_rows ? entries.size() + 1 - VISIBLE_ENTRIES : 0);
    for (int row = 0; row < VISIBLE_ENTRIES; ++row) {
        const std::size_t index = entry_in(editor, row);
        const bool is_entry = index < entries.size();
        const std::string mark = index == entries.size() ? END_OF_ENTRIES : "";
        set_own_text(hDlg, IDC_TABLE_ENTRY + row, is_entry ? entries[index] : mark);
        EnableWindow(GetDlgItem(hDlg, IDC_TABLE_ENTRY + row), is_entry);
    }
    show_scroll_place(GetDlgItem(hDlg, IDC_TABLE_SCROLL), editor.first + 1, entries.size(), VISIBLE_ENTRIES);
}

// Puts what a row's edit holds into its entry; commas in it make it several.
void store_entry(HWND hDlg, TABLE_EDITOR& editor, int row) {
    if (row == NO_ROW || entry_in(editor, row) >= editor.table.entries.size())
        return;
    const std::string text = control_text(hDlg, IDC_TABLE_ENTRY + row);
    if (text == editor.table.entries[entry_in(editor, row)])
        return;
    replace_lookup_entry(editor.table, entry_in(editor, row), text);
    show_entries(hDlg, editor);
}

void enable_entry_buttons(HWND hDlg, bool enabled) {
    for (const int control : {IDC_TABLE_INSERT, IDC_TABLE_DELETE})
        EnableWindow(GetDlgItem(hDlg, control), enabled);
}

// Lets an edit take as many characters as the string has room for.
void limit_edit(HWND hDlg, int control, std::size_t room) {
    SendDlgItemMessageA(hDlg, control, EM_SETREADONLY, room == 0, 0); // a limit of 0 would be none
    SendDlgItemMessageA(hDlg, control, EM_LIMITTEXT, room, 0);
}

void enter_entry(HWND hDlg, TABLE_EDITOR& editor, int row) {
    const std::size_t own = editor.table.entries[entry_in(editor, row)].size();
    limit_edit(hDlg, IDC_TABLE_ENTRY + row, lookup_room(lookup_table_text(editor.table).size() - own));
    SendDlgItemMessageA(hDlg, IDC_TABLE_ENTRY + row, EM_SETSEL, 0, -1);
    editor.row = row;
    enable_entry_buttons(hDlg, true);
}

void enter_message(HWND hDlg, LOOKUP_TABLE table) {
    table.message.clear();
    const std::size_t room = lookup_room(lookup_table_text(table).size() + LOOKUP_MESSAGE_START.size());
    limit_edit(hDlg, IDC_LOOKUP_MESSAGE, std::min(room, LOOKUP_MESSAGE_LIMIT));
}

void focus_row(HWND hDlg, TABLE_EDITOR& editor, int row) {
    move_focus(hDlg, IDC_TABLE_ENTRY + row);
    enter_entry(hDlg, editor, row); // the focus may have been there before, on another entry
}

void go_to_entry(HWND hDlg, TABLE_EDITOR& editor, std::size_t index) {
    const std::size_t rows_above = std::min<std::size_t>(index, VISIBLE_ENTRIES - 1);
    editor.first = std::clamp(editor.first, index - rows_above, index);
    show_entries(hDlg, editor);
    focus_row(hDlg, editor, static_cast<int>(index - editor.first));
}

void insert_entry(HWND hDlg, TABLE_EDITOR& editor, std::size_t index) {
    if (lookup_table_text(editor.table).size() >= FULL_TABLE)
        return;
    auto& entries = editor.table.entries;
    entries.emplace(entries.begin() + static_cast<std::ptrdiff_t>(index));
    editor.changed = true;
    go_to_entry(hDlg, editor, index);
}

void delete_entry(HWND hDlg, TABLE_EDITOR& editor, std::size_t index) {
    auto& entries = editor.table.entries;
    entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(index));
    editor.changed = true;
    if (!entries.empty()) {
        go_to_entry(hDlg, editor, std::min(index, entries.size() - 1));
        return;
    }
    editor.row = NO_ROW;
    show_entries(hDlg, editor);
    move_focus(hDlg, IDC_TABLE_ADD);
}

// Up, Down and Enter in an entry.
void do_entry_key(HWND hDlg, TABLE_EDITOR& editor, UINT request) {
    if (editor.row == NO_ROW)
        return;
    store_entry(hDlg, editor, editor.row);
    const std::size_t index = entry_in(editor, editor.row);
    const bool is_last = index + 1 >= editor.table.entries.size();
    if (request == WM_ENTRY_DONE && is_last)
        insert_entry(hDlg, editor, index + 1);
    else if (request == WM_ENTRY_UP ? index == 0 : is_last)
        beep();
    else
        go_to_entry(hDlg, editor, request == WM_ENTRY_UP ? index - 1 : index + 1);
}

void scroll_entries(HWND hDlg, TABLE_EDITOR& editor, WPARAM scroll) {
    store_entry(hDlg, editor, editor.row);
    const int count = static_cast<int>(editor.table.entries.size());
    int place = static_cast<int>(editor.first) + 1; // from 1, as the scroll bar counts
    switch (LOWORD(scroll)) {
    case SB_LINEUP:
        place -= 1;
        break;
    case SB_LINEDOWN:
        place += place + VISIBLE_ENTRIES <= count + 1 ? 1 : 0;
        break;
    case SB_PAGEUP:
        place -= VISIBLE_ENTRIES;
        break;
    case SB_PAGEDOWN:
        if (count > VISIBLE_ENTRIES)
            place = std::min(place + VISIBLE_ENTRIES, count - VISIBLE_ENTRIES + 1);
        break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
        place = HIWORD(scroll);
        break;
    default:
        return;
    }
    editor.first = static_cast<std::size_t>(std::max(place, 1) - 1);
    show_entries(hDlg, editor);
    if (editor.row != NO_ROW) // the row may show the end mark now
        focus_row(hDlg, editor, std::min(editor.row, count - 1 - static_cast<int>(editor.first)));
}

// Insert and Delete stay enabled while they are used themselves, be it by mouse or by keyboard.
void note_new_focus(HWND hDlg, TABLE_EDITOR& editor) {
    HWND focus = GetFocus();
    const int control = GetDlgCtrlID(focus);
    if (!IsChild(hDlg, focus) || row_of(control) != NO_ROW || control == IDC_TABLE_INSERT ||
        control == IDC_TABLE_DELETE)
        return;
    editor.row = NO_ROW;
    enable_entry_buttons(hDlg, false);
}

// A box or the message has changed. A box that the string has no room for, entries and message whole, stays
// unchecked.
void take_options(HWND hDlg, TABLE_EDITOR& editor, int control) {
    editor.changed = true;
    read_shared_controls(hDlg, editor.table);
    const std::string text = lookup_table_text(editor.table);
    if (control == IDC_LOOKUP_MESSAGE || !is_ticked(hDlg, control) ||
        (text.size() <= LOOKUP_LIMIT && text.ends_with(editor.table.message)))
        return;
    beep();
    tick(hDlg, control, false);
    read_shared_controls(hDlg, editor.table);
}

void press_table_button(HWND hDlg, TABLE_EDITOR& editor, int control) {
    store_entry(hDlg, editor, editor.row);
    if (control == IDOK)
        EndDialog(hDlg, editor.changed ? 1 : 0);
    else if (control == IDCANCEL)
        EndDialog(hDlg, 0);
    else if (control == IDC_TABLE_ADD)
        insert_entry(hDlg, editor, editor.table.entries.size());
    else if (control == IDC_TABLE_INSERT && editor.row != NO_ROW)
        insert_entry(hDlg, editor, entry_in(editor, editor.row));
    else if (control == IDC_TABLE_DELETE && editor.row != NO_ROW)
        delete_entry(hDlg, editor, entry_in(editor, editor.row));
}

void do_entry_notification(HWND hDlg, TABLE_EDITOR& editor, WPARAM notification) {
    const int row = row_of(LOWORD(notification));
    switch (HIWORD(notification)) {
    case EN_SETFOCUS:
        enter_entry(hDlg, editor, row);
        break;
    case EN_CHANGE:
        editor.changed = editor.changed || !is_own_change();
        break;
    case EN_KILLFOCUS:
        store_entry(hDlg, editor, row);
        PostMessageA(hDlg, WM_ENTRY_LEFT, 0, 0);
        break;
    default:
        break;
    }
}

void do_table_command(HWND hDlg, TABLE_EDITOR& editor, WPARAM notification) {
    const int control = LOWORD(notification);
    const int code = HIWORD(notification);
    if (row_of(control) != NO_ROW) {
        do_entry_notification(hDlg, editor, notification);
    } else if (control == IDC_LOOKUP_MESSAGE) {
        if (code == EN_SETFOCUS)
            enter_message(hDlg, editor.table);
        if (is_edit(notification))
            take_options(hDlg, editor, control);
        if (code == EN_CHANGE)
            update_error_display(hDlg, true);
    } else if (control == IDC_LOOKUP_ACCEPT || control == IDC_LOOKUP_PARTIAL) {
        take_options(hDlg, editor, control);
    } else if (code == BN_KILLFOCUS) {
        PostMessageA(hDlg, WM_ENTRY_LEFT, 0, 0);
    } else if (code == BN_CLICKED || code == BN_DOUBLECLICKED) {
        press_table_button(hDlg, editor, control);
    }
}

struct ENTRY_KEY {
    WPARAM key;
    UINT request;
};
constexpr ENTRY_KEY ENTRY_KEYS[] = {
    {VK_TAB, WM_NEXT_CONTROL}, {VK_RETURN, WM_ENTRY_DONE}, {VK_UP, WM_ENTRY_UP}, {VK_DOWN, WM_ENTRY_DOWN}};

bool take_entry_key(HWND hDlg, WPARAM key) {
    const auto* found = std::ranges::find(ENTRY_KEYS, key, &ENTRY_KEY::key);
    if (found == std::end(ENTRY_KEYS))
        return false;
    const bool backwards = key == VK_TAB && GetKeyState(VK_SHIFT) < 0;
    SendMessageA(hDlg, backwards ? WM_PREVIOUS_CONTROL : found->request, 0, 0);
    return true;
}

// Tab comes to Insert and Delete from the last entry only.
constexpr ACCESS_KEY ACCESS_KEYS[] = {{'I', IDC_TABLE_INSERT}, {'D', IDC_TABLE_DELETE}};

LRESULT CALLBACK LENTERPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CHAR && wParam == '?') { // it starts the message
        beep();
        return 0;
    }
    return filter_entry_keys(take_entry_key, ACCESS_KEYS, hwnd, message, wParam, lParam);
}

void open_table_editor(HWND hDlg, TABLE_EDITOR& editor) {
    for (int row = 0; row < VISIBLE_ENTRIES; ++row)
        install_filter(GetDlgItem(hDlg, IDC_TABLE_ENTRY + row), LENTERPROC);
    fill_shared_controls(hDlg, editor.table, true);
    show_entries(hDlg, editor);
    if (editor.table.entries.empty())
        move_focus(hDlg, IDC_TABLE_ADD);
    else
        focus_row(hDlg, editor, 0);
}

INT_PTR CALLBACK LOOKUPTABLEPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        center_window(hDlg);
        SetWindowLongPtrA(hDlg, DWLP_USER, lParam);
        open_table_editor(hDlg, table_editor(hDlg));
        return FALSE; // the focus is set
    case WM_DESTROY:
        for (int row = 0; row < VISIBLE_ENTRIES; ++row)
            remove_filter(GetDlgItem(hDlg, IDC_TABLE_ENTRY + row));
        return TRUE;
    case WM_DRAWITEM:
        draw_display_line(lParam);
        return TRUE;
    case WM_VSCROLL:
        scroll_entries(hDlg, table_editor(hDlg), wParam);
        return TRUE;
    case WM_NEXT_CONTROL:
    case WM_PREVIOUS_CONTROL:
        SendMessageA(hDlg, WM_NEXTDLGCTL, message == WM_PREVIOUS_CONTROL, FALSE);
        return TRUE;
    case WM_ENTRY_DONE:
    case WM_ENTRY_UP:
    case WM_ENTRY_DOWN:
        do_entry_key(hDlg, table_editor(hDlg), message);
        return TRUE;
    case WM_ENTRY_LEFT:
        note_new_focus(hDlg, table_editor(hDlg));
        return TRUE;
    case WM_COMMAND:
        do_table_command(hDlg, table_editor(hDlg), wParam);
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace

bool define_table(std::string& text, HWND owner, bool is_new) {
    TABLE_EDITOR editor{.table = parse_lookup_table(text), .changed = is_new};
    if (run_dialog(DLG_LOOKUP_TABLE, owner, LOOKUPTABLEPROC, reinterpret_cast<LPARAM>(&editor)) != 1)
        return false;
    text = normal_escaped_text(lookup_table_text(editor.table));
    return true;
}
