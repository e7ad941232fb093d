// What the monitor shows: the list of captured lines, how bytes and keys become text in it, and the part of
// it that the window shows.
#pragma once

#include "app/TolvanP.h"
#include "app/files.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

inline constexpr std::size_t MON_LINE_LIMIT = 40;      // characters to which a line is filled
inline constexpr std::size_t MON_VIEW_LINES = 17;      // lines that a window of the usual size shows
inline constexpr std::size_t LEAST_MON_VIEW_LINES = 2; // fewer make no view

// One line of the list. Its neighbours in the list are the lines before and behind it.
struct MON_STRINGS {
    std::array<char, MON_LINE_LIMIT + 1> string; // NUL-terminated
};

struct HELD_KEYS {
    bool shift = false;
    bool ctrl = false;
    bool alt = false;
};

struct CAPTURED_TEXT {
    std::deque<MON_STRINGS> lines;
    std::size_t top_line = 0;                // index of the line at the top of the view
    std::size_t view_lines = MON_VIEW_LINES; // lines that the view shows whole
    HELD_KEYS held_keys;                     // on the keyboard
    HELD_KEYS received_keys;                 // by the portable's codes, which know no Shift
    bool out_of_memory = false;              // what came since is lost; reported once
};
extern CAPTURED_TEXT captured_text;

// Empties the list, forgets held keys and received Alt and Ctrl, and has the whole view drawn anew.
void clear_captured_text();

// Puts lines in place of the list and shows their end.
void replace_captured_lines(std::deque<MON_STRINGS> lines);

// --- capturing ---

// Appends text to the list, at most MON_LINE_LIMIT characters at once, and shows the end of the list.
// Running out of memory is reported once, until the list is cleared or replaced.
void write_string(std::string_view text);

// Shows one received byte.
void write_serkey(std::uint8_t byte);

// Keeps held_keys true to a press or release when `key` is the virtual-key code of Shift, Ctrl or Alt on
// either side. False for other keys.
bool hold_winkey(unsigned key, bool held);

// Shows one released key; `key` is its virtual-key code. `caps_lock` only counts for letters. Shift, Ctrl,
// Alt and Caps Lock themselves show nothing; Num Lock shows its code like any key without a name.
void write_winkey(unsigned key, bool shift, bool ctrl, bool alt, bool caps_lock);

// --- the view ---

// The window shows `count` lines whole, and is to be drawn anew. A view at the end of the list stays there.
void set_view_lines(std::size_t count);

// Moves the view so that `line` stands at its top, bounded so that the list fills the view. Takes
// a position of the scroll bar as well.
void scroll_captured_text(std::int64_t line);

// What has to be drawn again since the last call. First the view's picture moves up by `moved_up` rows (down
// when negative), then rows first to last - 1 are drawn anew; those behind the last line are blank.
struct VIEW_CHANGE {
    int moved_up;
    std::size_t first;
    std::size_t last;
};
VIEW_CHANGE take_view_change();

// The scroll bar while capture is off. Its last position stands for the end of the list, the others for the
// line at the top of the view. A page as long as the range or longer means that there is nothing to scroll.
struct SCROLL_VALUES {
    int maximum; // the range starts at 0
    int page;    // also the lines by which a page moves
    int position;
};
SCROLL_VALUES scroll_values();

// --- files and print ---

// Reads one line of a capture file, cut to what a line holds. False at the end of the file.
bool read_mon_line(BYTE_READER& file, MON_STRINGS& line);

// Reads a capture file in place of the list and shows its end. False when it cannot be opened or read: the
// list is then as it was, and the operator has been told.
bool open_capture_file(WINDOW owner, const std::string& file_name);

// Writes the list. False when that failed; the operator has been told and an old file is as it was.
bool save_capture_file(WINDOW owner, const std::string& file_name);

// The lines of each page in print, as ranges of line numbers.
struct PRINT_PAGE {
    std::size_t first;
    std::size_t last; // one behind the last line
};
std::vector<PRINT_PAGE> print_pages(int page_height, int line_height); // in the printer's units
