#include "app/steps.h"

#include "app/desktop.h"

#include <algorithm>

std::optional<unsigned> step_value(unsigned value, int direction, const STEP_RANGE& range) {
    const bool up = direction > 0;
    const unsigned limit = up ? range.highest : range.lowest;
    const unsigned other_limit = up ? range.lowest : range.highest;
    if (range.wraps && (value < range.lowest || value > range.highest || value == limit))
        return other_limit;
    if (up ? value >= limit : value <= limit) {
        beep();
        return {};
    }
    return up ? value + std::min(range.step, limit - value) : value - std::min(range.step, value - limit);
}
