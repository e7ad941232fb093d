// The programming window: the program's own settings, its list of fields and its file.
#include "program/Prog_screens.h"

#include "app/command_line.h"
#include "app/desktop.h"
#include "app/dialogs.h"
#include "app/file_dialog.h"
#include "app/paths.h"
#include "app/settings.h"
#include "convert/CONVERT.h"
#include "program/Prog.h"
#include "program/Prog_edits.h"
#include "program/Prog_fields.h"
#include "program/Prog_file.h"
#include "program/Prog_text.h"
#include "resources/control.h"
#include "resources/define.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace {

constexpr WPARAM TEXT_LIMIT = 250; // characters that can be typed
constexpr WPARAM DELAY_LIMIT = 2;
// Of the field list, in dialog units. In most fonts an input source reaches past the seventh; the eighth
// keeps the output formats behind such sources below each other.
constexpr int TAB_STOPS[] = {26, 60, 96, 228, 244, 262, 296, 310};

constexpr char UNTITLED[] = "Untitled";
constexpr char PROGRAM_EXTENSION[] = ".pgt";

struct HEADER_TEXT {
    int text_control;
    int delay_control;
    std::string PROGRAM_HEADER::*text;
    std::uint8_t PROGRAM_HEADER::*delay;
};
constexpr HEADER_TEXT HEADER_TEXTS[] = {
    {IDC_SOF_TEXT, IDC_SOF_DELAY, &PROGRAM_HEADER::sof_text_handle, &PROGRAM_HEADER::sof_delay},
    {IDC_EOF_TEXT, IDC_EOF_DELAY, &PROGRAM_HEADER::eof_text_handle, &PROGRAM_HEADER::eof_delay},
};

struct HEADER_BOX {
    int control;
    std::uint8_t mask;
    bool ticked_when_set;
};
constexpr HEADER_BOX HEADER_BOXES[] = {
    {IDC_RECEIVED_FILES_ONLY, RECEIVED_FILES_ONLY, true},
    {IDC_ALLOW_APPEND, ALLOW_APPEND, true},
    {IDC_AUTO_ALPHA, AUTO_ALPHA_OFF, false},
};

// Set while a file is read: boxes that come up then take the focus from a text box, whose text is not the
// program's any more.
bool loading_file;

// --- what the window shows ---

void set_title(HWND hDlg, const std::string& name) {
    SetWindowTextA(hDlg, ("Programming (" + name + ")").c_str());
}

// The name between the title's brackets.
std::string name_in_title(HWND hDlg) {
    const std::string title = window_text(hDlg);
    const std::size_t begin = title.find('(') + 1;
    return title.substr(begin, title.find(')', begin) - begin);
}

void enable_append(HWND hDlg) {
    enable_control(hDlg, IDC_ALLOW_APPEND, (program_header.bit_values & RECEIVED_FILES_ONLY) != 0,
                   IDC_FIELD_LIST);
}

void enable_field_buttons(HWND hDlg) {
    const bool on_field = current_handle() != program_header.fields.end();
    enable_control(hDlg, IDC_EDIT_FIELD, on_field, IDC_FIELD_LIST);
    enable_control(hDlg, IDC_DELETE_FIELD, on_field, IDC_FIELD_LIST);
}

// The row that the list shows as selected. Its last row is the end, also while it does not show the fields of
// a damaged file.
void note_selection(HWND hDlg) {
    HWND list = GetDlgItem(hDlg, IDC_FIELD_LIST);
    const LRESULT row = SendMessageA(list, LB_GETCURSEL, 0, 0);
    if (row == LB_ERR)
        return;
    const bool is_end = row + 1 == SendMessageA(list, LB_GETCOUNT, 0, 0);
    field_list_selection = is_end ? field_list_total - 1 : static_cast<int>(row);
    enable_field_buttons(hDlg);
}

// Everything but the field list. What stands in the controls then is no edit.
void show_header(HWND hDlg, const std::string& name) {
    set_title(hDlg, name);
    for (const HEADER_TEXT& row : HEADER_TEXTS) {
        set_control_text(hDlg, row.text_control, translate_hex_to_string(program_header.*row.text));
        SetDlgItemInt(hDlg, row.delay_control, program_header.*row.delay, FALSE);
    }
    for (const HEADER_BOX& box : HEADER_BOXES) {
        const bool set = (program_header.bit_values & box.mask) != 0;
        tick(hDlg, box.control, set == box.ticked_when_set);
    }
    enable_append(hDlg);
    file_changed = false;
}

// The program in memory becomes a new one, and the window shows it.
void start_program(HWND hDlg) {
    free_prog_memory();
    init_programming();
    program_header.file_type = PROGRAM_FILE_TYPE;
    program_header.bit_values = ALLOW_APPEND;
    field_list_selection = 0;
    show_header(hDlg, UNTITLED);
    update_field_list(hDlg, false);
}

void initialise(HWND hDlg) {
    if (create_file_toolbar(hDlg) == nullptr)
        return;
    for (const HEADER_TEXT& row : HEADER_TEXTS) {
        install_filter(GetDlgItem(hDlg, row.text_control), PROGEDITPROC);
        install_filter(GetDlgItem(hDlg, row.delay_control), INTPROC);
        SendDlgItemMessageA(hDlg, row.text_control, EM_LIMITTEXT, TEXT_LIMIT, 0);
        SendDlgItemMessageA(hDlg, row.delay_control, EM_LIMITTEXT, DELAY_LIMIT, 0);
    }
    center_window(hDlg);
    SendDlgItemMessageA(hDlg, IDC_FIELD_LIST, LB_SETTABSTOPS, std::size(TAB_STOPS),
                        reinterpret_cast<LPARAM>(TAB_STOPS));
    start_program(hDlg);
    if (command_line_options_flag != 0)
        PostMessageA(hDlg, WM_COMMAND, CMD_OPEN, 0);
}

void give_procedures_back(HWND hDlg) {
    if (GetDlgItem(hDlg, ID_FILE_TOOLBAR) == nullptr) // initialising went no further
        return;
    for (const HEADER_TEXT& row : HEADER_TEXTS) {
        remove_filter(GetDlgItem(hDlg, row.text_control));
        remove_filter(GetDlgItem(hDlg, row.delay_control));
    }
}

// --- the file ---

std::string program_name(const std::string& path) {
    const std::string title = path_file_title(path);
    return title.substr(0, title.find('.'));
}

// False after telling the operator that the portable cannot show the name.
bool is_name_short_enough(HWND hDlg, const std::string& name) {
    if (name.size() <= PROGRAM_NAME_SIZE)
        return true;
    show_message(hDlg,
                 "The Tolvan can only display filenames up to 9 characters.\n"
                 "Please reenter using a 9 character filename.",
                 "Filename Size Error", MESSAGE_ICON::STOP);
    return false;
}

void store_header_text(HWND hDlg, const HEADER_TEXT& row) {
    program_header.*row.text = translate_string_to_hex(control_text(hDlg, row.text_control));
}

// True when the program was saved. The focus may still be in a text box: all are read.
bool save_program(HWND hDlg) {
    static constexpr FILE_FILTER FILTERS[] = {{"Tolvan Files(*.PGT)", "*.pgt"}};
    FILE_DIALOG dialog{.owner = hDlg,
                       .filters = FILTERS,
                       .name = name_in_title(hDlg) + PROGRAM_EXTENSION,
                       .directory = &prog_directory};
    std::string name;
    do {
        if (!ask_save_name(dialog, PROGRAM_EXTENSION))
            return false;
        name = program_name(dialog.name);
    } while (!is_name_short_enough(hDlg, name));
    std::ranges::transform(name, name.begin(),
                           [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    set_title(hDlg, name);
    program_header.name = name;
    for (const HEADER_TEXT& row : HEADER_TEXTS) {
        store_header_text(hDlg, row);
        program_header.*row.delay = static_cast<std::uint8_t>(edit_number(hDlg, row.delay_control));
    }
    if (save_program_file(dialog.name) != 1)
        return false;
    file_changed = false;
    return true;
}

// True when nothing is lost by leaving the program: it has no changes, or they are saved or given up.
bool may_leave_program(HWND hDlg) {
    return !file_changed || saves_or_gives_up(hDlg, "Save File Changes?", [=] { return save_program(hDlg); });
}

void load_program(HWND hDlg, const std::string& path) {
    loading_file = true;
    quendal_file_refused = false;
    const int result = open_program_file(hDlg, path);
    loading_file = false;
    if (result == 1) {
        show_header(hDlg, program_header.name);
        update_field_list(hDlg, true);
    } else if (result == -1) {
        note_selection(hDlg); // the fields stay loaded and the list as it was
    } else {
        if (!quendal_file_refused)
            show_message(hDlg, "Invalid/Corrupt Program File!", "Invalid/Corrupt", MESSAGE_ICON::WARNING);
        start_program(hDlg);
    }
}

void open_program(HWND hDlg) {
    static constexpr FILE_FILTER FILTERS[] = {{"Tolvan Files(*.PGT)", "*.pgt"},
                                              {"Library Files(*.LBT)", "*.lbt"},
                                              {"Quendal Files(*.PRG)", "*.prg"},
                                              {"All Files(*.*)", "*.*"}};
    FILE_DIALOG dialog{.owner = hDlg, .filters = FILTERS, .directory = &prog_directory};
    if (command_line_options_flag != 0) {
        command_line_options_flag = 0;
        dialog.name = command_line_string;
    } else if (!may_leave_program(hDlg) || !ask_open_name(dialog)) {
        return;
    }
    start_program(hDlg); // whatever comes of the file, the program before it is gone
    while (!is_name_short_enough(hDlg, program_name(dialog.name))) {
        dialog.name.clear();
        if (!ask_open_name(dialog))
            return;
    }
    load_program(hDlg, dialog.name);
}

void create_program(HWND hDlg) {
    if (!answers_yes(hDlg, "Create a new program file?"))
        return;
    start_program(hDlg);
    update_field_list(hDlg, true); // leaves no operator of the calculation chosen, as after a file is read
}

void leave(HWND hDlg) {
    if (may_leave_program(hDlg))
        EndDialog(hDlg, 1);
}

// --- the field list ---

void edit_field(HWND hDlg) {
    if (current_handle() == program_header.fields.end())
        return;
    run_dialog(DLG_FIELD, hDlg, FIELDDEFPROC);
    update_field_list(hDlg, false);
}

void insert_before_selection(HWND hDlg) {
    if (program_header.fields.size() >= MAX_FIELDS) {
        show_message(hDlg, "Maximum number of Field Definitions allowed is 250.", "Field Definition",
                     MESSAGE_ICON::STOP);
        return;
    }
    const bool at_end = current_handle() == program_header.fields.end();
    const std::string number = std::to_string(field_list_selection + 1);
    if (!at_end && !answers_yes(hDlg, "Insert New Field Definition Before Field Definition #" + number + '?'))
        return;
    insert_field();
    edit_field(hDlg);
}

void delete_selection(HWND hDlg) {
    if (current_handle() == program_header.fields.end() ||
        !answers_yes(hDlg, "Delete Field Definition #" + std::to_string(field_list_selection + 1) + '?'))
        return;
    delete_field();
    update_field_list(hDlg, false);
    file_changed = true;
}

void open_selection(HWND hDlg) {
    note_selection(hDlg);
    if (current_handle() == program_header.fields.end())
        insert_before_selection(hDlg);
    else
        edit_field(hDlg);
}

// --- commands ---

void take_box(HWND hDlg, const HEADER_BOX& box) {
    const bool ticked = is_ticked(hDlg, box.control);
    program_header.bit_values &= static_cast<std::uint8_t>(~box.mask);
    if (ticked == box.ticked_when_set)
        program_header.bit_values |= box.mask;
    enable_append(hDlg);
    file_changed = true;
}

void take_text_notification(HWND hDlg, const HEADER_TEXT& row, int control, int notification) {
    if (loading_file)
        return;
    if (notification == EN_CHANGE && !is_own_change())
        file_changed = true;
    if (notification == EN_KILLFOCUS && control == row.text_control) {
        normalise_edit(hDlg, control);
        store_header_text(hDlg, row);
    }
}

void take_list_notification(HWND hDlg, int notification) {
    if (notification == LBN_SELCHANGE)
        note_selection(hDlg);
    else if (notification == LBN_DBLCLK)
        open_selection(hDlg);
}

void do_programming_command(HWND hDlg, int command, int notification) {
    if (notification == BN_CLICKED && !IsWindowEnabled(hDlg)) // of a menu item too
        return;                                               // a dialog is open: this one must outlive it
    for (const HEADER_TEXT& row : HEADER_TEXTS)
        if (command == row.text_control || command == row.delay_control)
            take_text_notification(hDlg, row, command, notification);
    for (const HEADER_BOX& box : HEADER_BOXES)
        if (command == box.control && notification == BN_CLICKED)
            take_box(hDlg, box);
    switch (command) {
    case CMD_NEW:
        create_program(hDlg);
        break;
    case CMD_OPEN:
        open_program(hDlg);
        break;
    case CMD_SAVE:
        save_program(hDlg);
        break;
    case CMD_EXIT:
    case IDCANCEL: // Escape and the close box
        leave(hDlg);
        break;
    case IDC_FIELD_LIST:
        take_list_notification(hDlg, notification);
        break;
    case IDC_EDIT_FIELD:
        edit_field(hDlg);
        break;
    case IDC_INSERT_FIELD:
        insert_before_selection(hDlg);
        break;
    case IDC_DELETE_FIELD:
        delete_selection(hDlg);
        break;
    case IDC_GLOBAL_OPTIONS:
        run_dialog(DLG_GLOBAL_DATA, hDlg, GLOBALDATAPROC);
        break;
    default:
        if (do_edit_command(hDlg, command) == EDIT_COMMAND::EDITED)
            file_changed = true;
        break;
    }
}

} // namespace

void update_field_list(HWND hDlg, bool reset) {
    derive_global_options(reset);
    const std::vector<std::string> rows = field_list_rows();
    field_list_selection = std::clamp(field_list_selection, 0, static_cast<int>(rows.size()) - 1);
    show_rows(hDlg, IDC_FIELD_LIST, rows, static_cast<std::size_t>(field_list_selection), TAB_STOPS);
    enable_field_buttons(hDlg);
}

INT_PTR CALLBACK PROGRAMMINGPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        initialise(hDlg);
        return TRUE;
    case WM_DESTROY:
        give_procedures_back(hDlg);
        return TRUE;
    case WM_NOTIFY:
        return give_tooltip_text(lParam) ? TRUE : FALSE;
    case WM_VKEYTOITEM:
        return take_list_key(hDlg, LOWORD(wParam), IDC_INSERT_FIELD, IDC_DELETE_FIELD);
    case WM_COMMAND:
        do_programming_command(hDlg, LOWORD(wParam), HIWORD(wParam));
        return TRUE;
    default:
        return FALSE;
    }
}
