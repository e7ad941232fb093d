// The desktop of the logic tests: a clock that moves only when it is read, settings in memory, and message
// boxes that must have been announced.
#pragma once

#include "app/desktop.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

struct ANNOUNCED_MESSAGE {
    std::string box; // text, caption, icon and buttons
    BUTTON answer;
};

// Aborts the test with this reason.
[[noreturn]] void stop_test(const std::string& why);

// Announces the next message box and the button that the operator will press. A box that was not announced,
// or another than announced, aborts the test.
void expect_message(const std::string& text, const std::string& caption, MESSAGE_ICON icon,
                    MESSAGE_BUTTONS buttons = MESSAGE_BUTTONS::OK, BUTTON answer = BUTTON::OK);

// Forgets everything announced, all settings and the clock. Returns what was announced but never shown.
std::vector<ANNOUNCED_MESSAGE> reset_desktop();

// A test may change these, and looks into them; reset_desktop sets them.
inline std::map<std::string, std::string> desktop_settings; // "SECTION/KEY" to value
inline std::uint32_t desktop_clock = 0;                     // milliseconds
inline std::uint32_t desktop_clock_step = 1;                // how far a reading moves it
inline LOCAL_TIME desktop_time;
inline int desktop_beeps;
inline std::optional<std::string> desktop_temporary_file; // the next one; empty: none can be made
inline std::vector<std::string> desktop_status_log;       // "open 4", "update 128/500", "close"
