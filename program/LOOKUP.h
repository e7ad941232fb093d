// The lookup string: what a field's input is checked against, as one escaped text.
//
//   table:  T [A] [P] , entry , entry ... [,?message]
//   file:   F [D target [S]] [A] [P] [O] , name , fields , compare , display , start , end [,?message]
//
// The letters up to the first comma are read in either case, and letters without a meaning are skipped.
#pragma once

#include "program/Prog.h"

#include <string>
#include <string_view>
#include <vector>

inline constexpr std::size_t LOOKUP_LIMIT = 250;        // characters of a lookup string
inline constexpr std::size_t LOOKUP_MESSAGE_LIMIT = 40; // characters: two lines of the portable's display
inline constexpr std::string_view LOOKUP_MESSAGE_START = ",?";
inline constexpr unsigned HIGHEST_LOOKUP_TARGET = 99;

// What both kinds have.
struct LOOKUP_OPTIONS {
    bool accept_mismatches = false;
    bool partial_matches = false;
    std::string message; // shown by the portable; empty for its own
};

struct LOOKUP_TABLE : LOOKUP_OPTIONS {
    std::vector<std::string> entries; // none holds a comma or a '?'
};

struct LOOKUP_FILE : LOOKUP_OPTIONS {
    bool optional = false;
    bool add_display_field = false; // the display field goes into the target field of the data
    bool auto_advance = false;
    std::string target_field = "1"; // all numbers as typed
    std::string name;
    std::string fields_per_record = "1";
    std::string compare_field = "1";
    std::string display_field = "1";
    std::string start_row = "1";
    std::string end_row = "1";
};

inline constexpr std::string_view VALUE_ENDS = ",?"; // neither can stand in a value

// The values behind the options of a file's lookup string, in order, with the characters that each may have,
// a token counting as one.
struct LOOKUP_VALUE {
    std::string LOOKUP_FILE::*value;
    std::size_t limit;
};
inline constexpr LOOKUP_VALUE LOOKUP_VALUES[] = {
    {&LOOKUP_FILE::name, 8},          {&LOOKUP_FILE::fields_per_record, 3}, {&LOOKUP_FILE::compare_field, 3},
    {&LOOKUP_FILE::display_field, 3}, {&LOOKUP_FILE::start_row, 2},         {&LOOKUP_FILE::end_row, 2},
};

// A string of the other kind, or of none, gives an empty definition. Values are cut to their limits.
LOOKUP_TABLE parse_lookup_table(std::string_view text);
LOOKUP_FILE parse_lookup_file(std::string_view text);

// How many characters fit into a string beside `others`.
std::size_t lookup_room(std::size_t others);

// The string of a definition. Its message is cut so that the string keeps to LOOKUP_LIMIT.
std::string lookup_table_text(const LOOKUP_TABLE& table);
std::string lookup_file_text(const LOOKUP_FILE& file);

// Puts a text as typed in the place of an entry. Commas make it several entries; a '?' ends it, as everything
// behind one would be taken for the message. What the string has no room for is cut.
void replace_lookup_entry(LOOKUP_TABLE& table, std::size_t index, std::string_view text);

// The first check that a file definition fails. Sets `target` to the target field's number, or to 0 when that
// is too high.
EDIT_FAULT find_lookup_file_fault(const LOOKUP_FILE& file);

// The two display lines, 20 cells each, of a message as typed, or of the portable's own when it is empty.
std::vector<std::string> lookup_message_lines(const std::string& message, bool is_table);
