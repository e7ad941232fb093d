// The texts of stepped values, and the steps of the user's termination code.
#pragma once

#include "app/steps.h"

#include <string>
#include <string_view>

enum class VALUE_FORMAT {
    PLAIN,        // 50
    TENTHS,       // 1.0s
    SECONDS,      // " 3s", or OFF for 0
    MINUTES,      // 05m, or OFF for 0
    MILLISECONDS, // 05ms
    HEXADECIMAL,  // 8CH
};

std::string format_value(unsigned value, VALUE_FORMAT format);

// The value that a text made by format_value() shows.
unsigned read_value(std::string_view text, VALUE_FORMAT format);

// As step_value(), but the codes that the portable keeps for itself are stepped over.
std::optional<unsigned> step_termination_code(unsigned code, int direction, const STEP_RANGE& range);
