#include "library/LIB.h"
#include "library/LIB_screens.h"

INT_PTR CALLBACK LIBRARYPROC(HWND hDlg, UINT message, WPARAM, LPARAM) {
    if (message == WM_INITDIALOG)
        EndDialog(hDlg, 1);
    return FALSE;
}

INT_PTR CALLBACK EXTRACTFILEPROC(HWND hDlg, UINT message, WPARAM, LPARAM) {
    if (message == WM_INITDIALOG)
        EndDialog(hDlg, -1);
    return FALSE;
}

int choose_library_member(WINDOW, const std::vector<std::string>&) {
    return -1;
}

void show_library_list(WINDOW) {}
