// What the fuzz targets and the fault tests share. A target is one procedure that takes the bytes of one
// input; targets.cpp has them all, fuzz_main.cpp makes one of them a libFuzzer program, replay.cpp runs every
// one over its corpus.
#pragma once

#include <string>
#include <string_view>

struct FUZZ_TARGET {
    const char* name; // also of the corpus' folder
    void (*run)(std::string_view input);
};
extern const FUZZ_TARGET FUZZ_TARGETS[];
extern const std::size_t FUZZ_TARGET_COUNT;

// Runs one input from a fresh start. Aborts when more memory was taken than the input's size allows, or when
// something was left behind: a line, a progress box or a temporary file.
void run_fuzz_input(const FUZZ_TARGET& target, std::string_view input);

// --- the operator and the other side of the line (fuzz_seams.cpp) ---

void reset_seams(std::string_view input);
bool are_seams_clean();

// The input as a file; its name ends with the extension.
std::string input_file(std::string_view input, const char* extension);

// How many messages the operator has seen since reset_seams().
extern unsigned messages_shown;

// The allocation after so many more fails, once; 0 for none. What is left of the number.
extern std::size_t allocations_to_failure;

// The next of the operator's answers, below `count`. They follow from the input.
unsigned next_answer(unsigned count);

// The other side says the input: pieces with their length in front (2 bytes, low one first), the next one
// whenever a byte has gone out to it.
void line_says(std::string_view input);

// The settings file: lines of SECTION/KEY=value.
void settings_are(std::string_view input);
