// The editors of lookup files and data files: their file, and the dialog around its lines.
#include "files/FILEGEN_screens.h"

#include "app/desktop.h"
#include "app/dialogs.h"
#include "app/file_dialog.h"
#include "app/settings.h"
#include "convert/CONVERT.h"
#include "files/FILEGEN.h"
#include "files/FILEGEN_edits.h"
#include "files/FILEGEN_formats.h"
#include "files/FILEGEN_lines.h"
#include "files/MEMORY.h"
#include "program/Prog_edits.h"
#include "resources/control.h"
#include "resources/define.h"

#include <span>
#include <string>

bool file_changed_flag;

namespace {

struct EDITOR_KIND {
    const char* title;
    const char* name_label;
    const char* records_label;
    std::span<const FILE_FILTER> filters; // the first one for saving too
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
    {"Data File Editor", "Data Filename:", "Data Records", DATA_FILTERS, ".dat", "Invalid Data File!",
     "Error Saving Data File!", "Data File"},
    {"Lookup File Editor", "Lookup Filename:", "Lookup Records", LOOKUP_FILTERS, ".lkt",
     "Invalid Lookup File!", "Error Saving Lookup File!", "Lookup File"},
};

struct FILE_EDITOR {
    int file_type;
    FILE_LINES lines = {};
    bool told_of_changes = false;
};

FILE_EDITOR& file_editor(HWND hDlg) {
    return *reinterpret_cast<FILE_EDITOR*>(GetWindowLongPtrA(hDlg, DWLP_USER));
}

const EDITOR_KIND& kind_of(const FILE_EDITOR& editor) {
    return EDITOR_KINDS[editor.file_type];
}

void show_names(HWND hDlg) {
    set_control_text(hDlg, IDC_FILE_NAME, sys_file_name);
    set_own_text(hDlg, IDC_FILE_PROGRAM, data_program_name);
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

void repeat_edit(HWND hDlg, FILE_EDITOR& editor, int dialog, DLGPROC procedure) {
    const std::uint32_t total = record_entry_total;
    run_dialog(dialog, hDlg, procedure);
    if (record_entry_total == total)
        return;
    file_changed_flag = true;
    if (dialog == DLG_REPEAT_ADD)
        record_index_base = total + 1; // the first of the new ones, as far as the view goes
    show_lines(hDlg, editor.lines);
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
    show_lines(hDlg, editor.lines);
    leave_lines(hDlg, editor.lines);
}

void create_file(HWND hDlg, FILE_EDITOR& editor) {
    if (may_overwrite(hDlg) && empty_store(hDlg))
        show_file(hDlg, editor);
}

void open_file(HWND hDlg, FILE_EDITOR& editor) {
    if (!may_overwrite(hDlg))
        return;
    FILE_DIALOG dialog{.owner = hDlg, .filters = kind_of(editor).filters, .directory = &data_directory};
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
        leave_line(hDlg, editor.lines);
        return false;
    }
    FILE_DIALOG dialog{.owner = hDlg, .filters = kind.filters.first(1), .directory = &data_directory};
    if (!sys_file_name.empty())
        dialog.name = sys_file_name + kind.extension;
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

void take_program_name(HWND hDlg) {
    if (is_own_change())
        return;
    data_program_name = control_text(hDlg, IDC_FILE_PROGRAM).substr(0, FILE_NAME_LIMIT);
    file_changed_flag = true;
}

void do_file_command(HWND hDlg, FILE_EDITOR& editor, int command) {
    store_line(hDlg, editor.lines);
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
    case IDC_FILE_INSERT:
    case IDC_FILE_DELETE:
        return do_line_command(hDlg, editor.lines, command);
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
    if (take_line_notification(hDlg, editor.lines, control, notification))
        return;
    if (control == IDC_FILE_PROGRAM) {
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

void initialise(HWND hDlg, FILE_EDITOR& editor) {
    const EDITOR_KIND& kind = kind_of(editor);
    center_window(hDlg);
    SetWindowTextA(hDlg, kind.title);
    set_control_text(hDlg, IDC_FILE_NAME_LABEL, kind.name_label);
    set_control_text(hDlg, IDC_FILE_RECORDS_LABEL, kind.records_label);
    for (const int control : {IDC_FILE_PROGRAM_LABEL, IDC_FILE_PROGRAM})
        ShowWindow(GetDlgItem(hDlg, control), editor.file_type == DATA_FILE_EDITED ? SW_SHOW : SW_HIDE);
    SendDlgItemMessageA(hDlg, IDC_FILE_PROGRAM, EM_LIMITTEXT, FILE_NAME_LIMIT, 0);
    prepare_lines(hDlg);
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
        release_lines(hDlg);
        return TRUE;
    case WM_LINE_LEFT:
        note_new_focus(hDlg, file_editor(hDlg).lines);
        tell_of_changed_records(hDlg, file_editor(hDlg));
        return TRUE;
    case WM_COMMAND:
        take_notification(hDlg, file_editor(hDlg), LOWORD(wParam), HIWORD(wParam));
        return TRUE;
    case WM_LINE_KEY:
    case WM_VSCROLL:
    case WM_MOUSEWHEEL:
        move_lines(hDlg, file_editor(hDlg).lines, message, wParam);
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace

void file_generation(int file_type, HWND hwnd) {
    FILE_EDITOR editor{.file_type = file_type};
    run_dialog(DLG_FILE_EDITOR, hwnd, FILEEDITPROC, reinterpret_cast<LPARAM>(&editor));
    free_memblock();
}
