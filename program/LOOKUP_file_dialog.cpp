// Lookup File Definition.
#include "program/LOOKUP_definitions.h"

#include "app/desktop.h"
#include "app/dialogs.h"
#include "app/file_dialog.h"
#include "app/paths.h"
#include "app/settings.h"
#include "program/Prog_edits.h"
#include "program/Prog_lcd.h"
#include "program/Prog_text.h"
#include "resources/control.h"
#include "resources/define.h"

#include <algorithm>

namespace {

constexpr std::size_t TARGET_LIMIT = 3; // digits that can be typed
constexpr FILE_FILTER LOOKUP_FILTERS[] = {{"Lookup Files(*.LKT)", "*.lkt"}, {"All Files(*.*)", "*.*"}};

struct FILE_EDITOR {
    LOOKUP_FILE file;
    PROGRAM_HEADER& program;
    bool disables_view;
    bool changed; // a new definition counts as changed from the start
};

struct LOOKUP_EDIT {
    int control;
    LOOKUP_VALUE shown;
    bool is_number = true;
};
constexpr LOOKUP_EDIT LOOKUP_EDITS[] = {
    {IDC_LOOKUP_NAME, LOOKUP_VALUES[0], false},
    {IDC_LOOKUP_FIELDS, LOOKUP_VALUES[1]},
    {IDC_LOOKUP_COMPARE, LOOKUP_VALUES[2]},
    {IDC_LOOKUP_DISPLAY, LOOKUP_VALUES[3]},
    {IDC_LOOKUP_START_ROW, LOOKUP_VALUES[4]},
    {IDC_LOOKUP_END_ROW, LOOKUP_VALUES[5]},
    {IDC_LOOKUP_TARGET, {&LOOKUP_FILE::target_field, TARGET_LIMIT}},
};

constexpr struct {
    int control;
    bool LOOKUP_FILE::*option;
} LOOKUP_BOXES[] = {
    {IDC_LOOKUP_OPTIONAL, &LOOKUP_FILE::optional},
    {IDC_LOOKUP_ADD_DISPLAY, &LOOKUP_FILE::add_display_field},
    {IDC_LOOKUP_AUTO_ADVANCE, &LOOKUP_FILE::auto_advance},
};

// Filter for the name's edit: refuses with a beep what would end the name in the string.
LRESULT CALLBACK LNAMEPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CHAR && VALUE_ENDS.find(static_cast<char>(wParam)) != std::string_view::npos) {
        beep();
        return 0;
    }
    return call_own_procedure(hwnd, message, wParam, lParam);
}

FILE_EDITOR& file_editor(HWND hDlg) {
    return *reinterpret_cast<FILE_EDITOR*>(GetWindowLongPtrA(hDlg, DWLP_USER));
}

void open_file_editor(HWND hDlg, const FILE_EDITOR& editor) {
    for (const LOOKUP_EDIT& edit : LOOKUP_EDITS) {
        install_filter(GetDlgItem(hDlg, edit.control), edit.is_number ? INTPROC : LNAMEPROC);
        SendDlgItemMessageA(hDlg, edit.control, EM_LIMITTEXT, edit.shown.limit, 0);
        set_own_text(hDlg, edit.control, editor.file.*edit.shown.value);
    }
    for (const auto& box : LOOKUP_BOXES)
        tick(hDlg, box.control, editor.file.*box.option);
    tick(hDlg, IDC_LOOKUP_NO_VIEW, editor.disables_view);
    fill_shared_controls(hDlg, editor.file, false);
}

void read_file_editor(HWND hDlg, FILE_EDITOR& editor) {
    for (const LOOKUP_EDIT& edit : LOOKUP_EDITS) // a broken token must not take the next comma with it
        editor.file.*edit.shown.value = normal_escaped_text(control_text(hDlg, edit.control));
    for (const auto& box : LOOKUP_BOXES)
        editor.file.*box.option = is_ticked(hDlg, box.control);
    editor.disables_view = is_ticked(hDlg, IDC_LOOKUP_NO_VIEW);
    read_shared_controls(hDlg, editor.file);
}

// The data of a lookup needs a field that takes it; the warning is advice, a save insists.
void check_lookup_target(HWND hDlg, const PROGRAM_HEADER& program) {
    no_lookup_target =
        std::ranges::count(program.fields, SOURCE_LOOKUP_FILE, &FIELD_DEFINITION::input_source) == 0;
    if (no_lookup_target)
        show_message(hDlg,
                     "Target field to accept Lookup data does not exist,\n"
                     "be sure to create target field for lookup data\n"
                     "before saving program.",
                     "Target Field", MESSAGE_ICON::WARNING);
}

void store_view_option(PROGRAM_HEADER& program, bool disables_view) {
    const std::uint8_t others = program.bit_values & static_cast<std::uint8_t>(~DISABLE_VIEW_LOOKUP);
    const std::uint8_t bits = disables_view ? others | DISABLE_VIEW_LOOKUP : others;
    file_changed = file_changed || bits != program.bit_values;
    program.bit_values = bits;
}

void finish_file_editor(HWND hDlg, FILE_EDITOR& editor) {
    if (!editor.changed) {
        EndDialog(hDlg, 0);
        return;
    }
    read_file_editor(hDlg, editor);
    const EDIT_FAULT fault = find_lookup_file_fault(editor.file);
    if (!fault.text.empty()) {
        show_message(hDlg, fault.text, fault.caption, MESSAGE_ICON::STOP);
        return;
    }
    if (editor.file.add_display_field)
        check_lookup_target(hDlg, editor.program);
    store_view_option(editor.program, editor.disables_view);
    EndDialog(hDlg, 1);
}

// The file may be on the portable alone.
void choose_lookup_name(HWND hDlg) {
    FILE_DIALOG dialog{
        .owner = hDlg, .filters = LOOKUP_FILTERS, .directory = &data_directory, .file_must_exist = false};
    if (ask_open_name(dialog))
        set_control_text(hDlg, IDC_LOOKUP_NAME,
                         path_base_name(dialog.name).substr(0, LOOKUP_VALUES[0].limit));
}

INT_PTR CALLBACK LOOKUPFILEPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        center_window(hDlg);
        SetWindowLongPtrA(hDlg, DWLP_USER, lParam);
        open_file_editor(hDlg, file_editor(hDlg));
        return TRUE;
    case WM_DESTROY:
        for (const LOOKUP_EDIT& edit : LOOKUP_EDITS)
            remove_filter(GetDlgItem(hDlg, edit.control));
        return TRUE;
    case WM_DRAWITEM:
        draw_display_line(lParam);
        return TRUE;
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDOK:
            finish_file_editor(hDlg, file_editor(hDlg));
            break;
        case IDCANCEL:
            EndDialog(hDlg, 0);
            break;
        case IDC_LOOKUP_BROWSE:
            choose_lookup_name(hDlg);
            break;
        default:
            if (is_edit(wParam))
                file_editor(hDlg).changed = true;
            if (wParam == MAKEWPARAM(IDC_LOOKUP_MESSAGE, EN_CHANGE))
                update_error_display(hDlg, false);
            break;
        }
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace

bool define_file(std::string& text, HWND owner, PROGRAM_HEADER& program, bool is_new) {
    const bool is_file = text.starts_with('F') || text.starts_with('f');
    FILE_EDITOR editor{.file = parse_lookup_file(text),
                       .program = program,
                       .disables_view = is_file && (program.bit_values & DISABLE_VIEW_LOOKUP) != 0,
                       .changed = is_new};
    if (run_dialog(DLG_LOOKUP_FILE, owner, LOOKUPFILEPROC, reinterpret_cast<LPARAM>(&editor)) != 1)
        return false;
    text = normal_escaped_text(lookup_file_text(editor.file));
    return true;
}
