#include "program/Prog_lcd.h"

#include "app/dialogs.h"
#include "program/Prog_display.h"
#include "program/Prog_text.h"

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

// One column of the line; neighbours share their borders, so that all columns fill the line exactly.
RECT cell_place(const RECT& line, int column) {
    const LONG width = line.right - line.left;
    return {line.left + width * column / DISPLAY_COLUMNS, line.top,
            line.left + width * (column + 1) / DISPLAY_COLUMNS, line.bottom};
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
    const RECT& line = item->rcItem;
    const std::string cells = cells_of(window_text(item->hwndItem));
    const int saved = SaveDC(item->hDC);
    HFONT font = CreateFontA(line.bottom - line.top - 1, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE,
                             ANSI_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                             FIXED_PITCH | FF_MODERN, "Fixedsys");
    SelectObject(item->hDC, font);
    SetTextAlign(item->hDC, TA_CENTER | TA_TOP);
    SetBkColor(item->hDC, LCD_COLOUR);
    SetTextColor(item->hDC, INK_COLOUR);
    TEXTMETRICA metric{};
    GetTextMetricsA(item->hDC, &metric);
    for (int column = 0; column < DISPLAY_COLUMNS; ++column)
        draw_cell(item->hDC, cell_place(line, column), cells[static_cast<std::size_t>(column)],
                  metric.tmHeight);
    RestoreDC(item->hDC, saved);
    DeleteObject(font);
}
