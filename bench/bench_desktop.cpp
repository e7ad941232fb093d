// The desktop of the benchmarks: no messages, and a progress bar painted into memory whenever its picture
// changes.
#include "app/desktop.h"
#include "library/LIB.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr std::size_t BAR_WIDTH = 240; // pixels, about what the box has on an ordinary screen
constexpr std::size_t BAR_HEIGHT = 22;
constexpr std::uint32_t BLUE = 0x0000FF;
constexpr std::uint32_t BACKGROUND = 0xFFFFFF;

} // namespace

struct STATUS_BOX {
    int width;
    std::array<std::uint32_t, BAR_WIDTH * BAR_HEIGHT> pixels;
};

namespace {
STATUS_BOX status_box;
} // namespace

STATUS_BOX* open_status_box(int) {
    status_box.width = -1;
    return &status_box;
}

void update_status_bar(STATUS_BOX* box, std::int64_t position, std::int64_t size) {
    const auto width =
        static_cast<int>(position * std::int64_t{BAR_WIDTH - 1} / std::max<std::int64_t>(size, 1)) + 1;
    if (width == box->width)
        return;
    box->width = width;
    for (std::size_t row = 0; row < BAR_HEIGHT; ++row) {
        auto* const start = &box->pixels[row * BAR_WIDTH];
        std::fill(start, start + width, BLUE);
        std::fill(start + width, start + BAR_WIDTH, BACKGROUND);
    }
}

void close_status_box(STATUS_BOX*) {}

BUTTON show_message(WINDOW, const std::string& text, const std::string&, MESSAGE_ICON, MESSAGE_BUTTONS) {
    (void)std::fprintf(stderr, "unexpected message: %s\n", text.c_str());
    std::abort();
}

std::string temporary_file_name() {
    std::abort(); // no benchmark takes a file out of a library
}

int choose_library_member(WINDOW, const std::vector<std::string>&) {
    std::abort();
}

bool replace_file(const std::string& from, const std::string& to) {
    return std::rename(from.c_str(), to.c_str()) == 0;
}

// No settings file: all settings keep their defaults.
std::uint32_t read_setting_number(const char*, const char*, std::uint32_t missing) {
    return missing;
}

void write_setting(const char*, const char*, const std::string&) {}
