#include "program/LOOKUP_dialogs.h"

#include "app/dialogs.h"
#include "program/LOOKUP_definitions.h"
#include "program/Prog_edits.h"
#include "program/Prog_lcd.h"
#include "resources/control.h"
#include "resources/define.h"

void update_error_display(HWND hDlg, bool is_table) {
    int control = IDC_LOOKUP_PREVIEW;
    for (const std::string& line : lookup_message_lines(control_text(hDlg, IDC_LOOKUP_MESSAGE), is_table))
        show_display_line(hDlg, control++, line);
}

void fill_shared_controls(HWND hDlg, const LOOKUP_OPTIONS& lookup, bool is_table) {
    tick(hDlg, IDC_LOOKUP_ACCEPT, lookup.accept_mismatches);
    tick(hDlg, IDC_LOOKUP_PARTIAL, lookup.partial_matches);
    SendDlgItemMessageA(hDlg, IDC_LOOKUP_MESSAGE, EM_LIMITTEXT, LOOKUP_MESSAGE_LIMIT, 0);
    set_own_text(hDlg, IDC_LOOKUP_MESSAGE, lookup.message);
    update_error_display(hDlg, is_table);
}

void read_shared_controls(HWND hDlg, LOOKUP_OPTIONS& lookup) {
    lookup.accept_mismatches = is_ticked(hDlg, IDC_LOOKUP_ACCEPT);
    lookup.partial_matches = is_ticked(hDlg, IDC_LOOKUP_PARTIAL);
    lookup.message = control_text(hDlg, IDC_LOOKUP_MESSAGE);
}

bool is_edit(WPARAM notification) {
    return HIWORD(notification) == BN_CLICKED || (HIWORD(notification) == EN_CHANGE && !is_own_change());
}

namespace {

INT_PTR CALLBACK LOOKUPCHOICEPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
    static constexpr RADIO_CHOICE KINDS[] = {{IDC_CHOICE_FILE, IDC_CHOICE_FILE},
                                             {IDC_CHOICE_TABLE, IDC_CHOICE_TABLE}};
    return run_choice_dialog(hDlg, message, wParam, KINDS);
}

} // namespace

bool get_lookup_str(std::string& text, HWND owner, PROGRAM_HEADER& program) {
    switch (run_dialog(DLG_LOOKUP_CHOICE, owner, LOOKUPCHOICEPROC)) {
    case IDC_CHOICE_FILE:
        return define_file(text, owner, program, true);
    case IDC_CHOICE_TABLE:
        return define_table(text, owner, true);
    default:
        return false;
    }
}

bool get_lookup_table_string(std::string& text, HWND owner) {
    return define_table(text, owner, false);
}

bool get_lookup_file_string(std::string& text, HWND owner, PROGRAM_HEADER& program) {
    return define_file(text, owner, program, false);
}
