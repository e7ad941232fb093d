#include "setup/SETUP_formats.h"

#include "tests/desktop_script.h"

#include <gtest/gtest.h>
#include <tuple>

TEST(SetupFormatTest, EveryByteIsShownAndReadBack) {
    const std::pair<VALUE_FORMAT, std::string> cases[] = {
        {VALUE_FORMAT::PLAIN, "0|7|10|255|"},
        {VALUE_FORMAT::TENTHS, "0.0s|0.7s|1.0s|25.5s|"},
        {VALUE_FORMAT::SECONDS, "OFF| 7s| 10s| 255s|"},
        {VALUE_FORMAT::MINUTES, "OFF|07m|10m|255m|"},
        {VALUE_FORMAT::HEXADECIMAL, "00H|07H|0AH|FFH|"},
        {VALUE_FORMAT::MILLISECONDS, "00ms|07ms|10ms|255ms|"},
    };
    for (const auto& [format, texts] : cases) {
        std::string formatted;
        for (const unsigned value : {0U, 7U, 10U, 255U})
            formatted += format_value(value, format) + '|';
        EXPECT_EQ(formatted, texts);
        for (unsigned value = 0; value <= 255; ++value)
            EXPECT_EQ(read_value(format_value(value, format), format), value) << texts;
    }
}

TEST(StepTest, LimitsHoldOrWrap) {
    constexpr STEP_RANGE SIZES = {.lowest = 0, .highest = 60, .step = 2};
    constexpr STEP_RANGE CODES = {.lowest = 0, .highest = 0xF9};
    constexpr STEP_RANGE WRAPPED = {.lowest = 0, .highest = 9, .wraps = true};
    constexpr unsigned HELD = 1000; // with a beep
    const std::tuple<decltype(&step_value), STEP_RANGE, unsigned, unsigned, unsigned> cases[] = {
        {step_value, SIZES, 59, 60, 57}, // the limits of each value are tried in its dialog
        {step_value, SIZES, 255, HELD, 253},
        {step_value, WRAPPED, 200, 0, 9},
        {step_termination_code, CODES, 0x85, 0x8C, 0x7F},
        {step_termination_code, CODES, 0x8C, 0x8D, 0x7F},
        {step_termination_code, CODES, 0x9B, 0xF0, 0x9A},
        {step_termination_code, CODES, 0xF0, 0xF1, 0x9B},
        {step_termination_code, CODES, 0xFF, HELD, 0xFE},
    };
    for (const auto& [step, range, value, up, down] : cases) {
        reset_desktop();
        EXPECT_EQ(step(value, 1, range).value_or(HELD), up) << value;
        EXPECT_EQ(step(value, -1, range).value_or(HELD), down) << value;
        EXPECT_EQ(desktop_beeps, (up == HELD) + (down == HELD)) << value;
    }
}
