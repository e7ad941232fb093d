#include "app/settings.h"

#include "app/desktop.h"

std::string prog_directory;
std::string data_directory;
std::string lib_directory;
std::string send_directory;
std::string receive_directory;
std::string upgrade_directory;
std::string config_directory;
std::string monitor_directory;

namespace {

constexpr char DIRECTORY_SECTION[] = "DIRECT";
constexpr char WINDOW_SECTION[] = "MAIN_WINDOW";
constexpr WINDOW_SIZE DEFAULT_WINDOW_SIZE = {437, 86};

struct DIRECTORY_KEY {
    const char* key;
    std::string* directory;
};
// The program directory stands first: it tells whether the others were ever written.
constexpr DIRECTORY_KEY DIRECTORIES[] = {
    {"P_DIRECT", &prog_directory},   {"D_DIRECT", &data_directory},    {"L_DIRECT", &lib_directory},
    {"S_DIRECT", &send_directory},   {"R_DIRECT", &receive_directory}, {"U_DIRECT", &upgrade_directory},
    {"C_DIRECT", &config_directory}, {"M_DIRECT", &monitor_directory},
};

} // namespace

void read_directory_setup() {
    for (const auto& [key, directory] : DIRECTORIES)
        *directory = read_setting_text(DIRECTORY_SECTION, key, "", DIRECTORY_LIMIT);
    if (!prog_directory.empty())
        return;
    for (const auto& [key, directory] : DIRECTORIES)
        *directory = DEFAULT_DIRECTORY;
    write_directory_setup();
}

void write_directory_setup() {
    for (const auto& [key, directory] : DIRECTORIES)
        write_setting(DIRECTORY_SECTION, key, *directory);
}

WINDOW_SIZE read_window_size() {
    return {read_setting_number(WINDOW_SECTION, "CX", DEFAULT_WINDOW_SIZE.cx),
            read_setting_number(WINDOW_SECTION, "CY", DEFAULT_WINDOW_SIZE.cy)};
}

bool is_window_size_stored() {
    return !read_setting_text(WINDOW_SECTION, "CX", "", 1).empty();
}

void write_window_size(WINDOW_SIZE size) {
    write_setting(WINDOW_SECTION, "CX", std::to_string(size.cx));
    write_setting(WINDOW_SECTION, "CY", std::to_string(size.cy));
}
