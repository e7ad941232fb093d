#include "tests/desktop_script.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

struct STATUS_BOX {};

namespace {

std::vector<ANNOUNCED_MESSAGE> announced;
STATUS_BOX status_box;
bool status_box_open = false;

void require_status_box(STATUS_BOX* box) {
    if (box != &status_box || !status_box_open)
        stop_test("a progress box used that is not open");
}

} // namespace

void stop_test(const std::string& why) {
    std::fprintf(stderr, "test script: %s\n", why.c_str());
    std::abort();
}

std::map<std::string, std::string> desktop_settings;
std::uint32_t desktop_clock = 0;
std::uint32_t desktop_clock_step = 1;
LOCAL_TIME desktop_time = {2026, 11, 21, 9, 5};
int desktop_beeps = 0;
std::optional<std::string> desktop_temporary_file;
std::vector<std::string> desktop_status_log;

void expect_message(const std::string& text, const std::string& caption, MESSAGE_ICON icon,
                    MESSAGE_BUTTONS buttons, BUTTON answer) {
    announced.push_back({text, caption, icon, buttons, answer});
}

std::vector<ANNOUNCED_MESSAGE> reset_desktop() {
    const std::vector<ANNOUNCED_MESSAGE> left = std::exchange(announced, {});
    desktop_settings.clear();
    desktop_clock = 0;
    desktop_clock_step = 1;
    desktop_time = {2026, 11, 21, 9, 5};
    desktop_beeps = 0;
    desktop_temporary_file.reset();
    desktop_status_log.clear();
    status_box_open = false;
    return left;
}

BUTTON show_message(WINDOW, const std::string& text, const std::string& caption, MESSAGE_ICON icon,
                    MESSAGE_BUTTONS buttons) {
    if (announced.empty())
        stop_test("unannounced message \"" + text + "\" under \"" + caption + "\"");
    const ANNOUNCED_MESSAGE next = announced.front();
    announced.erase(announced.begin());
    if (next != ANNOUNCED_MESSAGE{text, caption, icon, buttons, next.answer})
        stop_test("message \"" + text + "\" under \"" + caption + "\" where \"" + next.text + "\" under \"" +
                  next.caption + "\" was announced (or icon or buttons differ)");
    return next.answer;
}

void beep() {
    ++desktop_beeps;
}

STATUS_BOX* open_status_box(int mode) {
    if (status_box_open)
        stop_test("a second progress box");
    status_box_open = true;
    desktop_status_log.push_back("open " + std::to_string(mode));
    return &status_box;
}

void update_status_bar(STATUS_BOX* box, std::int64_t position, std::int64_t size) {
    require_status_box(box);
    desktop_status_log.push_back("update " + std::to_string(position) + "/" + std::to_string(size));
}

void close_status_box(STATUS_BOX* box) {
    require_status_box(box);
    status_box_open = false;
    desktop_status_log.push_back("close");
}

std::uint32_t read_setting_number(const char* section, const char* key, std::uint32_t missing) {
    const auto found = desktop_settings.find(std::string(section) + "/" + key);
    if (found == desktop_settings.end())
        return missing;
    return static_cast<std::uint32_t>(std::strtoul(found->second.c_str(), nullptr, 10));
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
    desktop_clock += desktop_clock_step;
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
