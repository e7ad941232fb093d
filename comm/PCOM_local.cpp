#include "comm/PCOM_local.h"

#include "app/desktop.h"
#include "comm/PCOM.h"
#include "comm/PCOM_log.h"

namespace {

constexpr char OPEN_ERROR_TEXT[] = "Error Opening File";

} // namespace

void show_comm_error(const std::string& text) {
    show_message(nullptr, text, COMM_TITLE, MESSAGE_ICON::STOP);
}

FILE_HANDLE open_file_to_send(const std::string& name) {
    FILE_HANDLE file = open_file(name, "rb");
    if (!file)
        show_comm_error(OPEN_ERROR_TEXT);
    return file;
}

FILE_HANDLE open_file_to_receive(const std::string& name) {
    const bool append = auto_receive_flag && !is_increment();
    FILE_HANDLE file = open_file(name, append ? "ab" : "wb");
    if (file) {
        (void)std::setvbuf(file.get(), nullptr, _IONBF, 0);
        return file;
    }
    note_receive_start();
    note_receive_end(0);
    show_comm_error(OPEN_ERROR_TEXT);
    return file;
}

bool store_bytes(std::FILE* file, std::string_view bytes) {
    return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
}

void note_receive_start() {
    if (auto_receive_flag)
        get_autoreceive_start();
}

void note_receive_end(std::uint64_t size) {
    if (!auto_receive_flag)
        return;
    get_autoreceive_stop();
    log_entry.size = std::to_string(size);
}
