#include "setup/SETUP_dialogs.h"

#include "app/dialogs.h"
#include "program/Prog_edits.h"
#include "program/Prog_text.h"

namespace {

constexpr WPARAM ESCAPED_TEXT_LIMIT = 250; // characters that can be typed

void show_value(HWND dialog, const STEPPED_VALUE& row, unsigned value) {
    set_control_text(dialog, row.control, format_value(value, row.format));
}

unsigned shown_value(HWND dialog, const STEPPED_VALUE& row) {
    return read_value(control_text(dialog, row.control), row.format);
}

// --- from the record to the controls, when the dialog opens ---

void open_control(HWND dialog, const FLAG_BOX& row, const SETUP_RECORD& record) {
    CheckDlgButton(dialog, row.control, (record.*row.item & row.bit) != 0);
}

void open_control(HWND dialog, const ITEM_BOX& row, const SETUP_RECORD& record) {
    CheckDlgButton(dialog, row.control, record.*row.item != 0);
}

void open_control(HWND dialog, const CHOICE_LIST& row, const SETUP_RECORD& record) {
    fill_list(dialog, row.control, row.texts, record.*row.item);
}

void open_control(HWND dialog, const RADIO_GROUP& row, const SETUP_RECORD& record) {
    // Otherwise a button clicks itself when it takes the focus by the tab key, or as the dialog opens.
    for (int button = row.first; button <= row.last; ++button)
        SendDlgItemMessageA(dialog, button, BM_SETDONTCLICK, TRUE, 0);
    if (row.first + record.*row.item <= row.last)
        CheckRadioButton(dialog, row.first, row.last, row.first + record.*row.item);
}

void open_control(HWND dialog, const STEPPED_VALUE& row, const SETUP_RECORD& record) {
    prepare_stepper(dialog, row.updown);
    show_value(dialog, row, record.*row.item);
}

void open_control(HWND dialog, const TEXT_EDIT& row, const SETUP_RECORD& record) {
    const bool plain = row.notation == NOTATION::PLAIN;
    const std::string& text = record.*row.text;
    set_control_text(dialog, row.control,
                     row.notation == NOTATION::ESCAPED ? translate_hex_to_string(text) : text);
    SendDlgItemMessageA(dialog, row.control, EM_LIMITTEXT, plain ? row.limit : ESCAPED_TEXT_LIMIT, 0);
    if (!plain)
        install_filter(GetDlgItem(dialog, row.control), PROGEDITPROC);
}

void open_control(HWND, const CLEARED_ITEM&, const SETUP_RECORD&) {}

// --- and back, on OK ---

void store_control(HWND dialog, const FLAG_BOX& row, SETUP_RECORD& record) {
    const unsigned others = record.*row.item & ~row.bit;
    record.*row.item = static_cast<std::uint8_t>(is_ticked(dialog, row.control) ? others | row.bit : others);
}

void store_control(HWND dialog, const ITEM_BOX& row, SETUP_RECORD& record) {
    const bool ticked = is_ticked(dialog, row.control);
    if (ticked != (record.*row.item != 0)) // a ticked item may hold another number than 1
        record.*row.item = ticked;
}

void store_control(HWND dialog, const CHOICE_LIST& row, SETUP_RECORD& record) {
    record.*row.item = static_cast<std::uint8_t>(selected_entry(dialog, row.control, record.*row.item));
}

void store_control(HWND dialog, const RADIO_GROUP& row, SETUP_RECORD& record) {
    for (int button = row.first; button <= row.last; ++button)
        if (is_ticked(dialog, button))
            record.*row.item = static_cast<std::uint8_t>(button - row.first);
}

void store_control(HWND dialog, const STEPPED_VALUE& row, SETUP_RECORD& record) {
    record.*row.item = static_cast<std::uint8_t>(shown_value(dialog, row));
}

void store_control(HWND dialog, const TEXT_EDIT& row, SETUP_RECORD& record) {
    std::string text = control_text(dialog, row.control);
    if (row.notation == NOTATION::ESCAPED)
        text = translate_string_to_hex(text);
    record.*row.text = text.substr(0, row.limit);
}

void store_control(HWND, const CLEARED_ITEM& row, SETUP_RECORD& record) {
    record.*row.item = 0;
}

// --- and in between ---

// The row of this kind to which a control belongs; nullptr when there is none.
template <typename ROW>
const ROW* row_of(std::span<const SETUP_CONTROL> controls, int ROW::*member, int control) {
    for (const SETUP_CONTROL& candidate : controls)
        if (const auto* row = std::get_if<ROW>(&candidate); row != nullptr && row->*member == control)
            return row;
    return nullptr;
}

void step(HWND dialog, const STEPPED_VALUE& row, int direction) {
    if (const auto value = row.step(shown_value(dialog, row), direction, row.range))
        show_value(dialog, row, *value);
}

void store_and_end(std::span<const SETUP_CONTROL> controls, HWND dialog) {
    SETUP_RECORD record = setup_record;
    for (const SETUP_CONTROL& control : controls)
        std::visit([&](const auto& row) { store_control(dialog, row, record); }, control);
    setup_record = record;
    EndDialog(dialog, 1);
}

void do_control_notification(std::span<const SETUP_CONTROL> controls, HWND dialog, int control,
                             int notification) {
    if (notification == BN_CLICKED) {
        const auto* box = row_of(controls, &FLAG_BOX::control, control);
        if (box != nullptr && box->excludes != 0 && is_ticked(dialog, control))
            CheckDlgButton(dialog, box->excludes, BST_UNCHECKED);
    } else if (notification == EN_KILLFOCUS) {
        const auto* edit = row_of(controls, &TEXT_EDIT::control, control);
        if (edit != nullptr && edit->notation != NOTATION::PLAIN)
            normalise_edit(dialog, control);
    }
}

void do_setup_command(std::span<const SETUP_CONTROL> controls, HWND dialog, int command, int notification) {
    switch (command) {
    case IDOK:
        store_and_end(controls, dialog);
        break;
    case IDCANCEL:
        EndDialog(dialog, 0);
        break;
    default:
        if (do_edit_command(dialog, command) == EDIT_COMMAND::NONE)
            do_control_notification(controls, dialog, command, notification);
        break;
    }
}

// A stepped value is read-only but no label: it keeps the colours of an edit.
INT_PTR colour_of_edit(HDC dc) {
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    SetBkColor(dc, GetSysColor(COLOR_WINDOW));
    return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_WINDOW));
}

void remove_filters(std::span<const SETUP_CONTROL> controls, HWND dialog) {
    for (const SETUP_CONTROL& control : controls)
        if (const auto* edit = std::get_if<TEXT_EDIT>(&control);
            edit != nullptr && edit->notation != NOTATION::PLAIN)
            remove_filter(GetDlgItem(dialog, edit->control));
}

} // namespace

INT_PTR do_setup_message(std::span<const SETUP_CONTROL> controls, HWND dialog, UINT message, WPARAM wParam,
                         LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        center_window(dialog);
        for (const SETUP_CONTROL& control : controls)
            std::visit([&](const auto& row) { open_control(dialog, row, setup_record); }, control);
        return TRUE;
    case WM_DESTROY:
        remove_filters(controls, dialog);
        return TRUE;
    case WM_NOTIFY:
        if (const auto* row = row_of(controls, &STEPPED_VALUE::updown, static_cast<int>(wParam)))
            if (const int direction = step_direction(lParam); direction != 0)
                step(dialog, *row, direction);
        return FALSE;
    case WM_CTLCOLORSTATIC:
        if (row_of(controls, &STEPPED_VALUE::control, GetDlgCtrlID(reinterpret_cast<HWND>(lParam))) ==
            nullptr)
            return FALSE;
        return colour_of_edit(reinterpret_cast<HDC>(wParam));
    case WM_COMMAND:
        do_setup_command(controls, dialog, LOWORD(wParam), HIWORD(wParam));
        return TRUE;
    default:
        return FALSE;
    }
}
