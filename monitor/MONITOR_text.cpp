// The list of captured lines and the part of it that the window shows.
#include "monitor/MONITOR_text.h"

#include "app/desktop.h"
#include "monitor/MONITOR.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

CAPTURED_TEXT captured_text;

namespace {

constexpr std::string_view CARRIAGE_RETURN = "{CR}";
constexpr std::size_t NOTHING = std::numeric_limits<std::size_t>::max();

// What the window last drew, so that one byte does not cost a whole view.
struct DRAWN_VIEW {
    bool stale = true; // all of it
    std::size_t top_line = 0;
    std::size_t stale_from = NOTHING; // the first line that changed; lines change at the end of the list only
};
DRAWN_VIEW drawn_view;

// The top line of a view that shows the end of the list.
std::size_t last_top_line() {
    return captured_text.lines.size() - std::min(captured_text.lines.size(), captured_text.view_lines);
}

std::size_t text_length(const MON_STRINGS& line) {
    return std::string_view(line.string.data()).size();
}

bool start_line() {
    try {
        captured_text.lines.push_back({});
    } catch (const std::bad_alloc&) {
        captured_text.out_of_memory = true;
        report_out_of_memory(nullptr);
        return false;
    }
    drawn_view.stale_from = std::min(drawn_view.stale_from, captured_text.lines.size() - 1);
    return true;
}

// Text that fits a line goes to the current line if it has room for all of it, else to a new one.
void append_to_list(std::string_view text) {
    std::deque<MON_STRINGS>& lines = captured_text.lines;
    std::size_t length = lines.empty() ? MON_LINE_LIMIT : text_length(lines.back());
    if (length + text.size() > MON_LINE_LIMIT) {
        if (!start_line())
            return;
        length = 0;
    }
    std::copy(text.begin(), text.end(), lines.back().string.begin() + static_cast<std::ptrdiff_t>(length));
    drawn_view.stale_from = std::min(drawn_view.stale_from, lines.size() - 1);
    if (translate_cr == 1 && text.find(CARRIAGE_RETURN) != std::string_view::npos)
        start_line();
}

void add_rows(VIEW_CHANGE& change, std::size_t first, std::size_t last) {
    if (first >= last)
        return;
    const bool is_first = change.first == change.last;
    change.first = is_first ? first : std::min(change.first, first);
    change.last = is_first ? last : std::max(change.last, last);
}

} // namespace

void replace_captured_lines(std::deque<MON_STRINGS> lines) {
    captured_text.lines = std::move(lines);
    captured_text.out_of_memory = false;
    captured_text.top_line = last_top_line();
    drawn_view.stale = true;
}

void clear_captured_text() {
    replace_captured_lines({});
    captured_text.held_keys = {};
    captured_text.received_keys = {};
}

void write_string(std::string_view text) {
    for (; !text.empty() && !captured_text.out_of_memory;
         text.remove_prefix(std::min(text.size(), MON_LINE_LIMIT)))
        append_to_list(text.substr(0, MON_LINE_LIMIT));
    captured_text.top_line = last_top_line();
}

void set_view_lines(std::size_t count) {
    const bool at_end = captured_text.top_line == last_top_line();
    captured_text.view_lines = std::max(count, LEAST_MON_VIEW_LINES);
    captured_text.top_line = at_end ? last_top_line() : std::min(captured_text.top_line, last_top_line());
    drawn_view.stale = true;
}

void scroll_captured_text(std::int64_t line) {
    captured_text.top_line = static_cast<std::size_t>(
        std::clamp(line, std::int64_t{0}, static_cast<std::int64_t>(last_top_line())));
}

VIEW_CHANGE take_view_change() {
    const std::size_t top = captured_text.top_line;
    const std::size_t rows = captured_text.view_lines;
    const DRAWN_VIEW drawn = std::exchange(drawn_view, {.stale = false, .top_line = top});
    const std::size_t up = top - std::min(top, drawn.top_line);
    const std::size_t down = drawn.top_line - std::min(top, drawn.top_line);
    if (drawn.stale || up >= rows || down >= rows)
        return {0, 0, rows};
    VIEW_CHANGE change = {static_cast<int>(up) - static_cast<int>(down), 0, 0};
    add_rows(change, rows - up, rows);
    add_rows(change, 0, down);
    if (drawn.stale_from != NOTHING)
        add_rows(change, std::max(drawn.stale_from, top) - top,
                 std::min(captured_text.lines.size() - top, rows));
    return change;
}

// A page leaves one line of the old view in sight. The range is that of the whole list, so its last position
// lies two behind the top line of a view that shows the end.
SCROLL_VALUES scroll_values() {
    const std::size_t count = captured_text.lines.size();
    const int page = static_cast<int>(captured_text.view_lines) - 1;
    if (count < captured_text.view_lines)
        return {1, page, 0};
    const bool at_end = captured_text.top_line == last_top_line();
    return {static_cast<int>(count), page,
            at_end ? static_cast<int>(count) - page + 1 : static_cast<int>(captured_text.top_line)};
}

std::vector<PRINT_PAGE> print_pages(int page_height, int line_height) {
    const auto page_lines = static_cast<std::size_t>(std::max(page_height / std::max(line_height, 1), 1));
    std::vector<PRINT_PAGE> pages;
    const std::size_t count = captured_text.lines.size();
    for (std::size_t first = 0; first < count; first += page_lines)
        pages.push_back({first, std::min(first + page_lines, count)});
    return pages;
}
