// What the arrows of a stepper do to its number.
#pragma once

#include <optional>

// How arrows step a number: between two limits, by `step`. At a limit the value stays, with a beep, or it
// `wraps` around to the other one; then a value outside the limits counts as being at the limit that is left.
struct STEP_RANGE {
    unsigned lowest;
    unsigned highest;
    bool wraps = false;
    unsigned step = 1;
};

// The value one step on; `direction` is above 0 for up. Nothing when the limit holds it back, after the beep.
std::optional<unsigned> step_value(unsigned value, int direction, const STEP_RANGE& range);
