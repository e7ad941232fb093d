#include "program/LOOKUP.h"

#include "program/Prog.h"
#include "program/Prog_display.h"
#include "program/Prog_text.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr char SEPARATOR = ',';
constexpr char MESSAGE_MARK = '?';
constexpr std::size_t TARGET_DIGITS = 2;
constexpr unsigned HIGHEST_LOOKUP_ROW = 3;
constexpr char ROWS_CAPTION[] = "Lookup File Definition";

char upper_case(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// Leading digits; 0 when there are none or they do not fit.
unsigned number_of(std::string_view text) {
    unsigned number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

std::vector<std::string> split(std::string_view text) {
    std::vector<std::string> parts;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(SEPARATOR, start), text.size());
        parts.emplace_back(text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

// The parts that both kinds of lookup string have; all are empty for a string of another kind.
struct LOOKUP_PARTS {
    std::string options; // in upper case
    bool has_values = false;
    std::string_view values;
    std::string_view message;
};

LOOKUP_PARTS parts_of(std::string_view text, char kind) {
    LOOKUP_PARTS parts;
    text = text.substr(0, LOOKUP_LIMIT);
    if (text.empty() || upper_case(text.front()) != kind)
        return parts;
    std::string_view body = text.substr(0, text.find(MESSAGE_MARK));
    if (body.size() < text.size()) {
        parts.message = text.substr(body.size() + 1);
        if (body.back() == SEPARATOR)
            body.remove_suffix(1);
    }
    const std::size_t comma = body.find(SEPARATOR);
    parts.options = body.substr(1, comma == std::string_view::npos ? comma : comma - 1);
    std::transform(parts.options.begin(), parts.options.end(), parts.options.begin(), upper_case);
    parts.has_values = comma != std::string_view::npos;
    if (parts.has_values)
        parts.values = body.substr(comma + 1);
    return parts;
}

bool has_option(const LOOKUP_PARTS& parts, char letter) {
    return parts.options.find(letter) != std::string::npos;
}

LOOKUP_OPTIONS options_of(const LOOKUP_PARTS& parts) {
    return {has_option(parts, 'A'), has_option(parts, 'P'), std::string(parts.message)};
}

void append_options(std::string& text, const LOOKUP_OPTIONS& lookup) {
    if (lookup.accept_mismatches)
        text += 'A';
    if (lookup.partial_matches)
        text += 'P';
}

void append_message(std::string& text, const std::string& message) {
    const std::size_t room = lookup_room(text.size() + LOOKUP_MESSAGE_START.size());
    if (!message.empty() && room > 0)
        text.append(LOOKUP_MESSAGE_START).append(message, 0, room);
}

// A number of more than two digits could not be told from the option letters behind it.
std::string target_text(const std::string& typed) {
    const bool fits = typed.size() <= TARGET_DIGITS && std::all_of(typed.begin(), typed.end(), is_digit);
    return fits ? typed : std::to_string(number_of(typed));
}

bool is_row(std::string LOOKUP_FILE::*value) {
    return value == &LOOKUP_FILE::start_row || value == &LOOKUP_FILE::end_row;
}

// A value as the string holds it: pasted text may bring the marks that end a value.
std::string value_text(const LOOKUP_FILE& file, std::string LOOKUP_FILE::*value) {
    std::string text = file.*value;
    text.resize(std::min(text.find_first_of(VALUE_ENDS), text.size()));
    if (value == &LOOKUP_FILE::name)
        return text;
    const unsigned number = number_of(text);
    const bool keeps = is_row(value) ? !text.empty() && number <= HIGHEST_LOOKUP_ROW : number > 0;
    return keeps ? text : "1";
}

// The row as it is checked: an empty one counts as what is written for it.
unsigned row_number(const std::string& typed) {
    return typed.empty() ? 1 : number_of(typed);
}

} // namespace

std::size_t lookup_room(std::size_t others) {
    return others < LOOKUP_LIMIT ? LOOKUP_LIMIT - others : 0;
}

LOOKUP_TABLE parse_lookup_table(std::string_view text) {
    const LOOKUP_PARTS parts = parts_of(text, 'T');
    LOOKUP_TABLE table{options_of(parts), {}};
    if (!parts.values.empty())
        table.entries = split(parts.values);
    return table;
}

LOOKUP_FILE parse_lookup_file(std::string_view text) {
    const LOOKUP_PARTS parts = parts_of(text, 'F');
    LOOKUP_FILE file;
    static_cast<LOOKUP_OPTIONS&>(file) = options_of(parts);
    file.optional = has_option(parts, 'O');
    file.auto_advance = has_option(parts, 'S');
    if (const std::size_t letter = parts.options.find('D'); letter != std::string::npos) {
        const std::string digits = parts.options.substr(letter + 1, TARGET_DIGITS);
        file.add_display_field = true;
        file.target_field.assign(digits.begin(), std::find_if_not(digits.begin(), digits.end(), is_digit));
    }
    if (parts.has_values) {
        const std::vector<std::string> values = split(parts.values);
        for (std::size_t i = 0; i < std::min(values.size(), std::size(LOOKUP_VALUES)); ++i)
            file.*LOOKUP_VALUES[i].value =
                translate_hex_to_string(translate_string_to_hex(values[i]).substr(0, LOOKUP_VALUES[i].limit));
    }
    return file;
}

std::string lookup_table_text(const LOOKUP_TABLE& table) {
    std::string text = "T";
    append_options(text, table);
    for (const std::string& entry : table.entries)
        text += SEPARATOR + entry;
    if (table.entries.size() == 1 && table.entries.front().empty())
        text += SEPARATOR; // a single comma would be a table without entries
    append_message(text, table.message);
    return text;
}

std::string lookup_file_text(const LOOKUP_FILE& file) {
    std::string text = "F";
    if (file.add_display_field) {
        text += 'D' + target_text(file.target_field);
        if (file.auto_advance)
            text += 'S';
    }
    append_options(text, file);
    if (file.optional)
        text += 'O';
    for (const LOOKUP_VALUE& row : LOOKUP_VALUES)
        text += SEPARATOR + value_text(file, row.value);
    append_message(text, file.message);
    return text;
}

void replace_lookup_entry(LOOKUP_TABLE& table, std::size_t index, std::string_view text) {
    const std::size_t room = lookup_room(lookup_table_text(table).size() - table.entries[index].size());
    // Tokens make it longer than it was typed, and a broken one must not take the next comma with it.
    const std::string normal = normal_escaped_text(normal_escaped_text(text).substr(0, room));
    const std::vector<std::string> parts = split(normal.substr(0, normal.find(MESSAGE_MARK)));
    const auto place = table.entries.erase(table.entries.begin() + static_cast<std::ptrdiff_t>(index));
    table.entries.insert(place, parts.begin(), parts.end());
}

EDIT_FAULT find_lookup_file_fault(const LOOKUP_FILE& file) {
    const unsigned start_row = row_number(file.start_row);
    const unsigned end_row = row_number(file.end_row);
    if (start_row > HIGHEST_LOOKUP_ROW || end_row > HIGHEST_LOOKUP_ROW)
        return {"Start Row/End Row Greater than 3", ROWS_CAPTION};
    if (start_row > end_row)
        return {"Start Row is Greater than End Row", ROWS_CAPTION};
    const unsigned target_number = number_of(file.target_field);
    if (target_number > HIGHEST_LOOKUP_TARGET) {
        target = 0;
        return {"Valid Target Field value is 0-99", "Target Field Error"};
    }
    if (file.add_display_field && file.target_field.empty())
        return {"If Add Display Field is selected,\nTarget Field must be entered.", "Target Field"};
    if (file.add_display_field)
        target = static_cast<int>(target_number);
    return {};
}

std::vector<std::string> lookup_message_lines(const std::string& message, bool is_table) {
    std::string cells = message;
    if (message.empty())
        cells = is_table ? "Input Not Found In  Lookup Table" : "Input Not Found In  Lookup File";
    cells.resize(LOOKUP_MESSAGE_LIMIT, EMPTY_CELL);
    return {cells.substr(0, DISPLAY_COLUMNS), cells.substr(DISPLAY_COLUMNS)};
}
