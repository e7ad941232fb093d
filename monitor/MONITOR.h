// The monitor's own settings: the serial line it watches, and how what arrives is read. Independent of the
// communication settings.
#pragma once

#include <cstdint>
#include <span>
#include <string>

struct LINE;

enum FUNC_KEYS { FUNC_KEYS_NONE = 0, FUNC_KEYS_DC1_SUB = 1, FUNC_KEYS_81_8A = 2, FUNC_KEYS_BOTH = 3 };
enum SPECIAL_KEYS {
    SPECIAL_KEYS_NONE = 0,
    SPECIAL_KEYS_01_1F = 1,
    SPECIAL_KEYS_8C_9B = 2,
    SPECIAL_KEYS_BOTH = 3
};

// Values come from the settings file unchecked: nothing may index by them.
struct MONITOR_SETTINGS {
    std::uint32_t port = 0;        // 0 for none: the keyboard only
    std::uint32_t baudrate = 9600; // bit/s
    std::uint32_t databits = 8;
    std::uint32_t stopbits = 1;
    std::uint32_t parity = 0;   // a PARITY
    std::uint32_t xon_flag = 1; // 1: the driver sends XON/XOFF
    std::uint32_t func_keys = FUNC_KEYS_BOTH;
    std::uint32_t special_keys = SPECIAL_KEYS_BOTH;
};
extern MONITOR_SETTINGS monitor_settings;
extern std::uint32_t translate_cr; // 1: a carriage return starts a new line in the list

// Reads all from the settings file.
void initialize_com_settings();

// The items of the settings menu. Each is one value with its choices.
enum MONITOR_ITEM {
    MONITOR_PORT,
    MONITOR_BAUDRATE,
    MONITOR_DATABITS,
    MONITOR_STOPBITS,
    MONITOR_PARITY,
    MONITOR_XON,
    MONITOR_FUNC_KEYS,
    MONITOR_SPECIAL_KEYS,
    MONITOR_TRANSLATE_CR,
};
inline constexpr int MONITOR_ITEM_COUNT = 9;
inline constexpr int MONITOR_SERIAL_ITEM_COUNT = 6; // the first of them, fixed while the line is open

struct MONITOR_CHOICE {
    std::uint32_t value;
    const char* text; // as the menu shows it between brackets and the prompt beside its button
};
std::span<const MONITOR_CHOICE> monitor_choices(MONITOR_ITEM item);
std::uint32_t monitor_value(MONITOR_ITEM item);
void set_monitor_value(MONITOR_ITEM item, std::uint32_t value);

// Writes the item's value into the settings file.
void save_monitor_value(MONITOR_ITEM item);

// "Baud Rate [9600]": the item's text in the menu.
std::string monitor_item_text(MONITOR_ITEM item);

// Opens and configures the monitor's port. nullptr after it has shown its error message.
LINE* mon_comm_initialize();
