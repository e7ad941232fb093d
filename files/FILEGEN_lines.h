// The thirteen lines of the record store that the editor of lookup and data files shows: typing into them,
// moving between them, scrolling them over the store.
#pragma once

#include <windows.h>

#include <cstdint>

inline constexpr int VISIBLE_LINES = 13;
inline constexpr int NO_ROW = -1;

// Beyond the messages of all dialogs, which begin at WM_USER.
inline constexpr UINT WM_LINE_KEY = WM_APP + 1; // a key that moves between the lines was pressed in one
// A line or a button that acts on it has lost the focus, and the new focus is known.
inline constexpr UINT WM_LINE_LEFT = WM_APP + 2;

extern std::uint32_t record_index_base; // line number of the first visible line, from 1

struct FILE_LINES {
    int row = NO_ROW;        // of the line that Insert and Delete act on
    int edited_row = NO_ROW; // of the line whose text differs from its record
};

// Gives the lines their keys and their limit, and takes the keys back.
void prepare_lines(HWND hDlg);
void release_lines(HWND hDlg);

// The visible lines as the store has them, from record_index_base on as far as there are records. What is
// being typed has been stored before.
void show_lines(HWND hDlg, FILE_LINES& lines);
void enable_repeats(HWND hDlg, bool enabled);

void leave_line(HWND hDlg, FILE_LINES& lines);     // Insert and Delete have no line any more
void leave_lines(HWND hDlg, FILE_LINES& lines);    // the same, and the focus stands before the lines
void note_new_focus(HWND hDlg, FILE_LINES& lines); // the same, unless the focus is still near the line

// Puts an edited line into its record. Without memory the editor cannot go on.
void store_line(HWND hDlg, FILE_LINES& lines);

// The buttons Add, Insert and Delete.
void do_line_command(HWND hDlg, FILE_LINES& lines, int command);

// False when the notification comes from no line.
bool take_line_notification(HWND hDlg, FILE_LINES& lines, int control, int notification);

// What the dialog is told by such a key, the scroll bar (WM_VSCROLL) or the wheel (WM_MOUSEWHEEL).
void move_lines(HWND hDlg, FILE_LINES& lines, UINT message, WPARAM wParam);
