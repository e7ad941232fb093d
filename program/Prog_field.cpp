// The editor of one field definition, which steps through the program's fields.
#include "program/Prog_screens.h"

#include "app/desktop.h"
#include "app/dialogs.h"
#include "program/LOOKUP_dialogs.h"
#include "program/Prog_display.h"
#include "program/Prog_edits.h"
#include "program/Prog_field_controls.h"
#include "program/Prog_fields.h"
#include "program/Prog_lcd.h"
#include "program/Prog_text.h"
#include "resources/control.h"
#include "resources/define.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string>
#include <string_view>

namespace {

constexpr char FIELD_CAPTION[] = "Field Definition";

bool field_changed; // the operator has edited the field since it was loaded

// --- what the operator sees beside the controls ---

void update_lcd_display(HWND dialog) {
    const DISPLAY display =
        compose_display(program_header.fields, current_handle(), read_edits(dialog).field);
    const char* line = display.data();
    for (int row = 0; row < DISPLAY_ROWS; ++row, line += DISPLAY_COLUMNS)
        show_display_line(dialog, IDC_FIELD_DISPLAY + row, {line, DISPLAY_COLUMNS});
}

void update_info_display(HWND dialog, int control) {
    set_control_text(dialog, IDC_FIELD_HELP, field_control_help(dialog, control));
}

void update_stamp_inputmask(HWND dialog) {
    const std::string commands = translate_string_to_hex(control_text(dialog, IDC_FIELD_PROMPT));
    set_own_text(dialog, IDC_FIELD_MASK, stamp_inputmask(commands));
}

void update_stamp_displaypattern(HWND dialog) {
    const std::string commands = translate_string_to_hex(control_text(dialog, IDC_FIELD_PROMPT));
    set_own_text(dialog, IDC_FIELD_PATTERN, stamp_displaypattern(commands));
}

const char* prompt_caption(char type) {
    switch (type) {
    case INPUT_STAMP:
        return "Stamp Commands:";
    case INPUT_EXHIBIT:
        return "Exhibit Text:";
    default:
        return "Prompt Text:";
    }
}

// --- what is enabled ---

void enable(HWND dialog, int control, bool enabled) {
    EnableWindow(GetDlgItem(dialog, control), enabled);
}

void enable(HWND dialog, const FIELD_CONTROL& control, bool enabled) {
    enable(dialog, control.id, enabled);
    if (control.updown != 0)
        enable(dialog, control.updown, enabled);
}

bool holds(std::string_view letters, char letter) {
    return letters.find(letter) != std::string_view::npos;
}

void enable_all_fielddefprog(HWND dialog) {
    for (const FIELD_CONTROL& control : FIELD_CONTROLS)
        enable(dialog, control, true);
}

void apply_type_rules(HWND dialog) {
    const char type = chosen_type(dialog);
    set_control_text(dialog, IDC_FIELD_PROMPT_LABEL, prompt_caption(type));
    enable_all_fielddefprog(dialog);
    for (const FIELD_CONTROL& control : FIELD_CONTROLS)
        if (holds(control.off_for_types, type))
            enable(dialog, control, false);
}

void apply_source_rules(HWND dialog) {
    const char source = chosen_source(dialog);
    for (const FIELD_CONTROL& control : FIELD_CONTROLS)
        if (control.off_for_sources != nullptr && holds(control.off_for_sources, source))
            enable(dialog, control, false);
}

// What the field's place in the program and its own boxes forbid, whatever its type and source.
void apply_place_rules(HWND dialog) {
    const FIELD_HANDLE field = current_handle();
    const FIELD_HANDLE next = std::next(field);
    const bool has_previous = field != program_header.fields.begin();
    const bool has_next = next != program_header.fields.end();
    // The headers are an unbroken run at the start of the program.
    if ((has_previous && !is_header(*std::prev(field))) || (has_next && is_header(*next)))
        enable(dialog, IDC_FIELD_HEADER, false);
    if (is_ticked(dialog, IDC_FIELD_HEADER))
        enable(dialog, IDC_FIELD_DUPLICATES, false);
    if (!has_previous) { // there is no screen yet
        field->bit_values1 |= NEW_SCREEN;
        tick(dialog, IDC_FIELD_NEW_SCREEN, true);
        enable(dialog, IDC_FIELD_NEW_SCREEN, false);
    }
    if (is_ticked(dialog, IDC_FIELD_BARCODE_APPEND))
        enable(dialog, IDC_FIELD_BARCODE_ADVANCE, false);
    enable(dialog, IDC_FIELD_PREVIOUS, has_previous);
    enable(dialog, IDC_FIELD_NEXT, has_next);
}

// --- edits ---

void change_type(HWND dialog) {
    if (chosen_type(dialog) == INPUT_EXHIBIT && is_ticked(dialog, IDC_FIELD_HEADER)) {
        show_message(dialog, "Header Input can not be\nof Input Type EXHIBIT.", "Field Definition Error",
                     MESSAGE_ICON::STOP);
        choose_data_type(dialog);
    }
    apply_type_rules(dialog);
    apply_place_rules(dialog);
    update_lcd_display(dialog);
}

void change_source(HWND dialog) {
    for (const FIELD_CONTROL& control : FIELD_CONTROLS)
        if (control.off_for_sources != nullptr)
            enable(dialog, control, true);
    for (const int box : {IDC_FIELD_REQUIRE, IDC_FIELD_DUPLICATES, IDC_FIELD_AUTO_ADVANCE})
        tick(dialog, box, true);
    if (chosen_source(dialog) == SOURCE_LOOKUP_FILE) {
        choose_data_type(dialog);
        apply_type_rules(dialog);
        for (const int box : {IDC_FIELD_CALCULATION, IDC_FIELD_HEADER, IDC_FIELD_REQUIRE,
                              IDC_FIELD_UPPER_CASE, IDC_FIELD_BARCODE_APPEND, IDC_FIELD_BARCODE_ADVANCE})
            tick(dialog, box, false);
    }
    apply_source_rules(dialog);
    apply_place_rules(dialog);
    update_lcd_display(dialog);
}

void choose(HWND dialog, int list) {
    field_changed = true;
    if (list == IDC_FIELD_TYPE)
        change_type(dialog);
    else if (list == IDC_FIELD_SOURCE)
        change_source(dialog);
}

void change_text(HWND dialog, int edit) {
    if (is_own_change() || is_picker_open())
        return;
    field_changed = true;
    switch (edit) {
    case IDC_FIELD_PROMPT:
        if (chosen_type(dialog) == INPUT_STAMP) {
            update_stamp_inputmask(dialog);
            update_stamp_displaypattern(dialog);
        }
        [[fallthrough]];
    case IDC_FIELD_PATTERN:
    case IDC_FIELD_START_ROW:
    case IDC_FIELD_START_COL:
    case IDC_FIELD_END_ROW:
    case IDC_FIELD_END_COL:
        update_lcd_display(dialog);
        break;
    default:
        break;
    }
}

void click_box(HWND dialog, int box) {
    field_changed = true;
    const bool ticked = is_ticked(dialog, box);
    switch (box) {
    case IDC_FIELD_HEADER:
        enable(dialog, IDC_FIELD_DUPLICATES, !ticked);
        break;
    case IDC_FIELD_NEW_SCREEN:
        update_lcd_display(dialog);
        break;
    case IDC_FIELD_CALCULATION:
        set_own_text(dialog, IDC_FIELD_MASK, ticked ? "D" : "A");
        break;
    case IDC_FIELD_BARCODE_APPEND:
        enable(dialog, IDC_FIELD_BARCODE_ADVANCE, !ticked);
        break;
    default:
        break;
    }
}

void define_lookup(HWND dialog) {
    std::string text = control_text(dialog, IDC_FIELD_LOOKUP);
    bool defined = false;
    switch (std::toupper(static_cast<unsigned char>(text[0]))) {
    case 'T':
        defined = get_lookup_table_string(text, dialog);
        break;
    case 'F':
        defined = get_lookup_file_string(text, dialog, program_header);
        break;
    default:
        text.clear();
        defined = get_lookup_str(text, dialog, program_header);
        break;
    }
    if (!defined)
        return;
    set_own_text(dialog, IDC_FIELD_LOOKUP, text);
    field_changed = true;
}

// --- from field to field ---

void init_fielddefproc(HWND dialog) {
    if (current_handle()->input_source == SOURCE_LOOKUP_FILE)
        no_lookup_target = false;
    SetWindowTextA(dialog, ("Field Definition #" + std::to_string(field_list_selection + 1)).c_str());
    fill_controls(dialog, *current_handle());
    apply_type_rules(dialog);
    apply_source_rules(dialog);
    apply_place_rules(dialog);
    update_lcd_display(dialog);
    field_changed = false;
}

void save_fielddefproc(HWND dialog) {
    store_field(read_edits(dialog).field);
    field_changed = false;
}

bool valid_fields(HWND dialog) {
    const EDIT_FAULT fault = find_field_fault(read_edits(dialog));
    if (fault.text.empty())
        return true;
    show_message(dialog, fault.text, fault.caption, MESSAGE_ICON::STOP);
    return false;
}

bool ask(HWND dialog, const char* question) {
    return show_message(dialog, question, FIELD_CAPTION, MESSAGE_ICON::QUESTION, MESSAGE_BUTTONS::YES_NO) ==
           BUTTON::YES;
}

// What becomes of the field when the operator leaves it by way of a save.
enum class LEAVING {
    STAY, // a check failed
    KEEP, // saved, when there was something to save
    DISCARD_EDITS,
    DISCARD_FIELD // the field was new and is gone
};
LEAVING leave_field(HWND dialog) {
    if (new_field && !ask(dialog, "Save New Field Definition?")) {
        delete_field();
        return LEAVING::DISCARD_FIELD;
    }
    if (!new_field && field_changed && !ask(dialog, "Save Changed Field Definition?"))
        return LEAVING::DISCARD_EDITS;
    if (!valid_fields(dialog))
        return LEAVING::STAY;
    if (new_field || field_changed)
        save_fielddefproc(dialog);
    return LEAVING::KEEP;
}

void step_field(HWND dialog, int button) {
    const LEAVING leaving = leave_field(dialog);
    if (leaving != LEAVING::STAY) {
        if (button == IDC_FIELD_PREVIOUS)
            --field_list_selection;
        else if (leaving != LEAVING::DISCARD_FIELD) // the field that followed has taken over the number
            ++field_list_selection;
        init_fielddefproc(dialog);
    }
    // At the end of the list the button is disabled and can't keep the focus.
    move_focus(dialog, IsWindowEnabled(GetDlgItem(dialog, button)) ? button : IDC_FIELD_TYPE);
}

void finish(HWND dialog) {
    const LEAVING leaving = leave_field(dialog);
    if (leaving != LEAVING::STAY)
        EndDialog(dialog, leaving == LEAVING::KEEP ? 1 : 0);
}

void cancel(HWND dialog) {
    if ((new_field || field_changed) && !ask(dialog, "Cancel Current Definition Changes?"))
        return;
    if (new_field)
        delete_field();
    EndDialog(dialog, 0);
}

// --- the dialog ---

void press(HWND dialog, int command) {
    switch (command) {
    case IDC_FIELD_DEFINE:
        define_lookup(dialog);
        break;
    case IDC_FIELD_BARCODE_TYPES:
        if (run_dialog(DLG_BAR_TYPES, dialog, BARTYPESPROC) == 1)
            field_changed = true;
        break;
    case IDC_FIELD_PREVIOUS:
    case IDC_FIELD_NEXT:
        step_field(dialog, command);
        break;
    case IDOK:
        finish(dialog);
        break;
    case IDCANCEL:
        cancel(dialog);
        break;
    default:
        if (do_edit_command(dialog, command) == EDIT_COMMAND::EDITED)
            field_changed = true;
        break;
    }
}

void do_command(HWND dialog, int control, int code) {
    const auto is_check_box = [control] {
        const auto found = std::ranges::find(FIELD_CONTROLS, control, &FIELD_CONTROL::id);
        return found != FIELD_CONTROLS.end() && found->filter == CHECKBOXTABPROC;
    };
    if (code == BN_CLICKED && !IsWindowEnabled(dialog))
        return; // a box or a dialog is open: this one must outlive it
    switch (code) {
    case EN_CHANGE:
        change_text(dialog, control);
        break;
    case EN_KILLFOCUS:
        if (is_text_edit(control))
            normalise_edit(dialog, control);
        break;
    case CBN_SELCHANGE:
        choose(dialog, control);
        break;
    case BN_CLICKED:
        if (is_check_box())
            click_box(dialog, control);
        else
            press(dialog, control);
        break;
    default:
        break;
    }
}

} // namespace

INT_PTR CALLBACK FIELDDEFPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        prepare_field_controls(hDlg);
        center_window(hDlg);
        init_fielddefproc(hDlg);
        return TRUE;
    case WM_DESTROY:
        release_field_controls(hDlg);
        return TRUE;
    case WM_NOTIFY:
        if (const int direction = step_direction(lParam); direction != 0)
            update_info_display(hDlg, step_number(hDlg, static_cast<int>(wParam), direction));
        return FALSE;
    case WM_DRAWITEM:
        draw_display_line(lParam);
        return TRUE;
    case WM_CONTROL_FOCUSED:
        if (!is_picker_open())
            update_info_display(hDlg, static_cast<int>(wParam));
        return TRUE;
    case WM_COMMAND:
        do_command(hDlg, LOWORD(wParam), HIWORD(wParam));
        return TRUE;
    default:
        return FALSE;
    }
}
