// The editor of one field definition, which steps through the program's fields.
#include "program/Prog_screens.h"

#include "app/desktop.h"
#include "app/dialogs.h"
#include "program/LOOKUP.h"
#include "program/LOOKUP_dialogs.h"
#include "program/Prog.h"
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

constexpr unsigned LONGEST_DELAY = 255; // that the member can hold; no check refuses a longer one

bool field_changed; // the operator has edited the field since it was loaded

struct CHECK_BOX {
    int control;
    std::uint8_t mask;
    bool ticked_when_set;
    std::uint8_t FIELD_DEFINITION::*member;
};
constexpr CHECK_BOX CHECK_BOXES[] = {
    {IDC_FIELD_HEADER, HEADER_INPUT, true, &FIELD_DEFINITION::bit_values1},
    {IDC_FIELD_NEW_SCREEN, NEW_SCREEN, true, &FIELD_DEFINITION::bit_values1},
    {IDC_FIELD_REQUIRE, REQUIRE_INPUT, true, &FIELD_DEFINITION::bit_values1},
    {IDC_FIELD_AUTO_ADVANCE, AUTO_ADVANCE, true, &FIELD_DEFINITION::bit_values1},
    {IDC_FIELD_UPPER_CASE, SHIFT_TO_UPPER, true, &FIELD_DEFINITION::bit_values1},
    {IDC_FIELD_DUPLICATES, NO_DUPLICATES, false, &FIELD_DEFINITION::bit_values1},
    {IDC_FIELD_TRANSMIT, INPUT_TRANSMIT, true, &FIELD_DEFINITION::bit_values1},
    {IDC_FIELD_CALCULATION, ALLOW_CALCULATION, true, &FIELD_DEFINITION::bit_values2},
    {IDC_FIELD_TOTAL, TRANSMIT_TOTAL, true, &FIELD_DEFINITION::bit_values2},
};

struct BARCODE_BOX {
    int control;
    std::uint16_t mask;
};
constexpr BARCODE_BOX BARCODE_BOXES[] = {{IDC_FIELD_BARCODE_APPEND, BARCODE_APPEND},
                                         {IDC_FIELD_BARCODE_ADVANCE, BARCODE_AUTO_ADVANCE}};

struct CHOICE_LIST {
    int control;
    std::uint8_t FIELD_DEFINITION::*member;
    std::span<const char* const> texts;
    const char* letters; // what the member holds, in the order of the texts
};
constexpr const char* TYPE_TEXTS[] = {"Data", "Stamp", "Yes/No", "Exhibit", "No Edit"};
constexpr const char* SOURCE_TEXTS[] = {"Keyboard", "Bar Code", "Serial", "Lookup File"};
constexpr const char* FORMAT_TEXTS[] = {"Variable", "Left Justify", "Right Justify"};
constexpr CHOICE_LIST CHOICE_LISTS[] = {
    {IDC_FIELD_TYPE, &FIELD_DEFINITION::input_type, TYPE_TEXTS, "DSYEN"},
    {IDC_FIELD_SOURCE, &FIELD_DEFINITION::input_source, SOURCE_TEXTS, "KBSL"},
    {IDC_FIELD_FORMAT, &FIELD_DEFINITION::output_format, FORMAT_TEXTS, "VLR"},
};
constexpr const CHOICE_LIST& TYPE_LIST = CHOICE_LISTS[0];
constexpr const CHOICE_LIST& SOURCE_LIST = CHOICE_LISTS[1];

struct NUMBER_EDIT {
    int control;
    std::uint8_t FIELD_DEFINITION::*member;
    unsigned FIELD_EDITS::*typed; // as the checks want it; nullptr when none does
    unsigned digits;              // that can be typed; 0 for no limit
    unsigned highest;             // by the arrows
};
constexpr NUMBER_EDIT NUMBER_EDITS[] = {
    {IDC_FIELD_START_ROW, &FIELD_DEFINITION::start_row, &FIELD_EDITS::start_row, 2, DISPLAY_ROWS - 1},
    {IDC_FIELD_START_COL, &FIELD_DEFINITION::start_col, &FIELD_EDITS::start_col, 2, DISPLAY_COLUMNS - 1},
    {IDC_FIELD_END_ROW, &FIELD_DEFINITION::end_row, &FIELD_EDITS::end_row, 2, DISPLAY_ROWS - 1},
    {IDC_FIELD_END_COL, &FIELD_DEFINITION::end_col, &FIELD_EDITS::end_col, 2, DISPLAY_COLUMNS - 1},
    {IDC_FIELD_MAX, &FIELD_DEFINITION::max_input, &FIELD_EDITS::max_input, 0, 250},
    {IDC_FIELD_MIN, &FIELD_DEFINITION::min_input, &FIELD_EDITS::min_input, 0, 250},
    {IDC_FIELD_PREFIX_DELAY, &FIELD_DEFINITION::prefix_delay, nullptr, 3, 0},
    {IDC_FIELD_SUFFIX_DELAY, &FIELD_DEFINITION::suffix_delay, nullptr, 3, 0},
};

// The edits of escaped text. Their limits hold for typing: a text that is loaded stays whole.
struct TEXT_EDIT {
    int control;
    unsigned limit;
    std::string FIELD_DEFINITION::*member;
};
constexpr TEXT_EDIT TEXT_EDITS[] = {
    {IDC_FIELD_PROMPT, 80, &FIELD_DEFINITION::prompt_string_handle},
    {IDC_FIELD_PATTERN, 80, &FIELD_DEFINITION::display_pattern_handle},
    {IDC_FIELD_MASK, 80, &FIELD_DEFINITION::input_mask_handle},
    {IDC_FIELD_DEFAULT, 80, &FIELD_DEFINITION::default_data_handle},
    {IDC_FIELD_LOOKUP, LOOKUP_LIMIT, &FIELD_DEFINITION::lookup_filename_handle},
    {IDC_FIELD_PREFIX, 250, &FIELD_DEFINITION::prefix_text_handle},
    {IDC_FIELD_SUFFIX, 250, &FIELD_DEFINITION::suffix_text_handle},
};

// --- controls ---

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

// The letter of the selected entry. A file may hold a letter that has no entry: then none is selected, and
// the answer is NUL, which is no letter.
char chosen_letter(HWND dialog, const CHOICE_LIST& list) {
    const auto none = static_cast<unsigned>(list.texts.size());
    return list.letters[selected_entry(dialog, list.control, none)];
}

void select_data(HWND dialog) {
    constexpr WPARAM DATA_ENTRY = 0;
    SendDlgItemMessageA(dialog, IDC_FIELD_TYPE, CB_SETCURSEL, DATA_ENTRY, 0);
}

template <class BITS>
void set_bits(BITS& bits, BITS mask, bool on) {
    bits = static_cast<BITS>(on ? bits | mask : bits & ~mask);
}

FIELD_EDITS read_edits(HWND dialog) {
    FIELD_EDITS edits;
    edits.field = *current_handle(); // what has no control stays
    FIELD_DEFINITION& field = edits.field;
    for (const CHOICE_LIST& list : CHOICE_LISTS)
        if (const char letter = chosen_letter(dialog, list); letter != '\0')
            field.*list.member = static_cast<std::uint8_t>(letter);
    for (const CHECK_BOX& box : CHECK_BOXES)
        set_bits(field.*box.member, box.mask, is_ticked(dialog, box.control) == box.ticked_when_set);
    field.barcode_bit_values = current_barcode_bit_values;
    for (const BARCODE_BOX& box : BARCODE_BOXES)
        set_bits(field.barcode_bit_values, box.mask, is_ticked(dialog, box.control));
    for (const NUMBER_EDIT& number : NUMBER_EDITS) {
        const unsigned typed = edit_number(dialog, number.control);
        if (number.typed != nullptr)
            edits.*number.typed = typed;
        // What is typed for a place counts modulo 256 in the preview, and the checks see it whole.
        const unsigned kept = number.typed != nullptr ? typed : std::min(typed, LONGEST_DELAY);
        field.*number.member = static_cast<std::uint8_t>(kept);
    }
    for (const TEXT_EDIT& text : TEXT_EDITS)
        field.*text.member = translate_string_to_hex(control_text(dialog, text.control));
    edits.prompt = control_text(dialog, IDC_FIELD_PROMPT);
    edits.input_mask = control_text(dialog, IDC_FIELD_MASK);
    return edits;
}

void fill_controls(HWND dialog, const FIELD_DEFINITION& field) {
    for (const CHECK_BOX& box : CHECK_BOXES)
        tick(dialog, box.control, ((field.*box.member & box.mask) != 0) == box.ticked_when_set);
    for (const BARCODE_BOX& box : BARCODE_BOXES)
        tick(dialog, box.control, (field.barcode_bit_values & box.mask) != 0);
    current_barcode_bit_values = field.barcode_bit_values;
    for (const CHOICE_LIST& list : CHOICE_LISTS) {
        const auto letter = static_cast<char>(field.*list.member);
        fill_list(dialog, list.control, list.texts,
                  static_cast<unsigned>(std::string_view(list.letters).find(letter)));
    }
    for (const NUMBER_EDIT& number : NUMBER_EDITS)
        set_own_text(dialog, number.control, std::to_string(field.*number.member));
    for (const TEXT_EDIT& text : TEXT_EDITS)
        set_own_text(dialog, text.control, translate_hex_to_string(field.*text.member));
}

// --- what the operator sees beside the controls ---

void update_lcd_display(HWND dialog) {
    const DISPLAY display =
        compose_display(program_header.fields, current_handle(), read_edits(dialog).field);
    const char* line = display.data();
    for (int row = 0; row < DISPLAY_ROWS; ++row, line += DISPLAY_COLUMNS)
        show_display_line(dialog, IDC_FIELD_DISPLAY + row, {line, DISPLAY_COLUMNS});
}

void update_info_display(HWND dialog, int control) {
    const auto type = static_cast<std::uint8_t>(chosen_letter(dialog, TYPE_LIST));
    set_control_text(dialog, IDC_FIELD_HELP, field_control_help(control, type));
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

void enable_all_fielddefprog(HWND dialog) {
    for (const FIELD_CONTROL& control : FIELD_CONTROLS)
        enable(dialog, control, true);
}

void apply_type_rules(HWND dialog) {
    const char type = chosen_letter(dialog, TYPE_LIST);
    set_control_text(dialog, IDC_FIELD_PROMPT_LABEL, prompt_caption(type));
    enable_all_fielddefprog(dialog);
    for (const FIELD_CONTROL& control : FIELD_CONTROLS)
        if (holds(control.off_for_types, type))
            enable(dialog, control, false);
}

void apply_source_rules(HWND dialog) {
    const char source = chosen_letter(dialog, SOURCE_LIST);
    for (const FIELD_CONTROL& control : FIELD_CONTROLS)
        if (control.off_for_sources != nullptr && holds(control.off_for_sources, source))
            enable(dialog, control, false);
}

// What the field's place in the program and its own boxes forbid, whatever its type and source.
void apply_place_rules(HWND dialog) {
    const auto is_header = [](const FIELD_DEFINITION& field) {
        return (field.bit_values1 & HEADER_INPUT) != 0;
    };
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
    if (chosen_letter(dialog, TYPE_LIST) == INPUT_EXHIBIT && is_ticked(dialog, IDC_FIELD_HEADER)) {
        show_message(dialog, "Header Input can not be\nof Input Type EXHIBIT.", "Field Definition Error",
                     MESSAGE_ICON::STOP);
        select_data(dialog);
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
    if (chosen_letter(dialog, SOURCE_LIST) == SOURCE_LOOKUP_FILE) {
        select_data(dialog);
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
    switch (list) {
    case IDC_FIELD_TYPE:
        change_type(dialog);
        break;
    case IDC_FIELD_SOURCE:
        change_source(dialog);
        break;
    default:
        break;
    }
}

void change_text(HWND dialog, int edit) {
    if (is_own_change() || is_picker_open())
        return;
    field_changed = true;
    switch (edit) {
    case IDC_FIELD_PROMPT:
        if (chosen_letter(dialog, TYPE_LIST) == INPUT_STAMP) {
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

void step_number(HWND dialog, int updown, int direction) {
    const auto control = std::ranges::find(FIELD_CONTROLS, updown, &FIELD_CONTROL::updown);
    if (direction == 0 || control == FIELD_CONTROLS.end())
        return;
    const auto* number = std::ranges::find(NUMBER_EDITS, control->id, &NUMBER_EDIT::control);
    step_edit(dialog, control->id, direction, {.lowest = 0, .highest = number->highest, .wraps = true});
    update_info_display(dialog, control->id);
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
    const FIELD_FAULT fault = find_field_fault(read_edits(dialog));
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

void go_to_next(HWND dialog) {
    const LEAVING leaving = leave_field(dialog);
    if (leaving == LEAVING::STAY)
        return;
    if (leaving != LEAVING::DISCARD_FIELD) // the field that followed has taken over the number
        ++field_list_selection;
    init_fielddefproc(dialog);
}

void go_to_previous(HWND dialog) {
    if (leave_field(dialog) == LEAVING::STAY)
        return;
    --field_list_selection;
    init_fielddefproc(dialog);
}

void step_field(HWND dialog, int button) {
    if (button == IDC_FIELD_NEXT)
        go_to_next(dialog);
    else
        go_to_previous(dialog);
    // At the end of the list the button is disabled and can't keep the focus.
    HWND stays = GetDlgItem(dialog, button);
    HWND focus = IsWindowEnabled(stays) ? stays : GetDlgItem(dialog, IDC_FIELD_TYPE);
    SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(focus), TRUE);
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

void start(HWND dialog) {
    for (const FIELD_CONTROL& control : FIELD_CONTROLS) {
        install_filter(GetDlgItem(dialog, control.id), control.filter);
        if (control.updown != 0)
            prepare_stepper(dialog, control.updown);
    }
    for (const TEXT_EDIT& text : TEXT_EDITS)
        SendDlgItemMessageA(dialog, text.control, EM_LIMITTEXT, text.limit, 0);
    for (const NUMBER_EDIT& number : NUMBER_EDITS)
        SendDlgItemMessageA(dialog, number.control, EM_LIMITTEXT, number.digits, 0);
    center_window(dialog);
    init_fielddefproc(dialog);
}

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
        if (std::ranges::find(TEXT_EDITS, control, &TEXT_EDIT::control) != std::end(TEXT_EDITS))
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
        start(hDlg);
        return TRUE;
    case WM_DESTROY:
        for (const FIELD_CONTROL& control : FIELD_CONTROLS)
            remove_filter(GetDlgItem(hDlg, control.id));
        return TRUE;
    case WM_NOTIFY:
        step_number(hDlg, static_cast<int>(wParam), step_direction(lParam));
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
