// The portable's display as a program uses it: the preview of one screen, input masks and stamp commands.
#pragma once

#include "program/Prog.h"

#include <array>
#include <list>
#include <string>
#include <string_view>

inline constexpr int DISPLAY_ROWS = 4;
inline constexpr int DISPLAY_COLUMNS = 20;
inline constexpr int DISPLAY_CELLS = DISPLAY_ROWS * DISPLAY_COLUMNS;
inline constexpr char EMPTY_CELL = '\x7F'; // shown as a block

// The cells, row 0 first; cell of row r and column c at r * DISPLAY_COLUMNS + c.
using DISPLAY = std::array<char, DISPLAY_CELLS>;

// Copies the bytes of `source` into `dest` from `start_index` on, one cell each, until `source` ends or
// `end_index` has been written. An index that reaches `wrap_size` goes back to 0. Writes no terminator.
void copy_and_wrap_str(char* dest, std::string_view source, int start_index, int end_index, int wrap_size);

// The screen on which `current` is shown, in stored bytes: the fields before it back to the one that starts
// the screen, then `edited` in its place, then the fields up to the next new screen. Of `edited` count place,
// type, "New Screen", prompt and pattern.
DISPLAY compose_display(const std::list<FIELD_DEFINITION>& fields,
                        std::list<FIELD_DEFINITION>::const_iterator current, const FIELD_DEFINITION& edited);

// 1 when the mask is made of A, D, F, I and N only, and is not empty.
int valid_inputmask(std::string_view mask);

// 1 when the mask is made of D only, and is not empty.
int check_for_decimal_inputmask(std::string_view mask);

// How many characters of input the mask allows; NO_MASK_LIMIT when it sets none.
inline constexpr unsigned NO_MASK_LIMIT = 251;
unsigned input_number_from_mask(std::string_view mask);

// Input mask and display pattern (escaped text) of a Stamp field with these stamp commands (stored text).
std::string stamp_inputmask(std::string_view commands);
std::string stamp_displaypattern(std::string_view commands);
