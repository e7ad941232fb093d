#include "monitor/MONITOR_view.h"

#include "monitor/MONITOR_text.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr int USUAL_WIDTH = 412; // pixels of a display with DESIGN_DPI
constexpr int USUAL_HEIGHT = 288;
constexpr int DESIGN_DPI = 96;

// Pixels of the display that there is.
int scaled(int pixels) {
    static const int dpi = [] {
        HDC screen = GetDC(nullptr);
        const int screen_dpi = GetDeviceCaps(screen, LOGPIXELSY);
        ReleaseDC(nullptr, screen);
        return screen_dpi;
    }();
    return MulDiv(pixels, dpi, DESIGN_DPI);
}

// The system's fixed-pitch font, in which 40 columns and 17 rows fit the window; kept for the program's life.
// It is made of pixels: where they are smaller, an outline font has its height.
HFONT text_font() {
    static HFONT font = nullptr;
    if (font == nullptr) {
        LOGFONTA description{};
        GetObjectA(GetStockObject(ANSI_FIXED_FONT), sizeof description, &description);
        if (const int height = scaled(description.lfHeight); height != description.lfHeight) {
            description.lfHeight = height;
            description.lfWidth = 0; // in proportion
            lstrcpynA(description.lfFaceName, "Courier New", LF_FACESIZE);
        }
        font = CreateFontIndirectA(&description);
    }
    return font;
}

int text_line_height() {
    static const int height = [] {
        HDC screen = GetDC(nullptr);
        HGDIOBJ old_font = SelectObject(screen, text_font());
        TEXTMETRICA metrics{};
        GetTextMetricsA(screen, &metrics);
        SelectObject(screen, old_font);
        ReleaseDC(nullptr, screen);
        return static_cast<int>(metrics.tmHeight);
    }();
    return height;
}

RECT rows_rect(HWND hwnd, std::size_t first, std::size_t last) {
    RECT rect{};
    GetClientRect(hwnd, &rect);
    rect.top = static_cast<int>(first) * text_line_height();
    rect.bottom = static_cast<int>(last) * text_line_height();
    return rect;
}

// Each row is drawn over its whole width, so that nothing has to be erased before.
void draw_rows(HWND hwnd, HDC dc, const RECT& damaged) {
    const auto height = static_cast<std::size_t>(text_line_height());
    const std::size_t first = static_cast<std::size_t>(damaged.top) / height;
    const std::size_t behind = (static_cast<std::size_t>(damaged.bottom) + height - 1) / height;
    HGDIOBJ old_font = SelectObject(dc, text_font());
    for (std::size_t row = first; row < std::min(behind, captured_text.view_lines); ++row) {
        const std::size_t line = captured_text.top_line + row;
        const char* text = line < captured_text.lines.size() ? captured_text.lines[line].string.data() : "";
        const RECT place = rows_rect(hwnd, row, row + 1);
        ExtTextOutA(dc, 0, place.top, ETO_OPAQUE | ETO_CLIPPED, &place, text,
                    static_cast<UINT>(std::strlen(text)), nullptr);
    }
    SelectObject(dc, old_font);
}

void scroll_to(HWND hwnd, std::int64_t line) {
    scroll_captured_text(line);
    show_scroll_bar(hwnd);
    show_changes(hwnd);
}

// The position of the thumb that is dragged; the message itself has 16 bits for it.
int dragged_position(HWND hwnd) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_TRACKPOS;
    GetScrollInfo(hwnd, SB_VERT, &info);
    return info.nTrackPos;
}

} // namespace

SIZE usual_window_size() {
    return {.cx = scaled(USUAL_WIDTH), .cy = scaled(USUAL_HEIGHT)};
}

void fit_rows(HWND hwnd) {
    RECT client{};
    GetClientRect(hwnd, &client);
    RECT window{};
    GetWindowRect(hwnd, &window);
    auto rows = static_cast<std::size_t>(client.bottom / text_line_height());
    if (window.bottom - window.top <= usual_window_size().cy)
        rows = std::min(rows, MON_VIEW_LINES);
    set_view_lines(rows);
}

void paint_view(HWND hwnd) {
    PAINTSTRUCT paint_struct{};
    HDC dc = BeginPaint(hwnd, &paint_struct);
    draw_rows(hwnd, dc, paint_struct.rcPaint);
    EndPaint(hwnd, &paint_struct);
}

void show_changes(HWND hwnd) {
    const VIEW_CHANGE change = take_view_change();
    const RECT all = rows_rect(hwnd, 0, captured_text.view_lines);
    const RECT changed = rows_rect(hwnd, change.first, change.last);
    if (change.moved_up != 0)
        ScrollWindowEx(hwnd, 0, -change.moved_up * text_line_height(), &all, &all, nullptr, nullptr,
                       SW_INVALIDATE);
    if (change.first < change.last)
        InvalidateRect(hwnd, &changed, FALSE);
}

void show_scroll_bar(HWND hwnd) {
    const SCROLL_VALUES values = scroll_values();
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
    info.nMax = values.maximum;
    info.nPage = static_cast<UINT>(values.page);
    info.nPos = values.position;
    SetScrollInfo(hwnd, SB_VERT, &info, TRUE);
    ShowScrollBar(hwnd, SB_VERT, TRUE);
}

void scroll_view(HWND hwnd, int request) {
    const auto top = static_cast<std::int64_t>(captured_text.top_line);
    const int page = scroll_values().page;
    switch (request) {
    case SB_LINEUP:
        return scroll_to(hwnd, top - 1);
    case SB_LINEDOWN:
        return scroll_to(hwnd, top + 1);
    case SB_PAGEUP:
        return scroll_to(hwnd, top - page);
    case SB_PAGEDOWN:
        return scroll_to(hwnd, top + page);
    case SB_TOP:
        return scroll_to(hwnd, 0);
    case SB_BOTTOM:
        return scroll_to(hwnd, static_cast<std::int64_t>(captured_text.lines.size()));
    case SB_THUMBTRACK:
        return scroll_to(hwnd, dragged_position(hwnd));
    default:
        return;
    }
}

void scroll_by_key(HWND hwnd, WPARAM key) {
    constexpr std::pair<WPARAM, int> KEYS[] = {{VK_UP, SB_LINEUP},    {VK_DOWN, SB_LINEDOWN},
                                               {VK_PRIOR, SB_PAGEUP}, {VK_NEXT, SB_PAGEDOWN},
                                               {VK_HOME, SB_TOP},     {VK_END, SB_BOTTOM}};
    for (const auto& [scroll_key, request] : KEYS)
        if (key == scroll_key)
            scroll_view(hwnd, request);
}

void scroll_by_wheel(HWND hwnd, int turned) {
    static int remainder = 0; // of fine wheels, which report parts of a notch
    UINT lines_a_notch = 3;
    SystemParametersInfoA(SPI_GETWHEELSCROLLLINES, 0, &lines_a_notch, 0);
    const UINT page = static_cast<UINT>(scroll_values().page);
    remainder += turned * static_cast<int>(std::min(lines_a_notch, page)); // a huge number stands for a page
    scroll_to(hwnd, static_cast<std::int64_t>(captured_text.top_line) - remainder / WHEEL_DELTA);
    remainder %= WHEEL_DELTA;
}
