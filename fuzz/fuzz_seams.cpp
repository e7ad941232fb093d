// The desktop and the line of the fuzz targets: an operator who answers as the input says, files in a folder
// of the process, a line whose other side says the input, and a count of the memory in use.
#include "fuzz/fuzz.h"

#include "app/desktop.h"
#include "app/files.h"
#include "comm/line.h"
#include "comm/transfer_screen.h"
#include "files/FILEGEN.h"
#include "files/FILEGEN_import.h"
#include "library/LIB.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <map>
#include <new>

struct STATUS_BOX {};
struct LINE {};

unsigned messages_shown;
std::size_t allocations_to_failure;

namespace {

constexpr std::uint32_t CLOCK_STEP = 50;                    // milliseconds that pass whenever somebody looks
constexpr unsigned MOST_CANCEL_QUERIES = 5000;              // then the operator loses patience
constexpr std::size_t MEMORY_AT_ALL = std::size_t{1} << 20; // bytes: buffers of a fixed size
constexpr std::size_t MEMORY_PER_BYTE = 64;                 // a small multiple of the file

std::size_t memory_now;
std::size_t memory_peak;

std::uint32_t fuzz_clock;
std::uint32_t answers; // a generator that is seeded from the input
unsigned cancel_queries;
int input_files;
STATUS_BOX status_box;
bool status_box_open;
LINE the_line;
int open_lines;
std::string_view unsaid;
std::deque<char> said;
std::map<std::string, std::string, std::less<>> settings;

// The folder of this process, gone with it.
struct OWN_FOLDER {
    std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("tolvan-fuzz-" + std::to_string(getpid()));
    ~OWN_FOLDER() {
        std::error_code ignored; // best effort: it is only a left-over
        std::filesystem::current_path("/", ignored);
        std::filesystem::remove_all(path, ignored);
    }
};

const std::filesystem::path& folder() {
    static const OWN_FOLDER own;
    return own.path;
}

std::filesystem::path temporary_folder() {
    return folder() / "temporary";
}

void say_next_piece() {
    if (unsaid.size() < 2)
        return;
    const auto low = static_cast<unsigned char>(unsaid[0]);
    const auto high = static_cast<unsigned char>(unsaid[1]);
    const std::string_view piece = unsaid.substr(2, low + 256U * high);
    said.insert(said.end(), piece.begin(), piece.end());
    unsaid.remove_prefix(2 + piece.size());
}

} // namespace

// --- memory ---

// Each block has its size in front of it, in a space that keeps the alignment.
void* operator new(std::size_t size) {
    if (allocations_to_failure > 0 && --allocations_to_failure == 0)
        throw std::bad_alloc();
    constexpr std::size_t SPACE = alignof(std::max_align_t);
    auto* const block = static_cast<std::size_t*>(std::malloc(size + SPACE));
    if (block == nullptr)
        throw std::bad_alloc();
    *block = size;
    memory_now += size;
    memory_peak = std::max(memory_peak, memory_now);
    return reinterpret_cast<char*>(block) + SPACE;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void operator delete(void* place) noexcept {
    if (place == nullptr)
        return;
    auto* const block = reinterpret_cast<std::size_t*>(static_cast<char*>(place) - alignof(std::max_align_t));
    memory_now -= *block;
    std::free(block);
}

void operator delete(void* place, std::size_t) noexcept {
    operator delete(place);
}

void operator delete(void* place, const std::nothrow_t&) noexcept {
    operator delete(place);
}

void run_fuzz_input(const FUZZ_TARGET& target, std::string_view input) {
    reset_seams(input);
    const std::size_t memory_before = memory_now;
    memory_peak = memory_now;
    target.run(input);
    if (!are_seams_clean() || memory_peak - memory_before > MEMORY_AT_ALL + MEMORY_PER_BYTE * input.size()) {
        (void)std::fprintf(stderr, "%s: something left behind, or %zu bytes taken for %zu\n", target.name,
                           memory_peak - memory_before, input.size());
        std::abort();
    }
}

void reset_seams(std::string_view input) {
    fuzz_clock = 0;
    answers = 0;
    for (const char byte : input)
        answers = answers * 31 + static_cast<unsigned char>(byte);
    messages_shown = 0;
    input_files = 0;
    allocations_to_failure = 0;
    cancel_queries = 0;
    unsaid = {};
    said.clear();
    settings.clear();
    std::filesystem::remove_all(folder());
    std::filesystem::create_directories(temporary_folder());
    std::filesystem::current_path(folder()); // LOG.TXT is written there
}

bool are_seams_clean() {
    return !status_box_open && open_lines == 0 && std::filesystem::is_empty(temporary_folder());
}

std::string input_file(std::string_view input, const char* extension) {
    std::string name = (folder() / ("FILE" + std::to_string(++input_files))).string() + extension;
    std::ofstream(name, std::ios::binary).write(input.data(), static_cast<std::streamsize>(input.size()));
    return name;
}

unsigned next_answer(unsigned count) {
    answers = answers * 1664525 + 1013904223;
    return (answers >> 16) % count;
}

void line_says(std::string_view input) {
    unsaid = input;
    say_next_piece();
}

void settings_are(std::string_view input) {
    while (!input.empty()) {
        const std::string_view line = input.substr(0, input.find('\n'));
        input.remove_prefix(std::min(line.size() + 1, input.size()));
        const std::size_t equals = line.find('=');
        if (equals != std::string_view::npos)
            settings[std::string(line.substr(0, equals))] = line.substr(equals + 1);
    }
}

// --- the operator ---

BUTTON show_message(WINDOW, const std::string&, const std::string&, MESSAGE_ICON, MESSAGE_BUTTONS buttons) {
    ++messages_shown;
    constexpr BUTTON ANSWERS[] = {BUTTON::YES, BUTTON::NO, BUTTON::CANCEL};
    if (buttons == MESSAGE_BUTTONS::OK)
        return BUTTON::OK;
    return ANSWERS[next_answer(buttons == MESSAGE_BUTTONS::YES_NO ? 2 : 3)];
}

int choose_lookup_format(WINDOW) {
    return static_cast<int>(next_answer(3));
}

bool choose_import_fields(WINDOW, std::vector<FIELD_DESCRIPTOR>& fields, IMPORT_OPTIONS& options) {
    for (FIELD_DESCRIPTOR& field : fields)
        field.import_field = static_cast<std::uint8_t>(next_answer(2));
    for (bool* option : {&options.strip_lead_spaces, &options.strip_trail_spaces, &options.strip_zeroes,
                         &options.strip_trunc})
        *option = next_answer(2) == 1;
    return true;
}

int choose_library_member(WINDOW, const std::vector<std::string>& rows) {
    return static_cast<int>(next_answer(static_cast<unsigned>(rows.size()) + 1)) - 1;
}

bool is_cancel_button_pressed(WINDOW) {
    return ++cancel_queries > MOST_CANCEL_QUERIES;
}

bool ask_phone_number(WINDOW, std::string& number) {
    number = "555-0100";
    return next_answer(8) != 0;
}

// --- the desktop ---

void beep() {}

STATUS_BOX* open_status_box(int) {
    if (status_box_open)
        std::abort();
    status_box_open = true;
    return &status_box;
}

void update_status_bar(STATUS_BOX* box, std::int64_t, std::int64_t) {
    if (box != &status_box || !status_box_open)
        std::abort();
}

void close_status_box(STATUS_BOX* box) {
    if (box != &status_box || !status_box_open)
        std::abort();
    status_box_open = false;
}

std::uint32_t read_setting_number(const char* section, const char* key, std::uint32_t missing) {
    const auto found = settings.find(std::string(section) + "/" + key);
    return found == settings.end()
               ? missing
               : static_cast<std::uint32_t>(std::strtoul(found->second.c_str(), nullptr, 10));
}

std::string read_setting_text(const char* section, const char* key, const std::string& missing,
                              std::size_t limit) {
    const auto found = settings.find(std::string(section) + "/" + key);
    return (found == settings.end() ? missing : found->second).substr(0, limit);
}

void write_setting(const char*, const char*, const std::string&) {}

std::uint32_t tick_count() {
    return fuzz_clock += CLOCK_STEP;
}

void rest() {
    fuzz_clock += CLOCK_STEP;
}

LOCAL_TIME local_time() {
    return {2026, 11, 21, 9, 5};
}

std::string temporary_file_name() {
    static int files;
    std::string name = (temporary_folder() / std::to_string(++files)).string();
    open_file(name, "wb");
    return name;
}

bool replace_file(const std::string& from, const std::string& to) {
    return std::rename(from.c_str(), to.c_str()) == 0;
}

// --- the line and what a transfer shows ---

OPENED_LINE open_line(const LINE_SETTINGS&) {
    ++open_lines;
    return {LINE_OPENING::OPEN, &the_line};
}

void close_line(LINE* line) {
    if (line != &the_line || open_lines == 0)
        std::abort();
    --open_lines;
}

std::uint32_t clear_line_error(LINE*, LINE_STATUS* status) {
    if (status != nullptr)
        *status = {};
    return 0;
}

bool read_line_byte(LINE*, std::uint8_t* byte) {
    if (said.empty())
        return false;
    *byte = static_cast<std::uint8_t>(said.front());
    said.pop_front();
    return true;
}

LINE_WRITE write_line_byte(LINE*, std::uint8_t) {
    say_next_piece();
    return LINE_WRITE::DONE;
}

bool line_has_carrier(LINE*) {
    return next_answer(64) != 0;
}

void show_counter(WINDOW, COUNTER, const std::string&) {}
void show_transfer_button(WINDOW, const std::string&) {}
void show_transfer_file(WINDOW, const std::string&) {}
void show_library_list(WINDOW) {}
