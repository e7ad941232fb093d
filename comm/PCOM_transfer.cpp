// One send, one receive, or a session of auto receive: from the opening of the port to the result on the
// screen.
#include "comm/PCOM.h"
#include "comm/PCOM_local.h"
#include "comm/PCOM_log.h"

#include "app/desktop.h"
#include "app/paths.h"
#include "comm/line.h"
#include "comm/transfer_screen.h"

#include <algorithm>
#include <array>

bool auto_receive_flag = false;
std::uint32_t auto_receive_counter = 0;

namespace {

constexpr std::size_t EXTENSION_DIGITS = 3;
constexpr std::uint32_t CANCEL_CHANCE = 2000; // ms

struct RESULT_TEXTS {
    const char* status;
    const char* notes;
};
// In the order of the results, from TRANSFER_COMPLETED down.
constexpr std::array<RESULT_TEXTS, 9> RESULTS = {{
    {"Completed", "OK"},
    {"Transmit Error", "TRANSMISSION ERROR"},
    {"User Abort", nullptr},
    {"No Carrier", "LOSS OF CARRIER"},
    {"Modem Error", "MODEM INIT ERROR"},
    {"Dial Canceled", "DIAL CANCELED"},
    {"File Error", "FILE ERROR"},
    {"Retries Exceeded", "RETRY COUNT EXCEEDED"},
    {"Timeout Error", "TIMEOUT"},
}};

const RESULT_TEXTS& result_texts(int result) {
    return RESULTS.at(static_cast<std::size_t>(-result));
}

bool is_modem() {
    return comm_settings.interface_mode == INTERFACE_MODEM;
}

bool is_xmodem() {
    return comm_settings.protocol == PROTOCOL_XMODEM;
}

void show_result(WINDOW screen, int result) {
    show_counter(screen, COUNTER::STATUS, transfer_status_text(result));
    beep();
}

void end_send(WINDOW screen, LINE* port, int result) {
    show_result(screen, result);
    show_transfer_button(screen, "Send");
    close_line(port);
}

// The flow column shows the protocol's number as if it were a FLOW: so the readers of these logs know it.
const char* logged_flow_control() {
    switch (comm_settings.protocol) {
    case FLOW_RTS_CTS:
        return "RTC/CTS";
    case FLOW_XON_XOFF:
        return "XON/XOFF";
    default:
        return "NONE";
    }
}

void fill_log_entry(const std::string& path) {
    log_entry.filename = path_file_title(path);
    log_entry.baudrate = std::to_string(comm_settings.baudrate);
    log_entry.flow_control = logged_flow_control();
    log_entry.protocol = is_xmodem() ? "XMODEM" : "NONE";
}

void append_log_line(std::FILE* log, const char* notes) {
    if (!log || !notes)
        return;
    log_entry.notes = notes;
    (void)std::fputs(log_line(log_entry).c_str(), log);
    (void)std::fflush(log); // a power cut loses no line
}

// One call and the file that comes with it. A TRANSFER_RESULT.
int receive_once(WINDOW screen, LINE* port, const std::string& path) {
    if (is_modem()) {
        const int result = receive_modem(screen, port);
        if (result != TRANSFER_COMPLETED)
            return result;
    }
    std::string name = path;
    if (is_increment()) {
        name = replace_extension(path, increment_extension(auto_receive_counter));
        show_transfer_file(screen, path_file_title(name));
        ++auto_receive_counter;
    }
    fill_log_entry(name);
    return is_xmodem() ? xmodem_receive_file(screen, port, name) : ascii_receive_file(screen, port, name);
}

// A file that cannot be opened ends its pass before anything is polled. Without this wait the operator could
// not leave the row of messages that follows.
bool is_cancelled_after_file_error(WINDOW screen) {
    const std::uint32_t start = tick_count();
    while (tick_count() - start < CANCEL_CHANCE) {
        if (is_cancel_button_pressed(screen))
            return true;
        rest();
    }
    return false;
}

} // namespace

const char* transfer_status_text(int result) {
    return result_texts(result).status;
}

const char* transfer_log_notes(int result) {
    return result_texts(result).notes;
}

bool is_increment() {
    return auto_receive_flag && comm_settings.filemode == FILE_INCREMENT;
}

std::string increment_extension(std::uint32_t counter) {
    const std::string digits = std::to_string(counter);
    return "." + std::string(EXTENSION_DIGITS - std::min(digits.size(), EXTENSION_DIGITS), '0') + digits;
}

std::uint64_t xmodem_blocks(std::uint64_t size, std::size_t block_size) {
    return size / block_size + (size % block_size != 0 ? 1 : 0);
}

void send_file(WINDOW screen, const std::string& path) {
    LINE* const port = comm_initialize(ACTION_SEND);
    if (!port)
        return;
    int result = is_modem() ? send_modem(screen, port) : TRANSFER_COMPLETED;
    if (result == TRANSFER_COMPLETED)
        result = is_xmodem() ? xmodem_send_file(screen, port, path) : ascii_send_file(screen, port, path);
    if (is_modem() && result != TRANSFER_DIAL_CANCELLED)
        disconnect_modem(port);
    end_send(screen, port, result);
}

void upgrade_flash(WINDOW screen, const std::string& file_name) {
    if (LINE* const port = comm_initialize(ACTION_SEND))
        end_send(screen, port, xmodem_send_flash(screen, port, file_name));
}

void receive_file(WINDOW screen, const std::string& path) {
    LINE* const port = comm_initialize(ACTION_RECEIVE);
    if (!port)
        return;
    const FILE_HANDLE log = auto_receive_flag ? open_log() : nullptr;
    int result;
    do {
        log_entry = {};
        result = receive_once(screen, port, path);
        if (is_modem())
            disconnect_modem(port);
        show_result(screen, result);
        append_log_line(log.get(), transfer_log_notes(result));
        if (auto_receive_flag && result == TRANSFER_FILE_ERROR && is_cancelled_after_file_error(screen)) {
            result = TRANSFER_CANCELLED;
            show_result(screen, result);
        }
    } while (auto_receive_flag && result != TRANSFER_CANCELLED);
    show_transfer_button(screen, "Receive");
    close_line(port);
}
