// The monitor's settings: their place in the settings file, their choices, and how the menu shows them.
#include "monitor/MONITOR.h"

#include "app/desktop.h"
#include "comm/PCOM.h"

#include <algorithm>

MONITOR_SETTINGS monitor_settings;
std::uint32_t translate_cr = 1;

namespace {

constexpr char SECTION[] = "MONITOR";

constexpr MONITOR_CHOICE PORTS[] = {{0, "NONE"}, {1, "COM:1"}, {2, "COM:2"}, {3, "COM:3"}, {4, "COM:4"}};
constexpr MONITOR_CHOICE BAUDRATES[] = {{300, "300"},   {600, "600"},   {1200, "1200"},   {2400, "2400"},
                                        {4800, "4800"}, {9600, "9600"}, {19200, "19200"}, {38400, "38400"}};
constexpr MONITOR_CHOICE DATABITS[] = {{7, "7"}, {8, "8"}};
constexpr MONITOR_CHOICE STOPBITS[] = {{1, "1"}, {2, "2"}};
constexpr MONITOR_CHOICE PARITIES[] = {{NO_PARITY, "None"}, {ODD_PARITY, "Odd"}, {EVEN_PARITY, "Even"}};
constexpr MONITOR_CHOICE NO_OR_YES[] = {{0, "No"}, {1, "Yes"}};
constexpr MONITOR_CHOICE FUNC_KEYS_WAYS[] = {{FUNC_KEYS_NONE, "None"},
                                             {FUNC_KEYS_DC1_SUB, "DC1-SUB"},
                                             {FUNC_KEYS_81_8A, "81H-8AH"},
                                             {FUNC_KEYS_BOTH, "Both"}};
constexpr MONITOR_CHOICE SPECIAL_KEYS_WAYS[] = {{SPECIAL_KEYS_NONE, "None"},
                                                {SPECIAL_KEYS_01_1F, "01H-1FH"},
                                                {SPECIAL_KEYS_8C_9B, "8CH-9BH"},
                                                {SPECIAL_KEYS_BOTH, "Both"}};

// A value that is none of the choices acts like, and shows as, the first of them; a number, which the port is
// opened with whatever it is, shows itself behind a prefix.
struct SETTING {
    const char* key;
    std::uint32_t* value;
    const char* label;
    std::span<const MONITOR_CHOICE> choices;
    const char* number_prefix = nullptr;
};
constexpr SETTING SETTINGS[MONITOR_ITEM_COUNT] = {
    {"M_PORT", &monitor_settings.port, "Serial Port", PORTS, "COM:"},
    {"M_BAUDRATE", &monitor_settings.baudrate, "Baud Rate", BAUDRATES, ""},
    {"M_DATABITS", &monitor_settings.databits, "Data Bits", DATABITS, ""},
    {"M_STOPBITS", &monitor_settings.stopbits, "Stop Bits", STOPBITS, ""},
    {"M_PARITY", &monitor_settings.parity, "Parity", PARITIES},
    {"M_XON", &monitor_settings.xon_flag, "Use XON/XOFF", NO_OR_YES},
    {"M_FKEYS", &monitor_settings.func_keys, "Function Keys", FUNC_KEYS_WAYS},
    {"M_SKEYS", &monitor_settings.special_keys, "Special Keys", SPECIAL_KEYS_WAYS},
    {"M_CR", &translate_cr, "Translate {CR}", NO_OR_YES},
};

std::string choice_text(const SETTING& setting) {
    const auto chosen = std::ranges::find(setting.choices, *setting.value, &MONITOR_CHOICE::value);
    if (chosen != setting.choices.end())
        return chosen->text;
    if (setting.number_prefix != nullptr)
        return setting.number_prefix + std::to_string(*setting.value);
    return setting.choices.front().text;
}

} // namespace

void initialize_com_settings() {
    monitor_settings = {};
    translate_cr = 1;
    for (const SETTING& setting : SETTINGS)
        *setting.value = read_setting_number(SECTION, setting.key, *setting.value);
}

std::span<const MONITOR_CHOICE> monitor_choices(MONITOR_ITEM item) {
    return SETTINGS[item].choices;
}

std::uint32_t monitor_value(MONITOR_ITEM item) {
    return *SETTINGS[item].value;
}

void set_monitor_value(MONITOR_ITEM item, std::uint32_t value) {
    *SETTINGS[item].value = value;
}

void save_monitor_value(MONITOR_ITEM item) {
    write_setting(SECTION, SETTINGS[item].key, std::to_string(*SETTINGS[item].value));
}

std::string monitor_item_text(MONITOR_ITEM item) {
    return std::string(SETTINGS[item].label) + " [" + choice_text(SETTINGS[item]) + "]";
}
