// Lines of the portable's display, drawn on owner-drawn static controls as the display itself looks. They
// stand on each other without a gap; 124 by 11 dialog units is the least that shows a line whole.
#pragma once

#include <windows.h>

#include <string_view>

// Shows stored bytes on the line, 20 cells; the control's text is that of convert_ampersands_and_nonascii().
void show_display_line(HWND dialog, int control, std::string_view stored);

// Draws a line that asks for it by WM_DRAWITEM.
void draw_display_line(LPARAM lParam);
