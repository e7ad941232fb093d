#include "files/FILEGEN_lines.h"

#include "app/desktop.h"
#include "app/dialogs.h"
#include "files/FILEGEN_edits.h"
#include "files/FILEGEN_formats.h"
#include "files/FILEGEN_screens.h"
#include "files/MEMORY.h"
#include "program/Prog_edits.h"
#include "resources/control.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string>

std::uint32_t record_index_base = 1;

namespace {

constexpr std::int64_t ANY_NUMBER_OF_LINES = INT32_MAX;
constexpr std::int64_t WHEEL_LINES = 3; // a notch of the mouse wheel
constexpr WPARAM TEXT_LIMIT = 250;      // characters of a line that can be typed
constexpr char END_OF_ENTRIES[] = "< End of Entries >";

// What a key does where there is no line to move on to.
enum class AT_THE_END { NEW_LINE, NEXT_CONTROL, BEEP };

struct LINE_KEY {
    WPARAM key;
    int modifier;       // that is held down; 0 for any
    std::int64_t lines; // to move on
    AT_THE_END at_the_end = AT_THE_END::BEEP;
};
constexpr LINE_KEY LINE_KEYS[] = {
    {VK_RETURN, 0, 1, AT_THE_END::NEW_LINE},
    {VK_TAB, VK_SHIFT, -1, AT_THE_END::NEXT_CONTROL},
    {VK_TAB, 0, 1, AT_THE_END::NEXT_CONTROL},
    {VK_UP, 0, -1},
    {VK_DOWN, 0, 1},
    {VK_PRIOR, 0, -VISIBLE_LINES},
    {VK_NEXT, 0, VISIBLE_LINES},
    {VK_HOME, VK_CONTROL, -ANY_NUMBER_OF_LINES},
    {VK_END, VK_CONTROL, ANY_NUMBER_OF_LINES},
};

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

void enable_line_buttons(HWND hDlg, bool enabled) {
    for (const int control : {IDC_FILE_INSERT, IDC_FILE_DELETE})
        EnableWindow(GetDlgItem(hDlg, control), enabled);
}

void enter_line(HWND hDlg, FILE_LINES& lines, int row) {
    lines.row = row;
    SendDlgItemMessageA(hDlg, IDC_FILE_LINE + row, EM_SETSEL, 0, -1);
    enable_line_buttons(hDlg, true);
}

void focus_row(HWND hDlg, FILE_LINES& lines, int row) {
    move_focus(hDlg, IDC_FILE_LINE + row);
    enter_line(hDlg, lines, row); // the focus may have been there before, on another line
}

// The view moves no further than it must; below the last record it shows the mark.
void go_to_line(HWND hDlg, FILE_LINES& lines, std::int64_t line) {
    const std::int64_t bottom = line == record_entry_total ? line + 1 : line;
    set_base(std::clamp<std::int64_t>(record_index_base, bottom + 1 - VISIBLE_LINES, line));
    show_lines(hDlg, lines);
    focus_row(hDlg, lines, static_cast<int>(line - record_index_base));
}

void insert_line(HWND hDlg, FILE_LINES& lines, std::int64_t line) {
    if (insert_record_entry(record_in(line), "") == nullptr) {
        report_out_of_memory(hDlg);
        return;
    }
    ++record_entry_total;
    file_changed_flag = true;
    go_to_line(hDlg, lines, line);
}

void delete_line(HWND hDlg, FILE_LINES& lines, std::int64_t line) {
    delete_record_entry(record_in(line));
    --record_entry_total;
    file_changed_flag = true;
    if (record_entry_total > 0) {
        go_to_line(hDlg, lines, std::min<std::int64_t>(line, record_entry_total));
    } else {
        show_lines(hDlg, lines);
        leave_lines(hDlg, lines);
    }
}

// --- scrolling ---

void scroll_to(HWND hDlg, FILE_LINES& lines, std::int64_t base) {
    store_line(hDlg, lines);
    set_base(base);
    show_lines(hDlg, lines);
    if (lines.row != NO_ROW) { // which may show the mark now
        const auto last = static_cast<int>(record_entry_total - record_index_base);
        focus_row(hDlg, lines, std::min(lines.row, last));
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

void scroll_lines(HWND hDlg, FILE_LINES& lines, WPARAM scroll) {
    const std::int64_t base = record_index_base;
    switch (LOWORD(scroll)) {
    case SB_LINEUP:
        return scroll_to(hDlg, lines, base - 1);
    case SB_LINEDOWN:
        return scroll_to(hDlg, lines, base + 1);
    case SB_PAGEUP:
        return scroll_to(hDlg, lines, base - VISIBLE_LINES);
    case SB_PAGEDOWN:
        return scroll_to(hDlg, lines, base + VISIBLE_LINES);
    case SB_TOP:
        return scroll_to(hDlg, lines, 1);
    case SB_BOTTOM:
        return scroll_to(hDlg, lines, last_base());
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
        return scroll_to(hDlg, lines, thumb_place(GetDlgItem(hDlg, IDC_FILE_SCROLL), scroll));
    default:
        return;
    }
}

// --- keys ---

// nullptr for a key that has no meaning here.
const LINE_KEY* line_key(WPARAM key) {
    const auto* found = std::ranges::find_if(LINE_KEYS, [key](const LINE_KEY& row) {
        return row.key == key && (row.modifier == 0 || GetKeyState(row.modifier) < 0);
    });
    return found == std::end(LINE_KEYS) ? nullptr : found;
}

void move_by_key(HWND hDlg, FILE_LINES& lines, const LINE_KEY* key) {
    if (lines.row == NO_ROW || key == nullptr)
        return;
    store_line(hDlg, lines);
    const std::int64_t line = line_in(lines.row);
    const std::int64_t target = std::clamp<std::int64_t>(line + key->lines, 1, record_entry_total);
    if (target != line) {
        if (std::abs(key->lines) >= VISIBLE_LINES)
            set_base(record_index_base + key->lines);
        go_to_line(hDlg, lines, target);
    } else if (key->at_the_end == AT_THE_END::NEW_LINE) {
        insert_line(hDlg, lines, line + 1);
    } else if (key->at_the_end == AT_THE_END::NEXT_CONTROL) {
        SendMessageA(hDlg, WM_NEXTDLGCTL, key->lines < 0, FALSE);
    } else {
        beep();
    }
}

constexpr ACCESS_KEY ACCESS_KEYS[] = {{'A', IDC_FILE_ADD}, {'I', IDC_FILE_INSERT}, {'D', IDC_FILE_DELETE}};

bool take_line_key(HWND hDlg, WPARAM key) {
    if (line_key(key) == nullptr)
        return false;
    SendMessageA(hDlg, WM_LINE_KEY, key, 0);
    return true;
}

LRESULT CALLBACK ENTERPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_KEYUP && line_key(wParam) != nullptr)
        return 0;
    return filter_entry_keys(take_line_key, ACCESS_KEYS, hwnd, message, wParam, lParam);
}

} // namespace

void prepare_lines(HWND hDlg) {
    for (int row = 0; row < VISIBLE_LINES; ++row) {
        install_filter(GetDlgItem(hDlg, IDC_FILE_LINE + row), ENTERPROC);
        SendDlgItemMessageA(hDlg, IDC_FILE_LINE + row, EM_LIMITTEXT, TEXT_LIMIT, 0);
    }
}

void release_lines(HWND hDlg) {
    for (int row = 0; row < VISIBLE_LINES; ++row)
        remove_filter(GetDlgItem(hDlg, IDC_FILE_LINE + row));
}

void show_lines(HWND hDlg, FILE_LINES& lines) {
    set_base(record_index_base);
    lines.edited_row = NO_ROW;
    char* record = record_in(record_index_base);
    for (int row = 0; row < VISIBLE_LINES; ++row) {
        const std::int64_t line = line_in(row);
        const bool is_record = line <= record_entry_total && *record != END_OF_RECORDS;
        const char* mark = line - 1 == record_entry_total ? END_OF_ENTRIES : "";
        set_own_text(hDlg, IDC_FILE_LINE + row, is_record ? record : mark);
        set_control_text(hDlg, IDC_FILE_NUMBER + row, is_record ? std::to_string(line) : "");
        EnableWindow(GetDlgItem(hDlg, IDC_FILE_LINE + row), is_record);
        if (is_record)
            record = goto_next_record(record);
    }
    show_scroll_place(GetDlgItem(hDlg, IDC_FILE_SCROLL), record_index_base, record_entry_total,
                      VISIBLE_LINES);
    enable_repeats(hDlg, record_entry_total > 0);
    HWND focus = GetFocus();
    if (focus == nullptr || !IsWindowEnabled(focus)) // the keyboard would reach nothing
        leave_lines(hDlg, lines);
}

void enable_repeats(HWND hDlg, bool enabled) {
    for (const int control : {IDC_FILE_REP_INSERT, IDC_FILE_REP_DELETE})
        EnableWindow(GetDlgItem(hDlg, control), enabled);
}

void leave_line(HWND hDlg, FILE_LINES& lines) {
    lines.row = NO_ROW;
    enable_line_buttons(hDlg, false);
}

// The focus goes to the tab stop before the lines, or to where there will be one.
void leave_lines(HWND hDlg, FILE_LINES& lines) {
    move_focus(hDlg, record_entry_total == 0 ? IDC_FILE_ADD : IDC_FILE_NAME);
    leave_line(hDlg, lines);
}

// Insert and Delete stay enabled while they are used themselves, be it by mouse or by keyboard, and on the
// way there.
void note_new_focus(HWND hDlg, FILE_LINES& lines) {
    HWND focus = GetFocus();
    const int control = GetDlgCtrlID(focus);
    if (IsChild(hDlg, focus) && row_of(control) == NO_ROW && control != IDC_FILE_ADD &&
        control != IDC_FILE_INSERT && control != IDC_FILE_DELETE)
        leave_line(hDlg, lines);
}

void store_line(HWND hDlg, FILE_LINES& lines) {
    if (lines.edited_row == NO_ROW)
        return;
    const int control = IDC_FILE_LINE + lines.edited_row;
    const char* record =
        realloc_record_entry(record_in(line_in(lines.edited_row)), control_text(hDlg, control));
    lines.edited_row = NO_ROW;
    if (record == nullptr) {
        report_out_of_memory(hDlg);
        EndDialog(hDlg, 0);
    } else if (control_text(hDlg, control) != record) {
        set_own_text(hDlg, control, record);
    }
}

void do_line_command(HWND hDlg, FILE_LINES& lines, int command) {
    if (command == IDC_FILE_ADD)
        insert_line(hDlg, lines, std::int64_t{record_entry_total} + 1);
    else if (command == IDC_FILE_INSERT && lines.row != NO_ROW)
        insert_line(hDlg, lines, line_in(lines.row));
    else if (command == IDC_FILE_DELETE && lines.row != NO_ROW)
        delete_line(hDlg, lines, line_in(lines.row));
}

bool take_line_notification(HWND hDlg, FILE_LINES& lines, int control, int notification) {
    const int row = row_of(control);
    if (row == NO_ROW)
        return false;
    switch (notification) {
    case EN_SETFOCUS:
        enter_line(hDlg, lines, row);
        break;
    case EN_CHANGE:
        if (is_own_change())
            break;
        if (lines.edited_row != row)
            store_line(hDlg, lines);
        lines.edited_row = row;
        file_changed_flag = true;
        break;
    case EN_KILLFOCUS:
        store_line(hDlg, lines);
        PostMessageA(hDlg, WM_LINE_LEFT, 0, 0);
        break;
    default:
        break;
    }
    return true;
}

void move_lines(HWND hDlg, FILE_LINES& lines, UINT message, WPARAM wParam) {
    if (message == WM_LINE_KEY)
        move_by_key(hDlg, lines, line_key(wParam));
    else if (message == WM_VSCROLL)
        scroll_lines(hDlg, lines, wParam);
    else
        scroll_to(hDlg, lines,
                  record_index_base - WHEEL_LINES * GET_WHEEL_DELTA_WPARAM(wParam) / WHEEL_DELTA);
}
