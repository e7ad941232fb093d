#include "tests/line_script.h"

#include "tests/desktop_script.h"

#include <algorithm>
#include <deque>

LINE_SCRIPT line_script;
LINE_RECORD line_record;

namespace {

constexpr std::uint32_t QUERY_LIMIT = 50'000'000; // a transfer that polls this often will never end
constexpr std::uint32_t PAUSE = 1000;             // ms

std::deque<std::pair<std::uint32_t, char>> coming; // when each byte can be read, and the byte
LINE the_line;

void note(const std::string& text) {
    std::string& events = line_record.events;
    events += (events.empty() ? "" : "|") + std::to_string(desktop_clock / 100) + " " + text;
    line_record.last_sent_at.reset();
}

void note_sent(std::uint8_t byte) {
    if (!line_record.last_sent_at || desktop_clock - *line_record.last_sent_at > PAUSE)
        note("> ");
    line_record.events += static_cast<char>(byte);
    line_record.sent += static_cast<char>(byte);
    line_record.last_sent_at = desktop_clock;
}

bool is_query_answered_with_fault() {
    if (++line_record.queries > QUERY_LIMIT)
        stop_test("endless polls");
    return line_record.queries == line_script.fault_at_query;
}

} // namespace

void reset_line() {
    line_script = {};
    line_record = {};
    coming.clear();
}

void line_brings(const std::string& bytes, std::uint32_t at) {
    for (const char c : bytes)
        coming.emplace_back(at, c);
}

OPENED_LINE open_line(const LINE_SETTINGS& settings) {
    line_record.settings = settings;
    note("open");
    if (line_script.opening != LINE_OPENING::OPEN)
        return {line_script.opening, nullptr};
    ++line_record.open_lines;
    return {LINE_OPENING::OPEN, &the_line};
}

void close_line(LINE*) {
    --line_record.open_lines;
    note("close");
}

std::uint32_t clear_line_error(LINE*, LINE_STATUS* status) {
    LINE_STATUS quiet = {};
    return line_script.status ? line_script.status(status ? *status : quiet) : 0;
}

bool read_line_byte(LINE* line, std::uint8_t* byte) {
    if (line_script.read)
        return line_script.read(line, byte);
    if (coming.empty() || coming.front().first > desktop_clock)
        return false;
    *byte = static_cast<std::uint8_t>(coming.front().second);
    coming.pop_front();
    return true;
}

LINE_WRITE write_line_byte(LINE* line, std::uint8_t byte) {
    const LINE_WRITE result = line_script.write ? line_script.write(line, byte) : LINE_WRITE::DONE;
    if (result != LINE_WRITE::DONE)
        return result;
    note_sent(byte);
    const std::size_t heard = line_record.sent.size() / line_script.answered_size;
    if (line_record.sent.size() % line_script.answered_size == 0 && heard <= line_script.answers.size())
        line_brings(line_script.answers[heard - 1]);
    return result;
}

bool line_has_carrier(LINE*) {
    const auto changes = std::count_if(line_script.carrier.begin(), line_script.carrier.end(),
                                       [](std::uint32_t at) { return at <= desktop_clock; });
    return !is_query_answered_with_fault() && changes % 2 == 1;
}

void show_counter(WINDOW, COUNTER counter, const std::string& text) {
    line_record.counters[counter] = text;
    if (counter == COUNTER::STATUS)
        note("STATUS " + text);
}

void show_transfer_button(WINDOW, const std::string& caption) {
    note("button " + caption);
}

void show_transfer_file(WINDOW, const std::string& name) {
    note("file " + name);
}

bool is_cancel_button_pressed(WINDOW) {
    return is_query_answered_with_fault() || desktop_clock >= line_script.cancel_at;
}

bool ask_phone_number(WINDOW, std::string& number) {
    note("ask number " + number);
    if (!line_script.typed_number)
        return false;
    number = *line_script.typed_number;
    return true;
}
