// The small dialogs around lookup and data files: repetitive edits, the choice of the columns to import and
// of the format to save in.
#include "files/FILEGEN_screens.h"

#include "app/desktop.h"
#include "app/dialogs.h"
#include "files/FILEGEN.h"
#include "files/FILEGEN_edits.h"
#include "files/FILEGEN_formats.h"
#include "files/FILEGEN_import.h"
#include "resources/control.h"
#include "resources/define.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

namespace {

constexpr WPARAM COUNT_DIGITS = 5; // that can be typed
constexpr WPARAM START_DIGITS = 9;
constexpr WPARAM DATA_LIMIT = 249; // characters

constexpr int ROW_MARGIN = 2;                // pixels around the text of an interval
constexpr int IMPORT_TAB_STOPS[] = {12, 60}; // dialog units

// --- repetitive edits ---

struct REPEAT_EDIT {
    void (*make)(HWND hDlg); // refuses a number that is out of range
    std::uint32_t highest;   // number that the arrows reach
    WPARAM digits;           // of the number that can be typed
};

void finish_repeat(HWND hDlg, bool had_memory) {
    if (!had_memory)
        report_out_of_memory(hDlg);
    EndDialog(hDlg, 1);
}

void add_repeatedly(HWND hDlg) {
    const unsigned count = edit_number(hDlg, IDC_REPEAT_NUMBER);
    if (count > MOST_REPEATS) {
        show_message(hDlg, "Add " + std::to_string(count) + " fields greater than 65535.", "Repeating Add",
                     MESSAGE_ICON::WARNING);
        return;
    }
    show_hourglass();
    finish_repeat(hDlg, repeat_add(count, control_text(hDlg, IDC_REPEAT_DATA)));
}

template <bool INSERTS>
void edit_at_intervals(HWND hDlg) {
    const unsigned start = edit_number(hDlg, IDC_REPEAT_NUMBER);
    if (start < 1 || start > record_entry_total) {
        show_message(hDlg, "Starting with line# " + std::to_string(start) + " out of range.",
                     "Repeating Delete", MESSAGE_ICON::WARNING); // of both dialogs
        return;
    }
    const LRESULT row = SendDlgItemMessageA(hDlg, IDC_REPEAT_INTERVAL, LB_GETCURSEL, 0, 0);
    const auto interval = static_cast<std::uint32_t>(std::max<LRESULT>(row, 0)) + 1;
    show_hourglass();
    finish_repeat(hDlg, INSERTS ? repeat_insert(start, interval, control_text(hDlg, IDC_REPEAT_DATA))
                                : repeat_delete(start, interval));
}

// Where the list counts, but holds no texts, a row is drawn from its number.
void draw_interval(const DRAWITEMSTRUCT& item) {
    if (item.itemID == static_cast<UINT>(-1)) // an empty list shows its focus
        return;
    const bool selected = (item.itemState & ODS_SELECTED) != 0;
    const std::string text = interval_text(item.itemID + 1);
    RECT place = item.rcItem;
    FillRect(item.hDC, &place, GetSysColorBrush(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    SetTextColor(item.hDC, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    SetBkMode(item.hDC, TRANSPARENT);
    InflateRect(&place, -ROW_MARGIN, 0);
    DrawTextA(item.hDC, text.c_str(), -1, &place, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    if ((item.itemState & ODS_FOCUS) != 0)
        DrawFocusRect(item.hDC, &item.rcItem);
}

int text_height(HWND hDlg) {
    HDC dc = GetDC(hDlg);
    HGDIOBJ old_font = SelectObject(dc, reinterpret_cast<HGDIOBJ>(SendMessageA(hDlg, WM_GETFONT, 0, 0)));
    TEXTMETRICA metrics{};
    GetTextMetricsA(dc, &metrics);
    SelectObject(dc, old_font);
    ReleaseDC(hDlg, dc);
    return metrics.tmHeight;
}

void open_repeat_dialog(HWND hDlg, const REPEAT_EDIT& edit) {
    center_window(hDlg);
    install_filter(GetDlgItem(hDlg, IDC_REPEAT_NUMBER), INTPROC);
    prepare_stepper(hDlg, IDC_REPEAT_NUMBER_SPIN);
    SendDlgItemMessageA(hDlg, IDC_REPEAT_NUMBER, EM_LIMITTEXT, edit.digits, 0);
    SetDlgItemInt(hDlg, IDC_REPEAT_NUMBER, 1, FALSE);
    SendDlgItemMessageA(hDlg, IDC_REPEAT_DATA, EM_LIMITTEXT, DATA_LIMIT, 0);
    if (HWND list = GetDlgItem(hDlg, IDC_REPEAT_INTERVAL)) {
        SendMessageA(list, LB_SETITEMHEIGHT, 0, text_height(hDlg));
        SendMessageA(list, LB_SETCOUNT, record_entry_total, 0);
        SendMessageA(list, LB_SETCURSEL, 0, 0);
    }
}

INT_PTR run_repeat_dialog(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam, const REPEAT_EDIT& edit) {
    switch (message) {
    case WM_INITDIALOG:
        open_repeat_dialog(hDlg, edit);
        return TRUE;
    case WM_DESTROY:
        remove_filter(GetDlgItem(hDlg, IDC_REPEAT_NUMBER));
        return TRUE;
    case WM_DRAWITEM:
        draw_interval(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
    case WM_NOTIFY:
        if (const int direction = step_direction(lParam); direction != 0)
            step_edit(hDlg, IDC_REPEAT_NUMBER, direction, {1, edit.highest, true});
        return FALSE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK)
            edit.make(hDlg);
        else if (LOWORD(wParam) == IDCANCEL)
            EndDialog(hDlg, 0);
        return TRUE;
    default:
        return FALSE;
    }
}

// --- import ---

struct IMPORT_CHOICE {
    std::vector<FIELD_DESCRIPTOR>& fields;
    IMPORT_OPTIONS& options;
};

constexpr struct {
    int control;
    bool IMPORT_OPTIONS::*option;
} IMPORT_BOXES[] = {
    {IDC_IMPORT_LEAD_SPACES, &IMPORT_OPTIONS::strip_lead_spaces},
    {IDC_IMPORT_TRAIL_SPACES, &IMPORT_OPTIONS::strip_trail_spaces},
    {IDC_IMPORT_ZEROES, &IMPORT_OPTIONS::strip_zeroes},
    {IDC_IMPORT_TRUNCATE, &IMPORT_OPTIONS::strip_trunc},
};

IMPORT_CHOICE& import_choice(HWND hDlg) {
    return *reinterpret_cast<IMPORT_CHOICE*>(GetWindowLongPtrA(hDlg, DWLP_USER));
}

void show_columns(HWND hDlg, const IMPORT_CHOICE& choice, std::size_t selected) {
    std::vector<std::string> rows;
    for (const FIELD_DESCRIPTOR& field : choice.fields)
        rows.push_back((field.import_field != 0 ? "\tYes\t" : "\tNo\t") + field.field_name);
    rows.emplace_back("<End Of Fields>");
    show_rows(hDlg, IDC_IMPORT_FIELDS, rows, selected, IMPORT_TAB_STOPS);
}

// Filter for the list of columns. It claims all keys, and gives back to the dialog what it does not need.
LRESULT CALLBACK TOGGLEPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    HWND hDlg = GetParent(hwnd);
    const bool toggles = wParam == VK_RETURN || wParam == VK_SPACE; // characters of the same number
    switch (message) {
    case WM_GETDLGCODE:
        return DLGC_WANTALLKEYS | call_own_procedure(hwnd, message, wParam, lParam);
    case WM_KEYDOWN:
        if (toggles)
            SendMessageA(hDlg, WM_COMMAND, MAKEWPARAM(IDC_IMPORT_FIELDS, LBN_DBLCLK),
                         reinterpret_cast<LPARAM>(hwnd));
        else if (wParam == VK_TAB)
            SendMessageA(hDlg, WM_NEXTDLGCTL, GetKeyState(VK_SHIFT) < 0, FALSE);
        else if (wParam == VK_ESCAPE)
            PostMessageA(hDlg, WM_COMMAND, IDCANCEL, 0);
        else
            break;
        return 0;
    case WM_KEYUP:
    case WM_CHAR: // of Tab too: all rows start with one, and the list would search for it
        if (toggles || wParam == VK_TAB || wParam == VK_ESCAPE)
            return 0;
        break;
    default:
        break;
    }
    return call_own_procedure(hwnd, message, wParam, lParam);
}

void open_import_dialog(HWND hDlg, const IMPORT_CHOICE& choice) {
    center_window(hDlg);
    HWND list = GetDlgItem(hDlg, IDC_IMPORT_FIELDS);
    install_filter(list, TOGGLEPROC);
    SendMessageA(list, LB_SETTABSTOPS, std::size(IMPORT_TAB_STOPS),
                 reinterpret_cast<LPARAM>(IMPORT_TAB_STOPS));
    show_columns(hDlg, choice, 0);
    for (const auto& box : IMPORT_BOXES)
        tick(hDlg, box.control, choice.options.*box.option);
}

void toggle_selected_column(HWND hDlg, IMPORT_CHOICE& choice) {
    const auto row =
        static_cast<std::size_t>(SendDlgItemMessageA(hDlg, IDC_IMPORT_FIELDS, LB_GETCURSEL, 0, 0));
    if (row >= choice.fields.size()) // the end, or none
        return;
    FIELD_DESCRIPTOR& field = choice.fields[row];
    field.import_field = field.import_field == 0 ? 1 : 0;
    show_columns(hDlg, choice, row);
}

INT_PTR CALLBACK EXTRACTDBASEPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        SetWindowLongPtrA(hDlg, DWLP_USER, lParam);
        open_import_dialog(hDlg, import_choice(hDlg));
        return TRUE;
    case WM_DESTROY:
        remove_filter(GetDlgItem(hDlg, IDC_IMPORT_FIELDS));
        return TRUE;
    case WM_COMMAND:
        if (wParam == MAKEWPARAM(IDC_IMPORT_FIELDS, LBN_DBLCLK)) {
            toggle_selected_column(hDlg, import_choice(hDlg));
        } else if (LOWORD(wParam) == IDOK) {
            for (const auto& box : IMPORT_BOXES)
                import_choice(hDlg).options.*box.option = is_ticked(hDlg, box.control);
            EndDialog(hDlg, 1);
        } else if (LOWORD(wParam) == IDCANCEL) {
            EndDialog(hDlg, 0);
        }
        return TRUE;
    default:
        return FALSE;
    }
}

// --- format ---

INT_PTR CALLBACK LOOKUPFILECHOICEPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
    static constexpr RADIO_CHOICE FORMATS[] = {{IDC_FORMAT_SYSTEM, LOOKUP_SYSTEM_FILE},
                                               {IDC_FORMAT_ASCII, LOOKUP_ASCII_FILE}};
    return run_choice_dialog(hDlg, message, wParam, FORMATS);
}

} // namespace

std::string interval_text(unsigned n) {
    static constexpr const char* FIRST_ONES[] = {"every", "every 2nd", "every 3rd"};
    return n <= std::size(FIRST_ONES) ? FIRST_ONES[n - 1] : "every " + std::to_string(n) + "th";
}

void show_hourglass() {
    SetCursor(LoadCursorA(nullptr, IDC_WAIT));
}

INT_PTR CALLBACK REPEATADDPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
    return run_repeat_dialog(hDlg, message, wParam, lParam, {add_repeatedly, MOST_REPEATS, COUNT_DIGITS});
}

INT_PTR CALLBACK REPEATINSERTPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
    return run_repeat_dialog(hDlg, message, wParam, lParam,
                             {edit_at_intervals<true>, record_entry_total, START_DIGITS});
}

INT_PTR CALLBACK REPEATDELETEPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
    return run_repeat_dialog(hDlg, message, wParam, lParam,
                             {edit_at_intervals<false>, record_entry_total, START_DIGITS});
}

int choose_lookup_format(WINDOW owner) {
    return static_cast<int>(run_dialog(DLG_LOOKUP_FORMAT, static_cast<HWND>(owner), LOOKUPFILECHOICEPROC));
}

bool choose_import_fields(WINDOW owner, std::vector<FIELD_DESCRIPTOR>& fields, IMPORT_OPTIONS& options) {
    IMPORT_CHOICE choice{fields, options};
    return run_dialog(DLG_IMPORT, static_cast<HWND>(owner), EXTRACTDBASEPROC,
                      reinterpret_cast<LPARAM>(&choice)) == 1;
}
