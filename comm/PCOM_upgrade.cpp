// The Upgrade Flash screen.
#include "comm/PCOM_screens.h"

INT_PTR CALLBACK UPGRADEPROC(HWND hDlg, UINT message, WPARAM, LPARAM) {
    if (message == WM_INITDIALOG)
        EndDialog(hDlg, 0);
    return FALSE;
}
