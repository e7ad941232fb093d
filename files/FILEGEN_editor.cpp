// The editors of lookup files and data files: thirteen lines of the record store at a time.
#include "files/FILEGEN_screens.h"

#include "app/desktop.h"
#include "app/dialogs.h"
#include "app/file_dialog.h"
#include "app/settings.h"
#include "convert/CONVERT.h"
#include "files/FILEGEN.h"
#include "files/FILEGEN_edits.h"
#include "files/FILEGEN_formats.h"
#include "files/MEMORY.h"
#include "program/Prog_edits.h"
#include "resources/control.h"
#include "resources/define.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string>

bool file_changed_flag;

namespace {

constexpr int NO_ROW = -1;
constexpr std::int64_t ANY_NUMBER_OF_LINES = INT32_MAX;
constexpr std::int64_t WHEEL_LINES = 3; // a notch of the mouse wheel
constexpr WPARAM TEXT_LIMIT = 250;      // characters of a line that can be typed
constexpr char END_OF_ENTRIES[] = "< End of Entries >";

// What the keys of a line ask of the editor.
constexpr UINT WM_LINE_DONE = WM_USER + 1;
constexpr UINT WM_NEXT_FIELD = WM_USER + 2;
constexpr UINT WM_PREVIOUS_FIELD = WM_USER + 3;
constexpr UINT WM_LINE_UP = WM_USER + 4;
constexpr UINT WM_LINE_DOWN = WM_USER + 5;
constexpr UINT WM_PAGE_UP = WM_USER + 6;
constexpr UINT WM_PAGE_DOWN = WM_USER + 7;
constexpr UINT WM_FIRST_LINE = WM_USER + 8;
constexpr UINT WM_LAST_LINE = WM_USER + 9;
// A line or a button that acts on it has lost the focus, and the new focus is known.
constexpr UINT WM_LINE_LEFT = WM_USER + 10;

struct LINE_KEY {
    WPARAM key;
    int modifier; // that is held down; 0 for any
    UINT request;
    std::int64_t lines; // to move on
};
constexpr LINE_KEY LINE_KEYS[] = {
    {VK_RETURN, 0, WM_LINE_DONE, 1},
    {VK_TAB, VK_SHIFT, WM_PREVIOUS_FIELD, -1},
    {VK_TAB, 0, WM_NEXT_FIELD, 1},
    {VK_UP, 0, WM_LINE_UP, -1},
    {VK_DOWN, 0, WM_LINE_DOWN, 1},
    {VK_PRIOR, 0, WM_PAGE_UP, -VISIBLE_LINES},
    {VK_NEXT, 0, WM_PAGE_DOWN, VISIBLE_LINES},
    {VK_HOME, VK_CONTROL, WM_FIRST_LINE, -ANY_NUMBER_OF_LINES},
    {VK_END, VK_CONTROL, WM_LAST_LINE, ANY_NUMBER_OF_LINES},
};

struct EDITOR_KIND {
    const char* title;
    const char* name_label;
    const char* records_label;
    std::span<const FILE_FILTER> open_filters;
    FILE_FILTER save_filter;
    const char* extension;
    const char* invalid_text;
    const char* not_saved_text;
    const char* caption; // of what is told about a save
};
constexpr FILE_FILTER DATA_FILTERS[] = {{"Data Files(*.DAT)", "*.dat"},
                                        {"Dbase Files(*.DBF)", "*.dbf"},
                                        {"Ascii Text Files(*.TXT)", "*.txt"},
                                        {"All Files(*.*)", "*.*"}};
constexpr FILE_FILTER LOOKUP_FILTERS[] = {
    {"Lookup Files(*.LKT)", "*.lkt"},         {"Library Files(*.LBT)", "*.lbt"},
    {"Dbase Files(*.DBF)", "*.dbf"},          {"Ascii Text Files(*.TXT)", "*.txt"},
    {"Quendal Lookup Files(*.LKP)", "*.lkp"}, {"All Files(*.*)", "*.*"}};
constexpr EDITOR_KIND EDITOR_KINDS[] = {
    // by file type
    {"Data File Editor", "Data Filename:", "Data Records", DATA_FILTERS, DATA_FILTERS[0], ".dat",
     "Invalid Data File!", "Error Saving Data File!", "Data File"},
    {"Lookup File Editor", "Lookup Filename:", "Lookup Records", LOOKUP_FILTERS, LOOKUP_FILTERS[0], ".lkt",
     "Invalid Lookup File!", "Error Saving Lookup File!", "Lookup File"},
};

struct FILE_EDITOR {
    int file_type;
    int row = NO_ROW;        // of the line that Insert and Delete act on
    int edited_row = NO_ROW; // of the line whose text differs from its record
    bool told_of_changes = false;
};

FILE_EDITOR& file_editor(HWND hDlg) {
    return *reinterpret_cast<FILE_EDITOR*>(GetWindowLongPtrA(hDlg, DWLP_USER));
}

const EDITOR_KIND& kind_of(const FILE_EDITOR& editor) {
    return EDITOR_KINDS[editor.file_type];
}

// --- lines and records ---

int row_of(int control) {
    const int row = control - IDC_FILE_LINE;
    return row >= 0 && row < VISIBLE_LINES ? row : NO_ROW;
}

std::int64_t line_in(int row) {
    return std::int64_t{record_index_base} + row;
}

char* record_in(std::int64_t line) {
    return goto_record(static_cast<std::uint32_t>(line - 1));
}

// The highest first line: the mark behind the last record is in the last row.
std::int64_t last_base() {
    return std::max<std::int64_t>(std::int64_t{record_entry_total} + 2 - VISIBLE_LINES, 1);
}

void set_base(std::int64_t base) {
    record_index_base = static_cast<std::uint32_t>(std::clamp<std::int64_t>(base, 1, last_base()));
}

// Puts the focus where the operator works on.
void move_focus(HWND hDlg, int control) {
    SendMessageA(hDlg, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(hDlg, control)), TRUE);
}

void leave_line(HWND hDlg, FILE_EDITOR& editor) {
    editor.row = NO_ROW;
    for (const int control : {IDC_FILE_INSERT, IDC_FILE_DELETE})
        EnableWindow(GetDlgItem(hDlg, control), FALSE);
}

// No line is chosen: the focus goes to the tab stop before them, or to where there will be one.
void leave_lines(HWND hDlg, FILE_EDITOR& editor) {
    move_focus(hDlg, record_entry_total == 0 ? IDC_FILE_ADD : IDC_FILE_NAME);
    leave_line(hDlg, editor);
}

void enable_repeats(HWND hDlg, bool enabled) {
    for (const int control : {IDC_FILE_REP_INSERT, IDC_FILE_REP_DELETE})
        EnableWindow(GetDlgItem(hDlg, control), enabled);
}

void show_scroll_bar(HWND hDlg) {
    const bool fills_rows = record_entry_total >= VISIBLE_LINES;
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    info.nMin = 1;
    info.nMax = fills_rows ? static_cast<int>(record_entry_total) : 1;
    info.nPage = fills_rows ? VISIBLE_LINES : 1;
    info.nPos = static_cast<int>(record_index_base);
    SetScrollInfo(GetDlgItem(hDlg, IDC_FILE_SCROLL), SB_CTL, &info, TRUE);
}

// The visible lines as the store has them. What is being typed has been stored before.
void show_lines(HWND hDlg, FILE_EDITOR& editor) {
    set_base(record_index_base);
    editor.edited_row = NO_ROW;
    char* record = record_in(record_index_base);
    for (int row = 0; row < VISIBLE_LINES; ++row) {
        const std::int64_t line = line_in(row);
        const bool is_record = line <= record_entry_total && *record != END_OF_RECORDS;
        const char* mark = line == std::int64_t{record_entry_total} + 1 ? END_OF_ENTRIES : "";
        set_own_text(hDlg, IDC_FILE_LINE + row, is_record ? record : mark);
        set_control_text(hDlg, IDC_FILE_NUMBER + row, is_record ? std::to_string(line) : "");
        EnableWindow(GetDlgItem(hDlg, IDC_FILE_LINE + row), is_record);
        if (is_record)
            record = goto_next_record(record);
    }
    show_scroll_bar(hDlg);
    enable_repeats(hDlg, record_entry_total > 0);
    HWND focus = GetFocus();
    if (focus == nullptr || !IsWindowEnabled(focus)) // the keyboard would reach nothing
        leave_lines(hDlg, editor);
}

void show_names(HWND hDlg) {
    set_control_text(hDlg, IDC_FILE_NAME, sys_file_name);
    set_own_text(hDlg, IDC_FILE_PROGRAM, data_program_name);
}

void enter_line(HWND hDlg, FILE_EDITOR& editor, int row) {
    editor.row = row;
    SendDlgItemMessageA(hDlg, IDC_FILE_LINE + row, EM_SETSEL, 0, -1);
    for (const int control : {IDC_FILE_INSERT, IDC_FILE_DELETE})
        EnableWindow(GetDlgItem(hDlg, control), TRUE);
}

void focus_row(HWND hDlg, FILE_EDITOR& editor, int row) {
    move_focus(hDlg, IDC_FILE_LINE + row);
    enter_line(hDlg, editor, row); // the focus may have been there before, on another line
}

// The view moves no further than it must; below the last record it shows the mark.
void go_to_line(HWND hDlg, FILE_EDITOR& editor, std::int64_t line) {
    const std::int64_t bottom = line == record_entry_total ? line + 1 : line;
    set_base(std::clamp<std::int64_t>(record_index_base, bottom + 1 - VISIBLE_LINES, line));
    show_lines(hDlg, editor);
    focus_row(hDlg, editor, static_cast<int>(line - record_index_base));
}

// --- edits ---

// Puts an edited line into its record. Without memory the editor cannot go on.
void store_line(HWND hDlg, FILE_EDITOR& editor) {
    if (editor.edited_row == NO_ROW)
        return;
    const int control = IDC_FILE_LINE + editor.edited_row;
    const char* record =
        realloc_record_entry(record_in(line_in(editor.edited_row)), control_text(hDlg, control));
    editor.edited_row = NO_ROW;
    if (record == nullptr) {
        report_out_of_memory(hDlg);
        EndDialog(hDlg, 0);
    } else if (control_text(hDlg, control) != record) {
        set_own_text(hDlg, control, record);
    }
}

// The store holds no characters 254 and 255. That it has replaced some is told once a file.
void tell_of_changed_records(HWND hDlg, FILE_EDITOR& editor) {
    if (changed_records == 0 || !IsWindowEnabled(hDlg))
        return;
    changed_records = 0;
    if (!editor.told_of_changes)
        show_message(hDlg,
                     "Records cannot hold the characters with the numbers 254 and 255.\n"
                     "Each was replaced by a question mark.",
                     kind_of(editor).caption, MESSAGE_ICON::WARNING);
    editor.told_of_changes = true;
}

void insert_line(HWND hDlg, FILE_EDITOR& editor, std::int64_t line) {
    if (insert_record_entry(record_in(line), "") == nullptr) {
        report_out_of_memory(hDlg);
        return;
    }
    ++record_entry_total;
    file_changed_flag = true;
    go_to_line(hDlg, editor, line);
}

void delete_line(HWND hDlg, FILE_EDITOR& editor, std::int64_t line) {
    delete_record_entry(record_in(line));
    --record_entry_total;
    file_changed_flag = true;
    if (record_entry_total > 0) {
        go_to_line(hDlg, editor, std::min<std::int64_t>(line, record_entry_total));
    } else {
        show_lines(hDlg, editor);
        leave_lines(hDlg, editor);
    }
}

void repeat_edit(HWND hDlg, FILE_EDITOR& editor, int dialog, DLGPROC procedure) {
    const std::uint32_t total = record_entry_total;
    run_dialog(dialog, hDlg, procedure);
    if (record_entry_total == total)
        return;
    file_changed_flag = true;
    if (dialog == DLG_REPEAT_ADD)
        set_base(std::int64_t{total} + 1); // the first of the new ones, as far as the view goes
    show_lines(hDlg, editor);
}

// A key that moves between the lines.
void move_by_key(HWND hDlg, FILE_EDITOR& editor, const LINE_KEY& key) {
    if (editor.row == NO_ROW)
        return;
    store_line(hDlg, editor);
    const std::int64_t line = line_in(editor.row);
    const std::int64_t target = std::clamp<std::int64_t>(line + key.lines, 1, record_entry_total);
    if (target != line) {
        if (std::abs(key.lines) >= VISIBLE_LINES)
            set_base(record_index_base + key.lines);
        go_to_line(hDlg, editor, target);
    } else if (key.request == WM_LINE_DONE) {
        insert_line(hDlg, editor, line + 1);
    } else if (key.request == WM_NEXT_FIELD || key.request == WM_PREVIOUS_FIELD) {
        SendMessageA(hDlg, WM_NEXTDLGCTL, key.request == WM_PREVIOUS_FIELD, FALSE);
    } else {
        beep();
    }
}

void scroll_to(HWND hDlg, FILE_EDITOR& editor, std::int64_t base) {
    store_line(hDlg, editor);
    set_base(base);
    show_lines(hDlg, editor);
    if (editor.row != NO_ROW) { // which may show the mark now
        const auto last = static_cast<int>(record_entry_total - record_index_base);
        focus_row(hDlg, editor, std::min(editor.row, last));
    }
}

// The message brings 16 bits of the place, the bar has it whole. Its end is the end of the list, where the
// mark is.
std::int64_t thumb_place(HWND bar, WPARAM scroll) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_TRACKPOS;
    GetScrollInfo(bar, SB_CTL, &info);
    const int place = LOWORD(info.nTrackPos) == HIWORD(scroll) ? info.nTrackPos : HIWORD(scroll);
    return place + 1 >= last_base() ? last_base() : place;
}

void scroll_lines(HWND hDlg, FILE_EDITOR& editor, WPARAM scroll) {
    const std::int64_t base = record_index_base;
    switch (LOWORD(scroll)) {
    case SB_LINEUP:
        return scroll_to(hDlg, editor, base - 1);
    case SB_LINEDOWN:
        return scroll_to(hDlg, editor, base + 1);
    case SB_PAGEUP:
        return scroll_to(hDlg, editor, base - VISIBLE_LINES);
    case SB_PAGEDOWN:
        return scroll_to(hDlg, editor, base + VISIBLE_LINES);
    case SB_TOP:
        return scroll_to(hDlg, editor, 1);
    case SB_BOTTOM:
        return scroll_to(hDlg, editor, last_base());
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
        return scroll_to(hDlg, editor, thumb_place(GetDlgItem(hDlg, IDC_FILE_SCROLL), scroll));
    default:
        return;
    }
}

// Insert and Delete stay enabled while they are used themselves, be it by mouse or by keyboard, and on the
// way there.
void note_new_focus(HWND hDlg, FILE_EDITOR& editor) {
    HWND focus = GetFocus();
    const int control = GetDlgCtrlID(focus);
    if (IsChild(hDlg, focus) && row_of(control) == NO_ROW && control != IDC_FILE_ADD &&
        control != IDC_FILE_INSERT && control != IDC_FILE_DELETE)
        leave_line(hDlg, editor);
}

// --- the file ---

bool may_overwrite(HWND hDlg) {
    return record_entry_total == 0 || answers_yes(hDlg, "Overwrite Current Data?");
}

// Nothing in the store and no names. False when even that takes more memory than there is: the editor closes.
bool empty_store(HWND hDlg) {
    record_entry_total = 0;
    record_index_base = 1;
    sys_file_name.clear();
    data_program_name.clear();
    if (free_memchunks() != nullptr)
        return true;
    report_out_of_memory(hDlg);
    EndDialog(hDlg, 0);
    return false;
}

void show_file(HWND hDlg, FILE_EDITOR& editor) {
    file_changed_flag = false;
    editor.told_of_changes = false;
    changed_records = 0; // the reader has told
    show_names(hDlg);
    show_lines(hDlg, editor);
    leave_lines(hDlg, editor);
}

void create_file(HWND hDlg, FILE_EDITOR& editor) {
    if (may_overwrite(hDlg) && empty_store(hDlg))
        show_file(hDlg, editor);
}

void open_file(HWND hDlg, FILE_EDITOR& editor) {
    if (!may_overwrite(hDlg))
        return;
    FILE_DIALOG dialog;
    dialog.owner = hDlg;
    dialog.filters = kind_of(editor).open_filters;
    dialog.directory = &data_directory;
    if (!ask_open_name(dialog) || !empty_store(hDlg))
        return;
    show_hourglass();
    quendal_file_refused = false;
    const std::int64_t result = read_edit_file(hDlg, dialog.name, editor.file_type);
    const bool loaded = result > 0 || result == -1;
    if (!loaded) {
        if (!quendal_file_refused)
            show_message(hDlg, kind_of(editor).invalid_text, "Invalid/Corrupt", MESSAGE_ICON::WARNING);
        if (!empty_store(hDlg))
            return;
    }
    record_entry_total = record_count();
    show_file(hDlg, editor);
    enable_repeats(hDlg, loaded);
}

// True when the file was saved.
bool save_file(HWND hDlg, FILE_EDITOR& editor) {
    const EDITOR_KIND& kind = kind_of(editor);
    if (editor.file_type == DATA_FILE_EDITED && data_program_name.empty()) {
        show_message(hDlg, "Data File Missing Associated Program Name!", kind.caption, MESSAGE_ICON::WARNING);
        move_focus(hDlg, IDC_FILE_PROGRAM);
        leave_line(hDlg, editor);
        return false;
    }
    FILE_DIALOG dialog;
    dialog.owner = hDlg;
    dialog.filters = {&kind.save_filter, 1};
    if (!sys_file_name.empty())
        dialog.name = sys_file_name + kind.extension;
    dialog.directory = &data_directory;
    if (!ask_save_name(dialog, kind.extension))
        return false;
    show_hourglass();
    const int result = write_edit_file(hDlg, dialog.name, editor.file_type);
    if (result < 0)
        show_message(hDlg, kind.not_saved_text, kind.caption, MESSAGE_ICON::WARNING);
    if (result <= 0)
        return false;
    file_changed_flag = false;
    show_names(hDlg);
    return true;
}

bool may_leave_file(HWND hDlg, FILE_EDITOR& editor) {
    return !file_changed_flag ||
           saves_or_gives_up(hDlg, "Save File Changes?", [&] { return save_file(hDlg, editor); });
}

// --- commands ---

void take_line_notification(HWND hDlg, FILE_EDITOR& editor, int row, int notification) {
    switch (notification) {
    case EN_SETFOCUS:
        enter_line(hDlg, editor, row);
        break;
    case EN_CHANGE:
        if (is_own_change())
            break;
        if (editor.edited_row != row)
            store_line(hDlg, editor);
        editor.edited_row = row;
        file_changed_flag = true;
        break;
    case EN_KILLFOCUS:
        store_line(hDlg, editor);
        PostMessageA(hDlg, WM_LINE_LEFT, 0, 0);
        break;
    default:
        break;
    }
}

void take_program_name(HWND hDlg) {
    if (is_own_change())
        return;
    data_program_name = control_text(hDlg, IDC_FILE_PROGRAM).substr(0, FILE_NAME_LIMIT);
    file_changed_flag = true;
}

void do_file_command(HWND hDlg, FILE_EDITOR& editor, int command) {
    store_line(hDlg, editor);
    tell_of_changed_records(hDlg, editor);
    switch (command) {
    case CMD_NEW:
        return create_file(hDlg, editor);
    case CMD_OPEN:
        return open_file(hDlg, editor);
    case CMD_SAVE:
        save_file(hDlg, editor);
        return;
    case IDCANCEL: // Escape, the close box and Close
        if (may_leave_file(hDlg, editor))
            EndDialog(hDlg, 1);
        return;
    case IDC_FILE_ADD:
        return insert_line(hDlg, editor, std::int64_t{record_entry_total} + 1);
    case IDC_FILE_INSERT:
        if (editor.row != NO_ROW)
            insert_line(hDlg, editor, line_in(editor.row));
        return;
    case IDC_FILE_DELETE:
        if (editor.row != NO_ROW)
            delete_line(hDlg, editor, line_in(editor.row));
        return;
    case IDC_FILE_REP_ADD:
        return repeat_edit(hDlg, editor, DLG_REPEAT_ADD, REPEATADDPROC);
    case IDC_FILE_REP_INSERT:
        return repeat_edit(hDlg, editor, DLG_REPEAT_INSERT, REPEATINSERTPROC);
    case IDC_FILE_REP_DELETE:
        return repeat_edit(hDlg, editor, DLG_REPEAT_DELETE, REPEATDELETEPROC);
    default:
        return;
    }
}

void take_notification(HWND hDlg, FILE_EDITOR& editor, int control, int notification) {
    if (row_of(control) != NO_ROW) {
        take_line_notification(hDlg, editor, row_of(control), notification);
    } else if (control == IDC_FILE_PROGRAM) {
        if (notification == EN_CHANGE)
            take_program_name(hDlg);
    } else if (notification == BN_KILLFOCUS) {
        PostMessageA(hDlg, WM_LINE_LEFT, 0, 0);
    } else if (notification == BN_CLICKED || notification == BN_DOUBLECLICKED) { // of a menu item too
        if (!IsWindowEnabled(hDlg)) // a dialog is open: this one must outlive it
            return;
        do_file_command(hDlg, editor, control);
        tell_of_changed_records(hDlg, editor);
    }
}

// --- keys ---

const LINE_KEY* key_pressed(WPARAM key) {
    const auto* found = std::ranges::find_if(LINE_KEYS, [key](const LINE_KEY& row) {
        return row.key == key && (row.modifier == 0 || GetKeyState(row.modifier) < 0);
    });
    return found == std::end(LINE_KEYS) ? nullptr : found;
}

// As in the other editor of entries, whose buttons have no access keys in their captions either.
int button_of_access_key(WPARAM letter) {
    switch (letter) {
    case 'a':
    case 'A':
        return IDC_FILE_ADD;
    case 'i':
    case 'I':
        return IDC_FILE_INSERT;
    case 'd':
    case 'D':
        return IDC_FILE_DELETE;
    default:
        return 0;
    }
}

// Filter for the lines. It claims all keys; those without a meaning here are the edit's own.
LRESULT CALLBACK ENTERPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    HWND hDlg = GetParent(hwnd);
    switch (message) {
    case WM_GETDLGCODE:
        return DLGC_WANTALLKEYS | call_own_procedure(hwnd, message, wParam, lParam);
    case WM_KEYDOWN:
        if (wParam == VK_ESCAPE)
            PostMessageA(hDlg, WM_COMMAND, IDCANCEL, 0);
        else if (const LINE_KEY* key = key_pressed(wParam))
            SendMessageA(hDlg, key->request, 0, 0);
        else
            break;
        return 0;
    case WM_KEYUP:
        if (key_pressed(wParam) != nullptr)
            return 0;
        break;
    case WM_CHAR:
        if (wParam == VK_TAB || wParam == VK_RETURN || wParam == VK_ESCAPE)
            return 0;
        break;
    case WM_SYSCHAR:
        if (const int button = button_of_access_key(wParam); button != 0) {
            SendMessageA(hDlg, WM_COMMAND, static_cast<WPARAM>(button), 0);
            return 0;
        }
        break;
    default:
        break;
    }
    return call_own_procedure(hwnd, message, wParam, lParam);
}

void initialise(HWND hDlg, FILE_EDITOR& editor) {
    const EDITOR_KIND& kind = kind_of(editor);
    center_window(hDlg);
    SetWindowTextA(hDlg, kind.title);
    set_control_text(hDlg, IDC_FILE_NAME_LABEL, kind.name_label);
    set_control_text(hDlg, IDC_FILE_RECORDS_LABEL, kind.records_label);
    for (const int control : {IDC_FILE_PROGRAM_LABEL, IDC_FILE_PROGRAM})
        ShowWindow(GetDlgItem(hDlg, control), editor.file_type == DATA_FILE_EDITED ? SW_SHOW : SW_HIDE);
    SendDlgItemMessageA(hDlg, IDC_FILE_PROGRAM, EM_LIMITTEXT, FILE_NAME_LIMIT, 0);
    for (int row = 0; row < VISIBLE_LINES; ++row) {
        install_filter(GetDlgItem(hDlg, IDC_FILE_LINE + row), ENTERPROC);
        SendDlgItemMessageA(hDlg, IDC_FILE_LINE + row, EM_LIMITTEXT, TEXT_LIMIT, 0);
    }
    if (empty_store(hDlg))
        show_file(hDlg, editor);
}

INT_PTR CALLBACK FILEEDITPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        SetWindowLongPtrA(hDlg, DWLP_USER, lParam);
        initialise(hDlg, file_editor(hDlg));
        return FALSE; // the focus is set
    case WM_DESTROY:
        for (int row = 0; row < VISIBLE_LINES; ++row)
            remove_filter(GetDlgItem(hDlg, IDC_FILE_LINE + row));
        return TRUE;
    case WM_VSCROLL:
        scroll_lines(hDlg, file_editor(hDlg), wParam);
        return TRUE;
    case WM_MOUSEWHEEL:
        scroll_to(hDlg, file_editor(hDlg),
                  record_index_base - WHEEL_LINES * GET_WHEEL_DELTA_WPARAM(wParam) / WHEEL_DELTA);
        return TRUE;
    case WM_LINE_LEFT:
        note_new_focus(hDlg, file_editor(hDlg));
        tell_of_changed_records(hDlg, file_editor(hDlg));
        return TRUE;
    case WM_COMMAND:
        take_notification(hDlg, file_editor(hDlg), LOWORD(wParam), HIWORD(wParam));
        return TRUE;
    default:
        if (const auto* key = std::ranges::find(LINE_KEYS, message, &LINE_KEY::request);
            key != std::end(LINE_KEYS)) {
            move_by_key(hDlg, file_editor(hDlg), *key);
            return TRUE;
        }
        return FALSE;
    }
}

} // namespace

void file_generation(int file_type, HWND hwnd) {
    FILE_EDITOR editor{.file_type = file_type};
    run_dialog(DLG_FILE_EDITOR, hwnd, FILEEDITPROC, reinterpret_cast<LPARAM>(&editor));
    free_memblock();
}
