// The communication settings: their place in the settings file, and how a screen shows them.
#include "comm/PCOM.h"

#include "app/desktop.h"

#include <algorithm>

COMM_SETTINGS comm_settings;
std::string phone_number;

namespace {

constexpr char SECTION[] = "COMM";
constexpr char MODEM_INIT_KEY[] = "MODEM_INIT";

struct NUMBER_SETTING {
    const char* key;
    std::uint32_t COMM_SETTINGS::*member;
};
constexpr NUMBER_SETTING NUMBER_SETTINGS[] = {
    {"PORT", &COMM_SETTINGS::port},
    {"BAUDRATE", &COMM_SETTINGS::baudrate},
    {"DATABITS", &COMM_SETTINGS::databits},
    {"STOPBITS", &COMM_SETTINGS::stopbits},
    {"PARITY", &COMM_SETTINGS::parity},
    {"PROTOCOL", &COMM_SETTINGS::protocol},
    {"FLOW_CONTROL", &COMM_SETTINGS::flow_control},
    {"XMODEM_RETRIES", &COMM_SETTINGS::xmodem_retries},
    {"INTERFACE", &COMM_SETTINGS::interface_mode},
    {"FILEMODE", &COMM_SETTINGS::filemode},
    {"DIALMETHOD", &COMM_SETTINGS::dialmethod},
};

} // namespace

void reset_com_setups() {
    comm_settings = COMM_SETTINGS{};
}

void read_com_setup() {
    const COMM_SETTINGS defaults;
    for (const auto& [key, member] : NUMBER_SETTINGS)
        comm_settings.*member = read_setting_number(SECTION, key, defaults.*member);
    comm_settings.modem_init =
        read_setting_text(SECTION, MODEM_INIT_KEY, defaults.modem_init, MODEM_INIT_LIMIT);
}

void write_com_setup() {
    for (const auto& [key, member] : NUMBER_SETTINGS)
        write_setting(SECTION, key, std::to_string(comm_settings.*member));
    write_setting(SECTION, MODEM_INIT_KEY, comm_settings.modem_init);
}

// A value that is none of a list's shows as what the transfers make of it.
SETTINGS_SUMMARY summarize_settings(const COMM_SETTINGS& settings) {
    const char parity = settings.parity == ODD_PARITY ? 'O' : settings.parity == EVEN_PARITY ? 'E' : 'N';
    SETTINGS_SUMMARY summary;
    summary.interface_mode = settings.interface_mode == INTERFACE_MODEM ? "MODEM" : "DIRECT";
    summary.baudrate = std::to_string(settings.baudrate);
    summary.line = parity + std::to_string(std::clamp(settings.databits, 7U, 8U)) +
                   std::to_string(std::clamp(settings.stopbits, 1U, 2U));
    summary.port = "COM" + std::to_string(settings.port);
    summary.protocol = settings.protocol == PROTOCOL_XMODEM ? "XMODEM" : "NONE";
    summary.filemode = settings.filemode == FILE_INCREMENT ? "INCREMENT" : "APPEND";
    return summary;
}
