// Global data options and bar code types.
#include "program/Prog_screens.h"

#include "app/desktop.h"
#include "app/dialogs.h"
#include "program/Prog.h"
#include "program/Prog_edits.h"
#include "resources/control.h"

#include <string>

std::uint16_t current_barcode_bit_values;

namespace {

constexpr char AUTOINCREMENT_CAPTION[] = "Autoincrement Options";
constexpr char AUTOINCREMENT_TEXT[] = "You must have a compare field\nand an increment field\n"
                                      "and an increment amount\nfor this option to work.";
constexpr char CALCULATION_CAPTION[] = "Multiple Field Calculation Option";
constexpr char CALCULATION_TEXT[] = "All fields must have data\nfor this option to work.";

struct NUMBER_EDIT {
    int control;
    std::int32_t GLOBAL_DATA_OPTIONS::*value;
    WPARAM digits; // that can be typed; what is stored may have more
};
constexpr NUMBER_EDIT NUMBER_EDITS[] = {
    {IDC_GLOBAL_COMPARE, &GLOBAL_DATA_OPTIONS::field_compare, 3},
    {IDC_GLOBAL_INCREMENT, &GLOBAL_DATA_OPTIONS::field_to_inc, 3},
    {IDC_GLOBAL_AMOUNT, &GLOBAL_DATA_OPTIONS::amount_to_inc, 4},
    {IDC_GLOBAL_FIELD_ONE, &GLOBAL_DATA_OPTIONS::mult_field_1, 3},
    {IDC_GLOBAL_FIELD_TWO, &GLOBAL_DATA_OPTIONS::mult_field_2, 3},
    {IDC_GLOBAL_RESULT, &GLOBAL_DATA_OPTIONS::mult_field_result, 3},
};

constexpr int ACTION_COUNT = IDC_GLOBAL_DIVIDE - IDC_GLOBAL_ADD + 1; // the operators, from 1

void init_global_data(HWND dialog) {
    for (const NUMBER_EDIT& edit : NUMBER_EDITS) {
        install_filter(GetDlgItem(dialog, edit.control), INTPROC);
        SendDlgItemMessageA(dialog, edit.control, EM_LIMITTEXT, edit.digits, 0);
        set_own_text(dialog, edit.control, std::to_string(global_options.*edit.value));
    }
    CheckDlgButton(dialog, IDC_GLOBAL_DUP_WARNING, global_options.dup_warning != 0);
    const int action = global_options.mult_field_operator;
    if (action >= 1 && action <= ACTION_COUNT)
        CheckRadioButton(dialog, IDC_GLOBAL_ADD, IDC_GLOBAL_DIVIDE, IDC_GLOBAL_ADD + action - 1);
}

void read_global_data(HWND dialog, GLOBAL_DATA_OPTIONS& options) {
    for (const NUMBER_EDIT& edit : NUMBER_EDITS)
        options.*edit.value = static_cast<std::int32_t>(edit_number(dialog, edit.control));
    options.dup_warning = is_ticked(dialog, IDC_GLOBAL_DUP_WARNING);
    for (int action = 1; action <= ACTION_COUNT; ++action) // the buttons exclude each other
        if (is_ticked(dialog, IDC_GLOBAL_ADD + action - 1))
            options.mult_field_operator = action;
}

// Advice only: the save refuses what is incomplete.
void warn_of_incomplete_options(HWND dialog, const GLOBAL_DATA_OPTIONS& options) {
    const bool compares = options.field_compare != 0;
    const bool increments = options.field_to_inc != 0;
    if (compares != increments || (compares && options.amount_to_inc == 0))
        show_message(dialog, AUTOINCREMENT_TEXT, AUTOINCREMENT_CAPTION, MESSAGE_ICON::WARNING);
    const bool has_one = options.mult_field_1 != 0;
    const bool has_two = options.mult_field_2 != 0;
    const bool has_result = options.mult_field_result != 0;
    if (has_one != has_two || has_one != has_result)
        show_message(dialog, CALCULATION_TEXT, CALCULATION_CAPTION, MESSAGE_ICON::WARNING);
}

void do_global_command(HWND dialog, int command, int notification) {
    switch (command) {
    case IDOK:
        read_global_data(dialog, global_options);
        warn_of_incomplete_options(dialog, global_options);
        EndDialog(dialog, 1);
        break;
    case IDCANCEL:
        file_changed = false; // whatever was changed before the dialog opened
        EndDialog(dialog, 0);
        break;
    default:
        if (do_edit_command(dialog, command) != EDIT_COMMAND::NONE || is_own_change())
            break;
        if (notification == EN_CHANGE || notification == BN_CLICKED)
            file_changed = true;
        break;
    }
}

// --- bar code types ---

struct BAR_TYPE {
    int control;
    std::uint16_t mask;
};
constexpr BAR_TYPE BAR_TYPES[] = {
    {IDC_BAR_ALL, BARCODE_ALL}, {IDC_BAR_CODE39, 0x4000},      {IDC_BAR_UPC_A, 0x2000},
    {IDC_BAR_UPC_E, 0x1000},    {IDC_BAR_EAN13, 0x0800},       {IDC_BAR_EAN8, 0x0400},
    {IDC_BAR_I2OF5, 0x0200},    {IDC_BAR_CODABAR, 0x0100},     {IDC_BAR_CODE128, 0x0080},
    {IDC_BAR_CODE93, 0x0040},   {IDC_BAR_MSI_PLESSEY, 0x0020}, {IDC_BAR_CODE11, 0x0010},
};

// "All" covers the single boxes, which keep their ticks.
void enable_single_types(HWND dialog) {
    const BOOL enabled = !is_ticked(dialog, IDC_BAR_ALL);
    for (const BAR_TYPE& type : BAR_TYPES)
        if (type.control != IDC_BAR_ALL)
            EnableWindow(GetDlgItem(dialog, type.control), enabled);
}

void show_bar_types(HWND dialog) {
    for (const BAR_TYPE& type : BAR_TYPES)
        CheckDlgButton(dialog, type.control, (current_barcode_bit_values & type.mask) != 0);
    enable_single_types(dialog);
}

void store_bar_types(HWND dialog) {
    unsigned bits = current_barcode_bit_values & (BARCODE_APPEND | BARCODE_AUTO_ADVANCE);
    for (const BAR_TYPE& type : BAR_TYPES)
        if (is_ticked(dialog, type.control))
            bits |= type.mask;
    current_barcode_bit_values = static_cast<std::uint16_t>(bits);
}

} // namespace

INT_PTR CALLBACK GLOBALDATAPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
    switch (message) {
    case WM_INITDIALOG:
        center_window(hDlg);
        init_global_data(hDlg);
        return TRUE;
    case WM_DESTROY:
        for (const NUMBER_EDIT& edit : NUMBER_EDITS)
            remove_filter(GetDlgItem(hDlg, edit.control));
        return TRUE;
    case WM_COMMAND:
        do_global_command(hDlg, LOWORD(wParam), HIWORD(wParam));
        return TRUE;
    default:
        return FALSE;
    }
}

INT_PTR CALLBACK BARTYPESPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
    switch (message) {
    case WM_INITDIALOG:
        center_window(hDlg);
        show_bar_types(hDlg);
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) { // there is no way back
            store_bar_types(hDlg);
            EndDialog(hDlg, GetWindowLongPtrA(hDlg, DWLP_USER));
        } else if (HIWORD(wParam) == BN_CLICKED) {
            SetWindowLongPtrA(hDlg, DWLP_USER, TRUE); // the result
            enable_single_types(hDlg);
        }
        return TRUE;
    default:
        return FALSE;
    }
}
