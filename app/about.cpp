#include "app/about.h"

#include "app/dialogs.h"

INT_PTR CALLBACK TolvanABOUTPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
    switch (message) {
    case WM_INITDIALOG:
        center_window(hwnd);
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL) // the latter is the Escape key
            return FALSE;
        EndDialog(hwnd, 1);
        return TRUE;
    case WM_CLOSE:
        SendMessageA(hwnd, WM_COMMAND, IDOK, 0);
        return TRUE;
    default:
        return FALSE;
    }
}
