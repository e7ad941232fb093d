#include "program/Prog_checks.h"

#include "program/Prog.h"
#include "program/Prog_text.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

constexpr char REFUSAL[] = "Cannot Save Program File.\n";

int count_headers() {
    return static_cast<int>(
        std::count_if(program_header.fields.begin(), program_header.fields.end(), is_header));
}

// The target field number of a lookup file definition: one or two digits behind "FD". 0 when there is none.
int lookup_target_number(std::string_view definition) {
    int number = 0;
    for (std::size_t i = 2; i < std::min<std::size_t>(definition.size(), 4) && is_digit(definition[i]); ++i)
        number = number * 10 + (definition[i] - '0');
    return number;
}

void count_field(const FIELD_DEFINITION& field) {
    const bool stored = field.input_type != INPUT_EXHIBIT;
    const bool interactive = stored && field.input_type != INPUT_STAMP;
    if (is_header(field)) {
        program_header.header_count += 1;
        program_header.stored_headers += stored;
        program_header.interactive_headers += interactive;
    } else {
        program_header.record_count += 1;
        program_header.stored_records += stored;
        program_header.interactive_records += interactive;
    }
}

// The portable increments digits only, by an amount of four digits that it finds in the field's condition.
void make_increment_field(FIELD_DEFINITION& field) {
    field.bit_values2 |= AUTOINCREMENT_FIELD;
    field.input_mask_handle.assign(std::max<std::size_t>(field.input_mask_handle.size(), 1), 'D');
    std::array<char, 12> amount; // holds any 32-bit number
    static_cast<void>(std::snprintf(amount.data(), amount.size(), "%04d", global_options.amount_to_inc));
    field.data_manip_condition_handle = amount.data();
}

std::uint8_t operator_bit(int mult_field_operator) {
    switch (mult_field_operator) {
    case 2:
        return OPERATOR_SUBTRACT;
    case 3:
        return OPERATOR_MULTIPLY;
    case 4:
        return 0; // divide
    default:
        return OPERATOR_ADD;
    }
}

// Which of the fields that the global options name there are.
struct FOUND_FIELDS {
    bool compare = false;
    bool increment = false;
    bool one = false;
    bool two = false;
    bool result = false;
};

// A field has at most one part in each option: the first of the list that names it.
void update_flags(FIELD_DEFINITION& field, int number, FOUND_FIELDS& found) {
    field.data_manip_source = 0;
    field.bit_values2 &= static_cast<std::uint8_t>(~AUTOINCREMENT_FIELD);
    if (number == global_options.field_compare) {
        found.compare = true;
        field.data_manip_source |= COMPARE_FIELD;
        field.bit_values1 |= NO_DUPLICATES;
        if (global_options.dup_warning == 0)
            field.data_manip_source |= NO_DUPLICATE_WARNING;
    } else if (number == global_options.field_to_inc) {
        found.increment = true;
        make_increment_field(field);
    }
    if (number == global_options.mult_field_1) {
        found.one = true;
        field.data_manip_source |= CALCULATION_FIELD_ONE;
    } else if (number == global_options.mult_field_2) {
        found.two = true;
        field.data_manip_source |= CALCULATION_FIELD_TWO;
        field.data_manip_source |= operator_bit(global_options.mult_field_operator);
    } else if (number == global_options.mult_field_result) {
        found.result = true;
        field.data_manip_source |= CALCULATION_RESULT;
    }
}

bool autoincrement_complete(const FOUND_FIELDS& found) {
    const bool wanted = global_options.field_compare > 0 || global_options.field_to_inc > 0;
    return !wanted || (found.increment && found.compare && global_options.amount_to_inc != 0);
}

bool calculation_complete(const FOUND_FIELDS& found) {
    return found.one == found.two && found.two == found.result;
}

} // namespace

int overlapped_fields(int* field_number) {
    // For each row, how far right the fields of the current screen reach that end in it.
    std::array<int, 256> furthest_end;
    furthest_end.fill(-1);
    int number = 0;
    for (const auto& field : program_header.fields) {
        ++number;
        if (field.input_type != INPUT_STAMP) {
            if ((field.bit_values1 & NEW_SCREEN) != 0) {
                furthest_end.fill(-1);
            } else if (!is_header(field) && field.start_col <= furthest_end[field.start_row]) {
                *field_number = number;
                return 1;
            }
        }
        furthest_end[field.end_row] = std::max<int>(furthest_end[field.end_row], field.end_col);
    }
    return 0;
}

bool CheckLookupDataDumpField() {
    // Headers are counted here: header_count is only right after a save.
    const int headers = count_headers();
    if (headers == 0 || lookup_string.size() < 2 || lookup_string[1] != 'D')
        return true;
    const auto& fields = program_header.fields;
    const auto receiver = std::find_if(fields.begin(), fields.end(), [](const FIELD_DEFINITION& field) {
        return field.input_source == SOURCE_LOOKUP_FILE;
    });
    if (receiver == fields.end())
        return true;
    const auto number = std::distance(fields.begin(), receiver) + 1;
    return number - headers == lookup_target_number(lookup_string);
}

std::string check_fields_before_save() {
    if (program_header.fields.empty())
        return std::string(REFUSAL) + "No User Input Fields Defined!";
    int field_number = 0;
    if (overlapped_fields(&field_number) != 0)
        return std::string(REFUSAL) + "Overlapping fields at Field #" + std::to_string(field_number) + "!";
    if (no_lookup_target)
        return std::string(REFUSAL) + "No Field for Lookup Data defined!";
    if (!CheckLookupDataDumpField())
        return std::string(REFUSAL) + "Lookup Data Dump Target Field\nis not the same field number as the\n"
                                      "field designated to receive lookup data.\n\n"
                                      "Adjust target field number to exclude any header fields.";
    // Only a file made elsewhere holds more. The counts of the header are bytes, so that they could not all
    // be written.
    if (program_header.fields.size() > MAX_FIELDS)
        return std::string(REFUSAL) + "Maximum number of Field Definitions allowed is 250.";
    return {};
}

std::string update_counts_and_flags() {
    program_header.file_type = PROGRAM_FILE_TYPE;
    program_header.header_count = 0;
    program_header.stored_headers = 0;
    program_header.interactive_headers = 0;
    program_header.record_count = 0;
    program_header.stored_records = 0;
    program_header.interactive_records = 0;
    program_header.bit_values &= static_cast<std::uint8_t>(~HEADER_CLEARED_AT_SAVE);
    FOUND_FIELDS found;
    int number = 0;
    for (auto& field : program_header.fields) {
        count_field(field);
        update_flags(field, ++number, found);
    }
    if (!autoincrement_complete(found))
        return std::string(REFUSAL) + "Global Data Options >>\nAutoincrement Fields not Complete.";
    if (!calculation_complete(found))
        return std::string(REFUSAL) + "Multiple Field Calculation Option>>\nAll Fields not Complete.";
    return {};
}
