// How received bytes and released keys become text.
#include "monitor/MONITOR_text.h"

#include "monitor/MONITOR.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <span>

namespace {

// --- received bytes ---

constexpr std::uint8_t FIRST_PRINTABLE = 0x20;
constexpr std::uint8_t DELETE_BYTE = 0x7F;
constexpr std::uint8_t LAST_BYTE = 0xFF;

constexpr const char* CONTROL_NAMES[] = {
    "{NUL}", "{SOH}", "{STX}", "{ETX}", "{EOT}", "{ENQ}", "{ACK}", "{BEL}", "{BS}",  "{HT}",  "{LF}",
    "{VT}",  "{FF}",  "{CR}",  "{SO}",  "{SI}",  "{DLE}", "{DC1}", "{DC2}", "{DC3}", "{DC4}", "{NAK}",
    "{SYN}", "{ETB}", "{CAN}", "{EM}",  "{SUB}", "{ESC}", "{FS}",  "{GS}",  "{RS}",  "{US}"};

// The portable's codes for its keys. Function and special keys each come one way, the other way, or both.
constexpr const char* FUNCTION_TEXTS[] = {"{F1}", "{F2}", "{F3}", "{F4}", "{F5}",
                                          "{F6}", "{F7}", "{F8}", "{F9}", "{F10}"};
constexpr const char* HIGH_TEXTS[] = {"{PgUp}", "{PgDn}", "{HOME}",  "{END}", "{DEL}",
                                      "{INS}",  "{Left}", "{Right}", "{Up}",  "{Down}"};
constexpr const char* LOW_TEXTS[] = {"{Left}", "{Right}", "{Up}", "{Down}", "{HOME}", "{END}", "{DEL}"};
constexpr const char* LOW_PAGE_TEXTS[] = {"{PgUp}", "{PgDn}"};
constexpr const char* LOW_INSERT_TEXTS[] = {"{INS}"};

struct KEY_CODES {
    const std::uint32_t* setting;
    std::uint32_t way;
    std::uint8_t first; // the byte of the first text
    std::span<const char* const> texts;
};
constexpr KEY_CODES RECEIVED_KEYS[] = {
    {&monitor_settings.func_keys, FUNC_KEYS_81_8A, 0x81, FUNCTION_TEXTS},
    {&monitor_settings.func_keys, FUNC_KEYS_DC1_SUB, 0x11, FUNCTION_TEXTS},
    {&monitor_settings.special_keys, SPECIAL_KEYS_8C_9B, 0x92, HIGH_TEXTS},
    {&monitor_settings.special_keys, SPECIAL_KEYS_01_1F, 0x01, LOW_TEXTS},
    {&monitor_settings.special_keys, SPECIAL_KEYS_01_1F, 0x0B, LOW_PAGE_TEXTS},
    {&monitor_settings.special_keys, SPECIAL_KEYS_01_1F, 0x10, LOW_INSERT_TEXTS},
};
static_assert(static_cast<int>(FUNC_KEYS_BOTH) == static_cast<int>(SPECIAL_KEYS_BOTH));

struct HOLD_CODE {
    std::uint32_t way;
    std::uint8_t byte;
    bool HELD_KEYS::*key; // nullptr: the code is taken and means nothing here
    bool held;
};
constexpr HOLD_CODE HOLD_CODES[] = {
    {SPECIAL_KEYS_01_1F, 0x1E, &HELD_KEYS::alt, true},  {SPECIAL_KEYS_01_1F, 0x1F, &HELD_KEYS::alt, false},
    {SPECIAL_KEYS_01_1F, 0x1C, &HELD_KEYS::ctrl, true}, {SPECIAL_KEYS_01_1F, 0x1D, &HELD_KEYS::ctrl, false},
    {SPECIAL_KEYS_01_1F, 0x0E, nullptr, false},         {SPECIAL_KEYS_01_1F, 0x0F, nullptr, false},
    {SPECIAL_KEYS_8C_9B, 0x8C, &HELD_KEYS::alt, true},  {SPECIAL_KEYS_8C_9B, 0x8D, &HELD_KEYS::alt, false},
    {SPECIAL_KEYS_8C_9B, 0x8E, &HELD_KEYS::ctrl, true}, {SPECIAL_KEYS_8C_9B, 0x8F, &HELD_KEYS::ctrl, false},
    {SPECIAL_KEYS_8C_9B, 0x90, nullptr, false},         {SPECIAL_KEYS_8C_9B, 0x91, nullptr, false},
};

// Printable characters are never codes of keys; most bytes are of them.
bool is_printable(std::uint8_t byte) {
    return byte >= FIRST_PRINTABLE && byte < DELETE_BYTE;
}

bool is_way(std::uint32_t setting, std::uint32_t way) {
    return setting == way || setting == SPECIAL_KEYS_BOTH;
}

bool take_hold_code(std::uint8_t byte) {
    for (const HOLD_CODE& code : HOLD_CODES) {
        if (code.byte != byte || !is_way(monitor_settings.special_keys, code.way))
            continue;
        if (code.key != nullptr)
            captured_text.received_keys.*code.key = code.held;
        return true;
    }
    return false;
}

std::string hexadecimal_token(unsigned code, bool leading_zero) {
    char text[sizeof "{00FFFFFFFFH}"];
    const int length = std::snprintf(text, sizeof text, leading_zero ? "{0%02XH}" : "{%02XH}", code);
    return {text, static_cast<std::size_t>(length)};
}

std::string byte_text(std::uint8_t byte) {
    if (is_printable(byte))
        return {static_cast<char>(byte)};
    for (const auto& [setting, way, first, texts] : RECEIVED_KEYS)
        if (byte >= first && byte < first + texts.size() && is_way(*setting, way))
            return texts[byte - first];
    if (byte < FIRST_PRINTABLE)
        return CONTROL_NAMES[byte];
    if (byte == DELETE_BYTE)
        return {};
    return hexadecimal_token(byte, byte == LAST_BYTE); // the one byte that takes a leading zero
}

void write_wrapped(const std::string& text, bool ctrl, bool alt) {
    if (text.empty() || (!ctrl && !alt))
        write_string(text);
    else
        write_string(std::string("{") + (ctrl ? "Ctrl " : "") + (alt ? "Alt " : "") + text + "}");
}

// --- released keys, by the virtual-key codes of a US keyboard ---

enum VIRTUAL_KEY : unsigned {
    KEY_BACKSPACE = 0x08,
    KEY_TAB = 0x09,
    KEY_CLEAR = 0x0C,
    KEY_ENTER = 0x0D,
    KEY_SHIFT = 0x10,
    KEY_CTRL = 0x11,
    KEY_ALT = 0x12,
    KEY_PAUSE = 0x13,
    KEY_CAPS_LOCK = 0x14,
    KEY_ESCAPE = 0x1B,
    KEY_SPACE = 0x20,
    KEY_PAGE_UP = 0x21,
    KEY_PAGE_DOWN = 0x22,
    KEY_END = 0x23,
    KEY_HOME = 0x24,
    KEY_LEFT = 0x25,
    KEY_UP = 0x26,
    KEY_RIGHT = 0x27,
    KEY_DOWN = 0x28,
    KEY_SELECT = 0x29,
    KEY_EXECUTE = 0x2B,
    KEY_PRINT_SCREEN = 0x2C,
    KEY_INSERT = 0x2D,
    KEY_DELETE = 0x2E,
    KEY_HELP = 0x2F,
    KEY_0 = 0x30,
    KEY_A = 0x41,
    KEY_NUMPAD_0 = 0x60,
    KEY_NUMPAD_MULTIPLY = 0x6A,
    KEY_NUMPAD_SEPARATOR = 0x6C,
    KEY_NUMPAD_SUBTRACT = 0x6D,
    KEY_F1 = 0x70,
    KEY_F24 = 0x87,
    KEY_SCROLL_LOCK = 0x91,
    KEY_LEFT_SHIFT = 0xA0,
    KEY_RIGHT_SHIFT = 0xA1,
    KEY_LEFT_CTRL = 0xA2,
    KEY_RIGHT_CTRL = 0xA3,
    KEY_LEFT_ALT = 0xA4,
    KEY_RIGHT_ALT = 0xA5,
    KEY_SEMICOLON = 0xBA,       // then equals, comma, minus, period, slash and grave accent
    KEY_OPENING_BRACKET = 0xDB, // then backslash, closing bracket and apostrophe
    KEY_EXTRA_BACKSLASH = 0xE2, // beside the left Shift
};

struct HOLD_KEY {
    unsigned key;
    bool HELD_KEYS::*held;
};
constexpr HOLD_KEY HOLD_KEYS[] = {
    {KEY_SHIFT, &HELD_KEYS::shift}, {KEY_LEFT_SHIFT, &HELD_KEYS::shift}, {KEY_RIGHT_SHIFT, &HELD_KEYS::shift},
    {KEY_CTRL, &HELD_KEYS::ctrl},   {KEY_LEFT_CTRL, &HELD_KEYS::ctrl},   {KEY_RIGHT_CTRL, &HELD_KEYS::ctrl},
    {KEY_ALT, &HELD_KEYS::alt},     {KEY_LEFT_ALT, &HELD_KEYS::alt},     {KEY_RIGHT_ALT, &HELD_KEYS::alt},
};

struct NAMED_KEY {
    unsigned key;
    const char* text;
};
constexpr NAMED_KEY NAMED_KEYS[] = {
    {KEY_BACKSPACE, "{BS}"},
    {KEY_TAB, "{tab}"},
    {KEY_CLEAR, "{CLEAR}"},
    {KEY_ENTER, "{CR}"},
    {KEY_PAUSE, "{PAUSE}"},
    {KEY_CAPS_LOCK, ""},
    {KEY_ESCAPE, "{ESC}"},
    {KEY_PAGE_UP, "{PgUp}"},
    {KEY_PAGE_DOWN, "{PgDn}"},
    {KEY_END, "{END}"},
    {KEY_HOME, "{HOME}"},
    {KEY_LEFT, "{Left}"},
    {KEY_UP, "{Up}"},
    {KEY_RIGHT, "{Right}"},
    {KEY_DOWN, "{Down}"},
    {KEY_SELECT, "{Select}"},
    {KEY_EXECUTE, "{Execute}"},
    {KEY_PRINT_SCREEN, "{PrtScr}"},
    {KEY_INSERT, "{INS}"},
    {KEY_DELETE, "{DEL}"},
    {KEY_HELP, "{HELP}"},
    {KEY_NUMPAD_SEPARATOR, "{SEP}"},
    {KEY_SCROLL_LOCK, "{ScrollLck}"},
};

// Keys that show one character, in runs of consecutive codes.
struct CHARACTER_KEYS {
    unsigned first;
    std::string_view plain;
    std::string_view shifted;
    bool caps_lock_shifts = false;
};
constexpr CHARACTER_KEYS CHARACTER_RUNS[] = {
    {KEY_SPACE, " ", " "},
    {KEY_0, "0123456789", ")!@#$%^&*("},
    {KEY_A, "abcdefghijklmnopqrstuvwxyz", "ABCDEFGHIJKLMNOPQRSTUVWXYZ", true},
    {KEY_NUMPAD_0, "0123456789", "0123456789"},
    {KEY_NUMPAD_MULTIPLY, "*+", "*+"},
    {KEY_NUMPAD_SUBTRACT, "-./", "-./"},
    {KEY_SEMICOLON, ";=,-./`", ":+<_>?~"},
    {KEY_OPENING_BRACKET, "[\\]'", "{|}\""},
    {KEY_EXTRA_BACKSLASH, "\\", "|"},
};

constexpr unsigned FIRST_CODE_WITH_LETTER = 0xA0;

std::string key_text(unsigned key, bool shift, bool caps_lock) {
    for (const CHARACTER_KEYS& run : CHARACTER_RUNS)
        if (key >= run.first && key < run.first + run.plain.size()) {
            const bool shifted = shift != (run.caps_lock_shifts && caps_lock);
            return {(shifted ? run.shifted : run.plain)[key - run.first]};
        }
    for (const auto& [code, text] : NAMED_KEYS)
        if (key == code)
            return text;
    if (key >= KEY_F1 && key <= KEY_F24)
        return "{F" + std::to_string(key - KEY_F1 + 1) + "}";
    // A hexadecimal number starts with a digit: one whose first digit is a letter gets a zero before it.
    return hexadecimal_token(key, key >= FIRST_CODE_WITH_LETTER);
}

const HOLD_KEY* find_hold_key(unsigned key) {
    const auto* found =
        std::ranges::find_if(HOLD_KEYS, [key](const HOLD_KEY& candidate) { return candidate.key == key; });
    return found == std::end(HOLD_KEYS) ? nullptr : found;
}

} // namespace

void write_serkey(std::uint8_t byte) {
    if (is_printable(byte) || !take_hold_code(byte))
        write_wrapped(byte_text(byte), captured_text.received_keys.ctrl, captured_text.received_keys.alt);
}

bool hold_winkey(unsigned key, bool held) {
    const HOLD_KEY* hold_key = find_hold_key(key);
    if (hold_key != nullptr)
        captured_text.held_keys.*hold_key->held = held;
    return hold_key != nullptr;
}

void write_winkey(unsigned key, bool shift, bool ctrl, bool alt, bool caps_lock) {
    if (find_hold_key(key) == nullptr)
        write_wrapped(key_text(key, shift, caps_lock), ctrl, alt);
}
