// The modem dialogue around a transfer: initialise, dial or wait for the call, hang up.
#include "comm/PCOM.h"
#include "comm/PCOM_poll.h"

#include "comm/transfer_screen.h"

#include <string_view>

namespace {

constexpr std::uint32_t AFTER_INIT = 1000; // ms, as are all waits below
constexpr std::uint32_t AFTER_DIALING = 5000;
constexpr std::uint32_t CONNECT_POLL = 200;
constexpr int CONNECT_POLLS = 10;
constexpr std::uint32_t ESCAPE_GUARD = 1500; // silence that makes the modem take "+++" as its escape
constexpr std::uint32_t AFTER_HANG_UP = 1000;

// Each byte waits until the line reports no error.
void send_command(LINE* port, std::string_view command) {
    for (const char c : command) {
        while (clear_line_error(port, nullptr) != 0)
            rest_when_silent();
        write_line_byte(port, static_cast<std::uint8_t>(c));
    }
}

void initialize_modem(WINDOW screen, LINE* port) {
    show_transfer_button(screen, "Cancel");
    show_counter(screen, COUNTER::STATUS, "Initializing");
    send_command(port, comm_settings.modem_init + "\r");
    delay(AFTER_INIT);
}

// Reads every byte that waits. A TRANSFER_RESULT; `answer` holds the bytes of this poll alone.
int read_answer(WINDOW screen, LINE* port, std::string& answer) {
    answer.clear();
    for (;;) {
        std::optional<std::uint8_t> byte;
        const int result = poll_byte(screen, port, byte);
        if (result != TRANSFER_COMPLETED || !byte)
            return result;
        answer += static_cast<char>(*byte);
    }
}

// The modem's "CONNECT" is awaited, not required: a modem that is told to be quiet connects all the same.
int wait_for_connection(WINDOW screen, LINE* port) {
    show_counter(screen, COUNTER::STATUS, "Waiting");
    while (!carrier_detect(port)) {
        if (is_cancel_button_pressed(screen))
            return TRANSFER_CANCELLED;
        rest_when_silent();
    }
    bool connected = false;
    for (int poll = 0; poll < CONNECT_POLLS && !connected; ++poll) {
        delay(CONNECT_POLL);
        std::string answer;
        const int result = read_answer(screen, port, answer);
        if (result != TRANSFER_COMPLETED)
            return result;
        connected = answer.find("CONNECT") != std::string::npos;
    }
    delay(CONNECT_POLL);
    return TRANSFER_COMPLETED;
}

} // namespace

int send_modem(WINDOW screen, LINE* port) {
    std::string number = phone_number;
    if (!ask_phone_number(screen, number))
        return TRANSFER_DIAL_CANCELLED;
    phone_number = number.substr(0, PHONE_NUMBER_LIMIT);

    initialize_modem(screen, port);
    show_counter(screen, COUNTER::STATUS, "Dialing");
    send_command(port, (comm_settings.dialmethod == DIAL_PULSE ? "ATDP" : "ATDT") + phone_number + "\r");
    delay(AFTER_DIALING);
    return wait_for_connection(screen, port);
}

int receive_modem(WINDOW screen, LINE* port) {
    initialize_modem(screen, port);
    return wait_for_connection(screen, port);
}

void disconnect_modem(LINE* port) {
    while (carrier_detect(port))
        rest_when_silent();
    delay(ESCAPE_GUARD);
    send_command(port, "+++");
    delay(ESCAPE_GUARD);
    send_command(port, "AT H0\r");
    delay(AFTER_HANG_UP);
}
