// The librarian, and the choice of a library's member.
#include "library/LIB.h"
#include "library/LIB_screens.h"

#include "app/desktop.h"
#include "app/dialogs.h"
#include "app/file_dialog.h"
#include "app/paths.h"
#include "app/settings.h"
#include "resources/control.h"
#include "resources/define.h"

#include <commctrl.h>

#include <algorithm>

namespace {

constexpr char END_OF_LIST[] = "<<END OF LIST>>";
constexpr char LIBRARY_EXTENSION[] = ".lbt";
constexpr FILE_FILTER LIBRARY_FILTERS[] = {{"Library Files(*.LBT)", "*.lbt"}, {"All Files(*.*)", "*.*"}};

std::vector<std::string> with_end_row(std::vector<std::string> rows) {
    rows.emplace_back(END_OF_LIST);
    return rows;
}

// --- what the librarian shows ---

void enable_save(HWND hDlg, bool enabled) {
    EnableMenuItem(GetMenu(hDlg), CMD_SAVE, MF_BYCOMMAND | (enabled ? MF_ENABLED : MF_GRAYED));
    SendDlgItemMessageA(hDlg, ID_FILE_TOOLBAR, TB_ENABLEBUTTON, CMD_SAVE, enabled);
}

bool is_on_file() {
    return librarian.selected_row < librarian.files.size();
}

void enable_file_buttons(HWND hDlg) {
    for (const int button : {IDC_LIBRARY_INSERT, IDC_LIBRARY_DELETE})
        enable_control(hDlg, button, is_on_file(), IDC_LIBRARY_FILES);
}

void note_selection(HWND hDlg) {
    const LRESULT row = SendDlgItemMessageA(hDlg, IDC_LIBRARY_FILES, LB_GETCURSEL, 0, 0);
    if (row == LB_ERR)
        return;
    librarian.selected_row = static_cast<std::size_t>(row);
    enable_file_buttons(hDlg);
}

// The library in memory becomes a new one, and the librarian shows it.
void start_library(HWND hDlg) {
    librarian = {};
    show_library_list(hDlg);
    enable_save(hDlg, false);
}

void initialise(HWND hDlg) {
    center_window(hDlg);
    create_file_toolbar(hDlg); // without it, the menu has all commands
    start_library(hDlg);
}

// A dialog for files of the librarian. A library that was opened has listed names in the current folder, and
// they must go on to mean the same files.
FILE_DIALOG file_dialog(HWND hDlg, std::span<const FILE_FILTER> filters) {
    return {.owner = hDlg, .filters = filters, .directory = &lib_directory, .keeps_current_folder = true};
}

// --- the library file ---

// A library's name holds no blanks. Those of its folders stay: the folder could not be found without them.
std::string proposed_name() {
    std::string title = path_file_title(librarian.file_name);
    std::erase(title, ' ');
    return path_folder(librarian.file_name) + title;
}

// True when the library was saved.
bool save_library(HWND hDlg) {
    FILE_DIALOG dialog = file_dialog(hDlg, {LIBRARY_FILTERS, 1});
    dialog.name = proposed_name();
    if (!ask_save_name(dialog, LIBRARY_EXTENSION) || valid_sys_files(hDlg) != 1)
        return false;
    librarian.file_name = dialog.name;
    set_control_text(hDlg, IDC_LIBRARY_NAME, librarian.file_name);
    const int result = save_library_file(hDlg, dialog.name);
    if (result == 0)
        show_message(hDlg, "Could not Save Library File!", "File Error", MESSAGE_ICON::WARNING);
    if (result == 1)
        librarian.changed = false;
    return result == 1;
}

// True when nothing is lost by leaving the library: it has no changes, or they are saved or given up.
bool may_leave_library(HWND hDlg) {
    return !librarian.changed ||
           saves_or_gives_up(hDlg, "Save Library Changes?", [=] { return save_library(hDlg); });
}

void open_library(HWND hDlg) {
    char old_folder[MAX_PATH];
    GetCurrentDirectoryA(sizeof old_folder, old_folder);
    FILE_DIALOG dialog = file_dialog(hDlg, LIBRARY_FILTERS);
    dialog.keeps_current_folder = false; // the library's files are looked for where it is
    if (!ask_open_name(dialog))
        return;
    const int result = open_library_file(hDlg, dialog.name);
    if (result == 1) {
        enable_save(hDlg, true);
    } else if (result == 0) {
        show_message(hDlg, "Invalid/Corrupt Library File!", "Invalid/Corrupt", MESSAGE_ICON::WARNING);
        start_library(hDlg);
    } else {
        SetCurrentDirectoryA(old_folder); // where the files are that the list still has
    }
}

void create_library(HWND hDlg) {
    if (answers_yes(hDlg, "Create a new library file?"))
        start_library(hDlg);
}

void leave(HWND hDlg) {
    if (may_leave_library(hDlg))
        EndDialog(hDlg, 1);
}

// --- the list ---

// Has a file chosen and puts it into the list by one of the list's edits.
void choose_file(HWND hDlg, void (*put_into_list)(WINDOW, const std::string&)) {
    static constexpr FILE_FILTER FILTERS[] = {{"Tolvan Files(*.PGT;*.LKT;*.CFT)", "*.pgt;*.lkt;*.cft"},
                                              {"Program Files(*.PGT)", "*.pgt"},
                                              {"Lookup Files(*.LKT)", "*.lkt"},
                                              {"Setup Files(*.CFT)", "*.cft"},
                                              {"All Files(*.*)", "*.*"}};
    if (librarian.files.size() >= LIBRARY_FILE_LIMIT) {
        show_message(hDlg, "Maximum number of files allowed is 200.", "Librarian", MESSAGE_ICON::STOP);
        return;
    }
    FILE_DIALOG dialog = file_dialog(hDlg, FILTERS);
    if (!ask_open_name(dialog))
        return;
    put_into_list(hDlg, dialog.name);
    enable_save(hDlg, true);
}

void delete_file(HWND hDlg) {
    if (!is_on_file() || !answers_yes(hDlg, "Delete File from Library?"))
        return;
    library_list_delete(hDlg);
    enable_save(hDlg, !librarian.files.empty());
}

void do_librarian_command(HWND hDlg, int command, int notification) {
    if (notification == BN_CLICKED && !IsWindowEnabled(hDlg)) // of a menu item too
        return;                                               // a dialog is open: this one must outlive it
    switch (command) {
    case CMD_NEW:
        return create_library(hDlg);
    case CMD_OPEN:
        return open_library(hDlg);
    case CMD_SAVE:
        save_library(hDlg);
        return;
    case CMD_EXIT:
    case IDCANCEL: // Escape and the close box
        return leave(hDlg);
    case IDC_LIBRARY_FILES:
        if (notification == LBN_SELCHANGE)
            note_selection(hDlg);
        return;
    case IDC_LIBRARY_ADD:
        return choose_file(hDlg, library_list_add);
    case IDC_LIBRARY_INSERT: // by its key also on the end row, where it adds
        return choose_file(hDlg, library_list_insert);
    case IDC_LIBRARY_DELETE:
        return delete_file(hDlg);
    default:
        return;
    }
}

// --- the choice of a member ---

// The row selected, or LB_ERR when it is the end row.
LRESULT selected_member(HWND hDlg) {
    HWND list = GetDlgItem(hDlg, IDC_EXTRACT_FILES);
    const LRESULT row = SendMessageA(list, LB_GETCURSEL, 0, 0);
    return row + 1 < SendMessageA(list, LB_GETCOUNT, 0, 0) ? row : LB_ERR;
}

void enable_open(HWND hDlg) {
    enable_control(hDlg, IDOK, selected_member(hDlg) != LB_ERR, IDC_EXTRACT_FILES);
}

void open_member(HWND hDlg) {
    if (selected_member(hDlg) != LB_ERR)
        EndDialog(hDlg, selected_member(hDlg));
}

void do_extract_command(HWND hDlg, int command, int notification) {
    switch (command) {
    case IDC_EXTRACT_FILES:
        if (notification == LBN_SELCHANGE)
            enable_open(hDlg);
        else if (notification == LBN_DBLCLK)
            open_member(hDlg);
        return;
    case IDOK:
        return open_member(hDlg);
    case IDCANCEL: // and the close box
        EndDialog(hDlg, -1);
        return;
    default:
        return;
    }
}

} // namespace

void show_library_list(WINDOW hDlg) {
    auto* dialog = static_cast<HWND>(hDlg);
    show_rows(dialog, IDC_LIBRARY_FILES, with_end_row(librarian.files), librarian.selected_row);
    set_control_text(dialog, IDC_LIBRARY_NAME, librarian.file_name);
    enable_file_buttons(dialog);
}

int choose_library_member(WINDOW owner, const std::vector<std::string>& rows) {
    return static_cast<int>(
        run_dialog(DLG_EXTRACT, static_cast<HWND>(owner), EXTRACTFILEPROC, reinterpret_cast<LPARAM>(&rows)));
}

INT_PTR CALLBACK LIBRARYPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        initialise(hDlg);
        return TRUE;
    case WM_NOTIFY:
        return give_tooltip_text(lParam) ? TRUE : FALSE;
    case WM_VKEYTOITEM:
        return take_list_key(hDlg, LOWORD(wParam), IDC_LIBRARY_INSERT, IDC_LIBRARY_DELETE);
    case WM_COMMAND:
        do_librarian_command(hDlg, LOWORD(wParam), HIWORD(wParam));
        return TRUE;
    default:
        return FALSE;
    }
}

INT_PTR CALLBACK EXTRACTFILEPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        center_window(hDlg);
        show_rows(hDlg, IDC_EXTRACT_FILES,
                  with_end_row(*reinterpret_cast<const std::vector<std::string>*>(lParam)), 0);
        enable_open(hDlg);
        return TRUE;
    case WM_COMMAND:
        do_extract_command(hDlg, LOWORD(wParam), HIWORD(wParam));
        return TRUE;
    default:
        return FALSE;
    }
}
