#include "program/Prog_lcd.h"

#include "app/dialogs.h"
#include "program/Prog_display.h"
#include "program/Prog_text.h"

#include <algorithm>
#include <string>

namespace {

constexpr COLORREF LCD_COLOUR = RGB(205, 219, 178);
constexpr COLORREF INK_COLOUR = RGB(24, 36, 24);

// The cells behind the text of a static control, where '&' is doubled.
std::string cells_of(const std::string& text) {
    std::string cells;
    for (std::size_t i = 0; i < text.size(); ++i) {
        cells += text[i];
        if (text[i] == '&')
            ++i;
    }
    cells.resize(DISPLAY_COLUMNS, ' ');
    return cells;
}

// One column of a line of that size; neighbours share their borders, so that all columns fill it exactly.
RECT cell_place(SIZE line, int column) {
    return {line.cx * column / DISPLAY_COLUMNS, 0, line.cx * (column + 1) / DISPLAY_COLUMNS, line.cy};
}

// The font has one size only. How much larger the line is than its text, in halves: 2 when it just fits.
int magnification(SIZE line, const TEXTMETRICA& font) {
    const LONG across = 2 * line.cx / std::max(font.tmAveCharWidth * DISPLAY_COLUMNS, 1L);
    const LONG down = 2 * line.cy / std::max(font.tmHeight, 1L);
    return static_cast<int>(std::max(std::min(across, down), 2L));
}

void draw_cell(HDC dc, RECT place, char cell, LONG text_height) {
    const LONG x = (place.left + place.right) / 2;
    const LONG y = (place.top + place.bottom - text_height) / 2;
    const bool block = cell == EMPTY_CELL;
    ExtTextOutA(dc, x, y, ETO_OPAQUE | ETO_CLIPPED, &place, &cell, block ? 0 : 1, nullptr);
    if (!block)
        return;
    InflateRect(&place, -1, -1);
    SetDCBrushColor(dc, INK_COLOUR);
    FillRect(dc, &place, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void draw_cells(HDC dc, SIZE line, const std::string& cells, LONG text_height) {
    SetTextAlign(dc, TA_CENTER | TA_TOP);
    SetBkColor(dc, LCD_COLOUR);
    SetTextColor(dc, INK_COLOUR);
    for (int column = 0; column < DISPLAY_COLUMNS; ++column)
        draw_cell(dc, cell_place(line, column), cells[static_cast<std::size_t>(column)], text_height);
}

HFONT create_display_font() {
    return CreateFontA(0, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, ANSI_CHARSET, OUT_DEFAULT_PRECIS,
                       CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, FIXED_PITCH | FF_MODERN, "Fixedsys");
}

} // namespace

void show_display_line(HWND dialog, int control, std::string_view stored) {
    const std::string text = convert_ampersands_and_nonascii(stored);
    if (text == control_text(dialog, control)) // most lines stay as they are while the operator types
        return;
    set_control_text(dialog, control, text);
    InvalidateRect(GetDlgItem(dialog, control), nullptr, FALSE);
}

void draw_display_line(LPARAM lParam) {
    const auto* item = reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
    const RECT& place = item->rcItem;
    const SIZE line{place.right - place.left, place.bottom - place.top};
    const std::string cells = cells_of(window_text(item->hwndItem));
    HDC dc = CreateCompatibleDC(item->hDC);
    HFONT font = create_display_font();
    HGDIOBJ old_font = SelectObject(dc, font);
    TEXTMETRICA metric{};
    GetTextMetricsA(dc, &metric);
    const int halves = magnification(line, metric);
    const SIZE drawn{line.cx * 2 / halves, line.cy * 2 / halves};
    HBITMAP picture = CreateCompatibleBitmap(item->hDC, drawn.cx, drawn.cy);
    HGDIOBJ old_picture = SelectObject(dc, picture);
    draw_cells(dc, drawn, cells, metric.tmHeight);
    SetStretchBltMode(item->hDC, HALFTONE);
    SetBrushOrgEx(item->hDC, 0, 0, nullptr); // as that mode wants it
    StretchBlt(item->hDC, place.left, place.top, line.cx, line.cy, dc, 0, 0, drawn.cx, drawn.cy, SRCCOPY);
    SelectObject(dc, old_picture);
    SelectObject(dc, old_font);
    DeleteObject(picture);
    DeleteObject(font);
    DeleteDC(dc);
}
