#include "app/command_line.h"

std::string command_line_string;
unsigned char command_line_options_flag = 0;
bool quick_start_flag = false;

namespace {

constexpr char BLANKS[] = " \t";

std::string_view without_blanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(BLANKS);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}

std::string_view without_quotes(std::string_view text) {
    const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    return quoted ? text.substr(1, text.size() - 2) : text;
}

// The option letter that the command line starts with, in upper case; 0 for anything else.
char option_letter(std::string_view command_line) {
    if (command_line.size() < 3 || command_line[0] != '-' || command_line[2] != '=')
        return 0;
    switch (command_line[1]) {
    case 'S':
    case 's':
        return 'S';
    case 'R':
    case 'r':
        return 'R';
    case 'F':
    case 'f':
        return 'F';
    default:
        return 0;
    }
}

} // namespace

COMMAND_LINE_REQUEST parse_command_line(std::string_view command_line) {
    // A shell puts its quotes around the whole of an argument that holds blanks.
    const std::string_view argument = without_quotes(command_line);
    const char option = option_letter(argument);
    if (option == 0)
        return {};
    const std::string_view file = without_quotes(without_blanks(argument.substr(3)));
    if (file.empty())
        return {};
    return {option, std::string(file)};
}
