// The serial line: opening it with the settings, and the polls that every transfer is made of.
#include "comm/PCOM.h"
#include "comm/PCOM_local.h"
#include "comm/PCOM_poll.h"

#include "app/desktop.h"
#include "comm/line.h"
#include "comm/transfer_screen.h"

namespace {

constexpr std::uint16_t XON_XOFF_LIMIT = 256;      // bytes
constexpr std::uint32_t WRITE_LIMIT = 2000;        // ms
constexpr std::uint32_t SILENCE_BEFORE_REST = 100; // ms

std::uint32_t active_at = 0; // the tick at which the last byte came or went

char parity_letter(std::uint32_t parity) {
    return parity == ODD_PARITY ? 'o' : parity == EVEN_PARITY ? 'e' : 'n';
}

const char* opening_error(LINE_OPENING result) {
    switch (result) {
    case LINE_OPENING::BAD_SETTINGS:
        return "Error Creating DCB";
    case LINE_OPENING::NO_PORT:
        return "Error Opening Com Port.";
    default:
        return "Error Initializing Com Port.";
    }
}

} // namespace

LINE_SETTINGS line_settings(std::uint32_t port, std::uint32_t baudrate, std::uint32_t databits,
                            std::uint32_t stopbits, std::uint32_t parity) {
    LINE_SETTINGS settings = {};
    settings.device = "COM" + std::to_string(port);
    settings.mode = settings.device + ":9600," + parity_letter(parity) + "," + std::to_string(databits) +
                    "," + std::to_string(stopbits);
    settings.baudrate = baudrate;
    settings.xon_limit = XON_XOFF_LIMIT;
    settings.xoff_limit = XON_XOFF_LIMIT;
    return settings;
}

LINE* open_line_or_report(const LINE_SETTINGS& settings) {
    const auto [result, line] = open_line(settings);
    if (result == LINE_OPENING::OPEN)
        return line;
    show_comm_error(opening_error(result));
    return nullptr;
}

// The direction makes no difference: the driver applies XON/XOFF neither to a send nor to a receive. With
// XON/XOFF chosen, too, only the hold flags count, which the senders watch.
LINE* comm_initialize(int /*send_receive_mode*/) {
    LINE_SETTINGS settings = line_settings(comm_settings.port, comm_settings.baudrate, comm_settings.databits,
                                           comm_settings.stopbits, comm_settings.parity);
    settings.rts_cts = comm_settings.flow_control == FLOW_RTS_CTS;
    settings.write_limit = WRITE_LIMIT;
    return open_line_or_report(settings);
}

bool carrier_detect(LINE* port) {
    return comm_settings.interface_mode != INTERFACE_MODEM || line_has_carrier(port);
}

void delay(std::uint32_t milliseconds) {
    const std::uint32_t start = tick_count();
    while (tick_count() - start < milliseconds)
        rest();
}

void rest_when_silent() {
    if (tick_count() - active_at > SILENCE_BEFORE_REST)
        rest();
}

int poll_byte(WINDOW screen, LINE* port, std::optional<std::uint8_t>& byte) {
    byte.reset();
    const std::uint32_t errors = clear_line_error(port, nullptr);
    if (!carrier_detect(port))
        return TRANSFER_NO_CARRIER;
    if (is_cancel_button_pressed(screen))
        return TRANSFER_CANCELLED;
    if (std::uint8_t read = 0; errors == 0 && read_line_byte(port, &read)) {
        byte = read;
        active_at = tick_count();
    } else
        rest_when_silent();
    return TRANSFER_COMPLETED;
}

int send_byte(WINDOW screen, LINE* port, std::uint8_t byte, const SEND_RULE& rule) {
    for (;;) {
        LINE_STATUS status = {};
        const std::uint32_t errors = clear_line_error(port, &status);
        if (!carrier_detect(port))
            return TRANSFER_NO_CARRIER;
        if (is_cancel_button_pressed(screen))
            return TRANSFER_CANCELLED;
        if (errors == 0 && rule.allows(status)) {
            const LINE_WRITE written = write_line_byte(port, byte);
            if (written == LINE_WRITE::DONE) {
                active_at = tick_count();
                return TRANSFER_COMPLETED;
            }
            if (written == LINE_WRITE::FAILED || !rule.repeats)
                return TRANSFER_LINE_FAILED;
        }
        rest_when_silent();
    }
}

void write_direct(LINE* port, std::uint8_t byte) {
    clear_line_error(port, nullptr);
    active_at = tick_count();
    write_line_byte(port, byte);
}
