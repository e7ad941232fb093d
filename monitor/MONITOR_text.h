// What the monitor shows: the list of captured lines, how bytes and keys become text in it, and the part of
// it that the window shows.
#pragma once

#include "app/TolvanP.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

inline constexpr std::size_t MON_LINE_LIMIT = 40; // characters to which a line is filled
inline constexpr std::size_t MON_VIEW_LINES = 17; // lines that the window shows before it scrolls
inline constexpr std::size_t MON_PAGE = 16;       // lines by which a page moves

// One line of the list. Its neighbours in the list are the lines before and behind it.
struct MON_STRINGS {
    std::array<char, MON_LINE_LIMIT + 1> string; // NUL-terminated
};

struct CAPTURED_TEXT {
    std::deque<MON_STRINGS> lines;
    std::size_t top_line = 0; // index of the line at the top of the view
};
extern CAPTURED_TEXT captured_text;

// Empties the list, forgets held keys and received Alt and Ctrl, and has the whole view drawn anew.
void clear_captured_text();

// Appends text to the list, at most MON_LINE_LIMIT characters at once.
void write_string(std::string_view text);

// Shows one received byte.
void write_serkey(std::uint8_t byte);

// Shows one released key; `key` is its virtual-key code. `caps_lock` only counts for letters.
void write_winkey(unsigned key, bool shift, bool ctrl, bool alt, bool caps_lock);

// Moves the view so that `line` stands at its top, bounded to the list.
void scroll_captured_text(std::int64_t line);

// What has to be drawn again since the last call, for a view of `rows` rows. First the view's picture moves
// up by `moved_up` rows (down when negative), then rows first to last - 1 are drawn anew.
struct VIEW_CHANGE {
    int moved_up;
    std::size_t first;
    std::size_t last;
};
VIEW_CHANGE take_view_change(std::size_t rows);

// The scroll bar once capture is off or a file was opened.
struct SCROLL_VALUES {
    int maximum; // the range starts at 0
    int page;
    int position;
};
SCROLL_VALUES scroll_values();

// Reads a capture file in place of the list. False when it cannot be opened or read: the list is then as it
// was, and the operator has been told.
bool open_capture_file(WINDOW owner, const std::string& file_name);

// Writes the list. False when that failed; the operator has been told and an old file is as it was.
bool save_capture_file(WINDOW owner, const std::string& file_name);

// The lines of each page in print, as ranges of line numbers.
struct PRINT_PAGE {
    std::size_t first;
    std::size_t last; // one behind the last line
};
std::vector<PRINT_PAGE> print_pages(int page_height, int line_height); // in the printer's units
