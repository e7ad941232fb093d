#include "tests/desktop_script.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

struct STATUS_BOX {
    bool is_open;
};

namespace {

std::vector<ANNOUNCED_MESSAGE> announced;
STATUS_BOX status_box;

std::string message_box(const std::string& text, const std::string& caption, MESSAGE_ICON icon,
                        MESSAGE_BUTTONS buttons) {
    return '"' + text + "\" under \"" + caption + "\", icon " + std::to_string(static_cast<int>(icon)) +
           ", buttons " + std::to_string(static_cast<int>(buttons));
}

void log_status(STATUS_BOX* box, bool was_open, const std::string& text) {
    if (box->is_open != was_open)
        stop_test("progress box out of turn: " + text);
    desktop_status_log.push_back(text);
}

} // namespace

void stop_test(const std::string& why) {
    std::fprintf(stderr, "test script: %s\n", why.c_str());
    std::abort();
}

void expect_message(const std::string& text, const std::string& caption, MESSAGE_ICON icon,
                    MESSAGE_BUTTONS buttons, BUTTON answer) {
    announced.push_back({message_box(text, caption, icon, buttons), answer});
}

std::vector<ANNOUNCED_MESSAGE> reset_desktop() {
    desktop_settings.clear();
    desktop_clock = 0;
    desktop_clock_step = 1;
    desktop_time = {2026, 11, 21, 9, 5};
    desktop_beeps = 0;
    desktop_temporary_file.reset();
    desktop_status_log.clear();
    status_box.is_open = false;
    return std::exchange(announced, {});
}

BUTTON show_message(WINDOW, const std::string& text, const std::string& caption, MESSAGE_ICON icon,
                    MESSAGE_BUTTONS buttons) {
    const std::string shown = message_box(text, caption, icon, buttons);
    const auto [expected, answer] =
        announced.empty() ? ANNOUNCED_MESSAGE{"no box", BUTTON::OK} : announced.front();
    if (shown != expected)
        stop_test("message box " + shown + " where " + expected + " was announced");
    announced.erase(announced.begin());
    return answer;
}

void beep() {
    ++desktop_beeps;
}

STATUS_BOX* open_status_box(int mode) {
    log_status(&status_box, false, "open " + std::to_string(mode));
    status_box.is_open = true;
    return &status_box;
}

void update_status_bar(STATUS_BOX* box, std::int64_t position, std::int64_t size) {
    log_status(box, true, "update " + std::to_string(position) + "/" + std::to_string(size));
}

void close_status_box(STATUS_BOX* box) {
    log_status(box, true, "close");
    box->is_open = false;
}

std::uint32_t read_setting_number(const char* section, const char* key, std::uint32_t missing) {
    const std::string value = read_setting_text(section, key, std::to_string(missing), std::string::npos);
    return static_cast<std::uint32_t>(std::strtoul(value.c_str(), nullptr, 10));
}

std::string read_setting_text(const char* section, const char* key, const std::string& missing,
                              std::size_t limit) {
    const auto found = desktop_settings.find(std::string(section) + "/" + key);
    return (found == desktop_settings.end() ? missing : found->second).substr(0, limit);
}

void write_setting(const char* section, const char* key, const std::string& value) {
    desktop_settings[std::string(section) + "/" + key] = value;
}

std::uint32_t tick_count() {
    return desktop_clock += desktop_clock_step;
}

void rest() {
    tick_count();
}

LOCAL_TIME local_time() {
    return desktop_time;
}

std::string temporary_file_name() {
    if (!desktop_temporary_file)
        stop_test("a temporary file that no test prepared for");
    return *desktop_temporary_file;
}

bool replace_file(const std::string& from, const std::string& to) {
    return std::rename(from.c_str(), to.c_str()) == 0;
}
