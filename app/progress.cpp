#include "app/progress.h"

#include "app/desktop.h"
#include "app/dialogs.h"
#include "resources/control.h"
#include "resources/define.h"

#include <algorithm>
#include <memory>

struct STATUS_BOX {
    HWND window;
    RECT inner; // of the bar's control, in its client coordinates, without the frame
    int width;  // pixels of the bar that are filled; below 0 before the first drawing
};

namespace {

constexpr COLORREF BAR_COLOUR = RGB(0, 0, 255);

struct STATUS_TEXTS {
    const char* caption;
    const char* text;
};

STATUS_TEXTS status_texts(int mode) {
    switch (mode) {
    case STATUS_OPEN_FILE:
        return {"Open File Progress", "Progress"};
    case STATUS_CHECKSUM:
        return {"Open File Checksum", "Verifying Checksum"};
    case STATUS_REPEAT_ADD:
        return {"Repeat Add Progress", "Progress"};
    case STATUS_REPEAT_INSERT:
        return {"Repeat Insert Progress", "Progress"};
    case STATUS_REPEAT_DELETE:
        return {"Repeat Delete Progress", "Progress"};
    default:
        return {"Translation Progress", "Translation"};
    }
}

// Pixels of the bar to fill for `position` out of `size`, in an inner rectangle that ends at `inner_right`. A
// size of 0 or less fills nothing.
int status_bar_width(int inner_right, std::int64_t position, std::int64_t size) {
    if (size <= 0)
        return 0;
    return static_cast<int>(inner_right * std::clamp<std::int64_t>(position, 0, size) / size) + 1;
}

// Frame and bar of `width` pixels, in a control whose client area `inner` fills but for the frame.
void draw_status_bar(HDC dc, const RECT& inner, int width) {
    RECT frame = inner;
    InflateRect(&frame, 1, 1);
    SelectObject(dc, GetStockObject(BLACK_PEN));
    SelectObject(dc, GetStockObject(HOLLOW_BRUSH));
    Rectangle(dc, frame.left, frame.top, frame.right, frame.bottom);

    RECT filled = inner;
    RECT rest = inner;
    filled.right = rest.left = std::min(inner.left + width, inner.right);
    SetDCBrushColor(dc, BAR_COLOUR);
    FillRect(dc, &filled, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    FillRect(dc, &rest, GetSysColorBrush(COLOR_WINDOW));
}

} // namespace

INT_PTR CALLBACK STATUSPROC(HWND hDlg, UINT message, WPARAM /*wParam*/, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG: {
        const STATUS_TEXTS texts = status_texts(static_cast<int>(lParam));
        center_window(hDlg);
        SetWindowTextA(hDlg, texts.caption);
        SetDlgItemTextA(hDlg, IDC_STATUS_TEXT, texts.text);
        return FALSE; // the focus stays where the operator works
    }
    case WM_DRAWITEM:
        // Another window has passed over the box: what was drawn last is drawn again.
        if (const auto* status = reinterpret_cast<STATUS_BOX*>(GetWindowLongPtrA(hDlg, DWLP_USER)))
            draw_status_bar(reinterpret_cast<DRAWITEMSTRUCT*>(lParam)->hDC, status->inner,
                            std::max(status->width, 0));
        return TRUE;
    default:
        return FALSE;
    }
}

STATUS_BOX* open_status_box(int mode) {
    auto status = std::make_unique<STATUS_BOX>();
    status->width = -1;
    status->window = CreateDialogParamA(hInstance, MAKEINTRESOURCEA(DLG_STATUS), hwndmain, STATUSPROC, mode);
    GetClientRect(GetDlgItem(status->window, IDC_STATUS_BAR), &status->inner);
    InflateRect(&status->inner, -1, -1);
    SetWindowLongPtrA(status->window, DWLP_USER, reinterpret_cast<LONG_PTR>(status.get()));
    // Above the dialog that works, without taking the activation from it: that could not be given back while
    // the main window, which owns the box, is disabled.
    SetWindowPos(status->window, HWND_TOP, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    RedrawWindow(status->window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    return status.release();
}

void update_status_bar(STATUS_BOX* box, std::int64_t position, std::int64_t size) {
    const int width = status_bar_width(static_cast<int>(box->inner.right), position, size);
    if (width == box->width || box->window == nullptr)
        return;
    box->width = width;
    HWND bar = GetDlgItem(box->window, IDC_STATUS_BAR);
    HDC dc = GetDC(bar);
    draw_status_bar(dc, box->inner, width);
    ReleaseDC(bar, dc);
    GdiFlush();
}

void close_status_box(STATUS_BOX* box) {
    const std::unique_ptr<STATUS_BOX> status(box);
    DestroyWindow(status->window);
}
