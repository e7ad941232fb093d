// The plain transfer: a file's bytes as they are, without frames. Silence is its only end mark.
#include "comm/PCOM.h"
#include "comm/PCOM_local.h"
#include "comm/PCOM_poll.h"

#include "app/desktop.h"
#include "comm/transfer_screen.h"

namespace {

constexpr std::uint32_t MODEM_LEAD = 5000;         // ms for the receiver to get ready after the connection
constexpr std::uint32_t MODEM_DRAIN = 40000;       // ms for the modem to pass on what it still holds
constexpr std::uint32_t SILENCE_AT_END = 5000;     // ms
constexpr std::uint32_t OUTPUT_QUEUE_LIMIT = 1024; // bytes

bool is_ascii_allowed(const LINE_STATUS& status) {
    return !status.cts_hold && status.output_queue <= OUTPUT_QUEUE_LIMIT;
}
constexpr SEND_RULE ASCII_RULE = {is_ascii_allowed, false};

int send_bytes(WINDOW screen, LINE* port, std::FILE* file) {
    std::uint64_t count = 0;
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
        const int result = send_byte(screen, port, static_cast<std::uint8_t>(c), ASCII_RULE);
        if (result != TRANSFER_COMPLETED)
            return result;
        show_counter(screen, COUNTER::BYTES_DONE, std::to_string(++count));
    }
    return std::ferror(file) ? TRANSFER_FILE_ERROR : TRANSFER_COMPLETED;
}

int send_all(WINDOW screen, LINE* port, const std::string& file_name) {
    const FILE_HANDLE file = open_file_to_send(file_name);
    if (!file)
        return TRANSFER_FILE_ERROR;
    show_counter(screen, COUNTER::STATUS, "Sending");
    show_transfer_button(screen, "Cancel");
    return send_bytes(screen, port, file.get());
}

// `count` lags one behind the bytes stored: the first one is not counted.
int receive_bytes(WINDOW screen, LINE* port, std::FILE* file, std::uint64_t& count) {
    bool started = false;
    std::uint32_t last = 0; // the tick of the last byte
    for (;;) {
        std::optional<std::uint8_t> byte;
        const int result = poll_byte(screen, port, byte);
        if (result != TRANSFER_COMPLETED)
            return result;
        if (!byte) {
            if (started && tick_count() - last > SILENCE_AT_END)
                return TRANSFER_COMPLETED;
            continue;
        }
        last = tick_count();
        const char stored = static_cast<char>(*byte);
        if (!store_bytes(file, {&stored, 1})) {
            show_comm_error(FILE_WRITE_ERROR_TEXT);
            return TRANSFER_FILE_ERROR;
        }
        if (started)
            ++count;
        else {
            started = true;
            note_receive_start();
            show_counter(screen, COUNTER::STATUS, "Receiving");
        }
        show_counter(screen, COUNTER::BYTES_DONE, std::to_string(count));
    }
}

} // namespace

int ascii_send_file(WINDOW screen, LINE* port, const std::string& file_name) {
    const bool modem = comm_settings.interface_mode == INTERFACE_MODEM;
    if (modem)
        delay(MODEM_LEAD);
    const int result = send_all(screen, port, file_name);
    if (modem && result != TRANSFER_NO_CARRIER) // a lost carrier leaves nothing to pass on
        delay(MODEM_DRAIN);
    return result;
}

int ascii_receive_file(WINDOW screen, LINE* port, const std::string& file_name) {
    const FILE_HANDLE file = open_file_to_receive(file_name);
    if (!file)
        return TRANSFER_FILE_ERROR;
    show_counter(screen, COUNTER::STATUS, "Waiting");
    show_transfer_button(screen, "Cancel");
    std::uint64_t count = 0;
    const int result = receive_bytes(screen, port, file.get(), count);
    note_receive_end(count);
    return result;
}
