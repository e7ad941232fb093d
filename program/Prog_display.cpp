#include "program/Prog_display.h"

#include "program/Prog_text.h"

#include <algorithm>
#include <cctype>

namespace {

int cell(int row, int column) {
    return row * DISPLAY_COLUMNS + column;
}

// A prompt leaves the last cell of its range to the input, so that there is always room for some.
void draw_field(DISPLAY& display, const FIELD_DEFINITION& field) {
    if (field.input_type == INPUT_STAMP)
        return;
    const int start = cell(field.start_row, field.start_col);
    const int end = cell(field.end_row, field.end_col);
    const int room = std::max(0, end - start);
    const auto prompt =
        std::string_view(field.prompt_string_handle).substr(0, static_cast<std::size_t>(room));
    const int behind_prompt = start + static_cast<int>(prompt.size());
    copy_and_wrap_str(display.data(), prompt, start, end, DISPLAY_CELLS);
    copy_and_wrap_str(display.data(), field.display_pattern_handle, behind_prompt, end, DISPLAY_CELLS);
}

bool starts_screen(const FIELD_DEFINITION& field) {
    return (field.bit_values1 & NEW_SCREEN) != 0;
}

// A position that is fixed or included takes no character of input.
bool is_without_input(char letter) {
    return letter == 'F' || letter == 'I';
}

// Positions that a stamp command takes; 0 for a literal character.
std::size_t stamp_width(char command) {
    switch (std::toupper(static_cast<unsigned char>(command))) {
    case 'M': // month
    case 'D': // day of month
    case 'H': // hour
    case 'I': // minute
    case 'S': // second
        return 2;
    case 'Y': // year
        return 4;
    case 'W': // day of week
        return 1;
    default:
        return 0;
    }
}

} // namespace

void copy_and_wrap_str(char* dest, std::string_view source, int start_index, int end_index, int wrap_size) {
    int index = start_index;
    for (const char byte : source) {
        if (index < 0 || index >= wrap_size)
            index = 0;
        dest[index] = byte;
        if (index == end_index)
            return;
        ++index;
    }
}

DISPLAY compose_display(const std::list<FIELD_DEFINITION>& fields,
                        std::list<FIELD_DEFINITION>::const_iterator current, const FIELD_DEFINITION& edited) {
    DISPLAY display;
    display.fill(EMPTY_CELL);
    auto field = current;
    bool screen_found = starts_screen(edited);
    while (!screen_found && field != fields.begin())
        screen_found = starts_screen(*--field);
    for (; field != current; ++field)
        draw_field(display, *field);
    draw_field(display, edited);
    if (current == fields.end())
        return display;
    for (++field; field != fields.end() && !starts_screen(*field); ++field)
        draw_field(display, *field);
    return display;
}

int valid_inputmask(std::string_view mask) {
    return !mask.empty() && mask.find_first_not_of("ADFIN") == std::string_view::npos;
}

int check_for_decimal_inputmask(std::string_view mask) {
    return !mask.empty() && mask.find_first_not_of('D') == std::string_view::npos;
}

unsigned input_number_from_mask(std::string_view mask) {
    if (!mask.empty() && !is_without_input(mask.back()))
        return NO_MASK_LIMIT;
    return static_cast<unsigned>(mask.size()) -
           static_cast<unsigned>(std::count_if(mask.begin(), mask.end(), is_without_input));
}

std::string stamp_inputmask(std::string_view commands) {
    std::string mask;
    for (const char command : commands) {
        const std::size_t width = stamp_width(command);
        mask += width > 0 ? std::string(width, 'A') : "I";
    }
    return mask;
}

std::string stamp_displaypattern(std::string_view commands) {
    std::string pattern;
    for (const char& command : commands) {
        const std::size_t width = stamp_width(command);
        pattern += width > 0 ? std::string(width, '_') : translate_hex_to_string({&command, 1});
    }
    return pattern;
}
