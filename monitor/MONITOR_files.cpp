// Capture files: the list's lines, each with a line feed behind it.
#include "monitor/MONITOR_text.h"

#include "app/desktop.h"

#include <new>
#include <optional>
#include <utility>

namespace {

constexpr char CAPTION[] = "Save File"; // of both directions
constexpr char CANNOT_OPEN[] = "Cannot Open File.\nFile Creation Error!";
constexpr char CANNOT_SAVE[] = "Cannot Save File.\nFile Creation Error!";

bool refuse(WINDOW owner, const char* text) {
    show_message(owner, text, CAPTION, MESSAGE_ICON::WARNING);
    return false;
}

std::string capture_image() {
    std::string image;
    image.reserve(captured_text.lines.size() * (MON_LINE_LIMIT + 1));
    for (const MON_STRINGS& line : captured_text.lines)
        image.append(line.string.data()).push_back('\n');
    return image;
}

} // namespace

bool read_mon_line(BYTE_READER& file, MON_STRINGS& line) {
    if (file.position >= file.bytes.size())
        return false;
    line = {};
    std::size_t length = 0;
    while (file.position < file.bytes.size()) {
        const char character = file.bytes[file.position++];
        if (character == '\n')
            break;
        if (character != '\r' && length < MON_LINE_LIMIT)
            line.string[length++] = character;
    }
    return true;
}

bool open_capture_file(WINDOW owner, const std::string& file_name) {
    try {
        const FILE_HANDLE file = open_file(file_name, "rb");
        const std::optional<std::string> image = file ? read_whole_file(file.get()) : std::nullopt;
        if (!image)
            return refuse(owner, CANNOT_OPEN);
        std::deque<MON_STRINGS> lines;
        BYTE_READER reader{*image};
        for (MON_STRINGS line; read_mon_line(reader, line);)
            lines.push_back(line);
        replace_captured_lines(std::move(lines));
    } catch (const std::bad_alloc&) {
        report_out_of_memory(owner);
        return false;
    }
    return true;
}

bool save_capture_file(WINDOW owner, const std::string& file_name) {
    try {
        return save_whole_file(file_name, capture_image()) || refuse(owner, CANNOT_SAVE);
    } catch (const std::bad_alloc&) {
        report_out_of_memory(owner);
        return false;
    }
}
