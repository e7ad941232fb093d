#include "program/Prog_fields.h"

#include "program/Prog_display.h"
#include "program/Prog_text.h"

#include <algorithm>
#include <array>
#include <iterator>

int field_list_selection = 0;
bool new_field = false;

namespace {

// How the list shows a coded member; the blanks align the texts of a column.
struct CODE_TEXT {
    std::uint8_t code;
    const char* text;
};
constexpr CODE_TEXT TYPE_TEXTS[] = {
    {INPUT_DATA, "Data"},       {INPUT_STAMP, "Stamp"},     {INPUT_YES_NO, "Yes/No"},
    {INPUT_EXHIBIT, "Exhibit"}, {INPUT_NO_EDIT, "No Edit"},
};
constexpr CODE_TEXT SOURCE_TEXTS[] = {
    {SOURCE_BAR_CODE, "    Barcode"},
    {SOURCE_KEYBOARD, "   Keyboard"},
    {SOURCE_SERIAL, "     Serial"},
    {SOURCE_LOOKUP_FILE, "Lookup File"},
};
constexpr CODE_TEXT FORMAT_TEXTS[] = {
    {'V', "   Variable"},
    {'L', " Left Justify"},
    {'R', "Right Justify"},
};
constexpr char UNKNOWN[] = "Unknown";

template <std::size_t SIZE>
const char* code_text(const CODE_TEXT (&texts)[SIZE], std::uint8_t code, const char* otherwise) {
    const auto found = std::find_if(std::begin(texts), std::end(texts),
                                    [code](const auto& row) { return row.code == code; });
    return found == std::end(texts) ? otherwise : found->text;
}

// Right-aligned in three characters.
std::string number_text(int number) {
    const std::string digits = std::to_string(number);
    return std::string(3 - std::min<std::size_t>(digits.size(), 3), ' ') + digits;
}

int field_count() {
    return static_cast<int>(program_header.fields.size());
}

bool is_on_field() {
    return field_list_selection >= 0 && field_list_selection < field_count();
}

std::int32_t operator_from_flags(std::uint8_t flags) {
    if ((flags & OPERATOR_ADD) != 0)
        return 1;
    if ((flags & OPERATOR_SUBTRACT) != 0)
        return 2;
    return (flags & OPERATOR_MULTIPLY) != 0 ? 3 : 4;
}

void derive_from_field(const FIELD_DEFINITION& field, int number) {
    const std::uint8_t flags = field.data_manip_source;
    if ((flags & COMPARE_FIELD) != 0) {
        global_options.field_compare = number;
        global_options.dup_warning = (flags & NO_DUPLICATE_WARNING) == 0;
    }
    if ((field.bit_values2 & AUTOINCREMENT_FIELD) != 0) {
        const std::string& amount = field.data_manip_condition_handle;
        global_options.field_to_inc = number;
        global_options.amount_to_inc = amount.empty() ? 1 : decimal_value(amount);
    }
    if ((flags & CALCULATION_FIELD_ONE) != 0) {
        global_options.mult_field_1 = number;
    } else if ((flags & CALCULATION_FIELD_TWO) != 0) {
        global_options.mult_field_2 = number;
        global_options.mult_field_operator = operator_from_flags(flags);
    } else if ((flags & CALCULATION_RESULT) != 0) {
        global_options.mult_field_result = number;
    }
}

// The save looks for the target of a lookup file definition in the definition that was edited last.
void note_lookup(const std::string& old_text, const std::string& new_text) {
    if (!new_text.empty() || lookup_string == old_text)
        lookup_string = new_text;
}

} // namespace

FIELD_HANDLE current_handle() {
    auto& fields = program_header.fields;
    return is_on_field() ? std::next(fields.begin(), field_list_selection) : fields.end();
}

bool insert_field() {
    if (program_header.fields.size() >= MAX_FIELDS)
        return false;
    if (!is_on_field())
        field_list_selection = field_count();
    init_field(*program_header.fields.emplace(current_handle()));
    field_list_total = field_count() + 1;
    new_field = true;
    return true;
}

void delete_field() {
    if (!is_on_field())
        return;
    program_header.fields.erase(current_handle());
    field_list_total = field_count() + 1;
    new_field = false;
}

std::vector<std::string> field_list_rows() {
    std::vector<std::string> rows;
    rows.reserve(program_header.fields.size() + 1);
    const char* source = ""; // an unknown source is shown as that of the row above
    int number = 0;
    for (const auto& field : program_header.fields) {
        source = code_text(SOURCE_TEXTS, field.input_source, source);
        std::string& row = rows.emplace_back(number_text(++number));
        row += is_header(field) ? "\tHeader\t" : "\tRecord\t";
        row += code_text(TYPE_TEXTS, field.input_type, UNKNOWN);
        row += '\t' + translate_hex_to_string(field.prompt_string_handle);
        row += '\t' + number_text(field.max_input) + '\t' + number_text(field.min_input);
        row += std::string("\t") + source + '\t' + code_text(FORMAT_TEXTS, field.output_format, UNKNOWN);
    }
    rows.emplace_back("<<END OF PROGRAM>>");
    return rows;
}

void derive_global_options(bool reset) {
    if (reset)
        global_options = {};
    int number = 0;
    for (const auto& field : program_header.fields) {
        derive_from_field(field, ++number);
        if (field.input_source == SOURCE_LOOKUP_FILE)
            no_lookup_target = false;
    }
}

EDIT_FAULT find_field_fault(const FIELD_EDITS& edits) {
    // Wide enough for whatever is typed.
    const std::int64_t rows = std::int64_t{edits.end_row} - edits.start_row;
    const std::int64_t columns = std::int64_t{edits.end_col} - edits.start_col;
    const std::int64_t room = rows * DISPLAY_COLUMNS + columns + 1;
    const std::string mask = translate_string_to_hex(edits.input_mask);
    const struct {
        bool failed;
        const char* text;
    } checks[] = {
        {edits.max_input < edits.min_input, "Max Input Value less than Min Input Value"},
        {edits.min_input > MAX_INPUT_LIMIT, "Min Input Greater Than 250"},
        {edits.max_input > MAX_INPUT_LIMIT, "Max Input Greater Than 250"},
        {edits.max_input < 1, "Max Input Less Than 1"},
        {rows < 0, "End Row less than Start Row"},
        {rows == 0 && columns < 0, "End Col less than Start Col"},
        {edits.start_row >= DISPLAY_ROWS, "Start Row Greater Than 3"},
        {edits.end_row >= DISPLAY_ROWS, "End Row Greater Than 3"},
        {edits.start_col >= DISPLAY_COLUMNS, "Start Col Greater Than 19"},
        {edits.end_col >= DISPLAY_COLUMNS, "End Col Greater Than 19"},
        {room <= static_cast<std::int64_t>(edits.prompt.size()),
         "Prompt and data will not fit within start/end range"},
        {input_number_from_mask(mask) < edits.min_input,
         "Minimum Input value is greater than input allowed from Input Mask field."},
        {valid_inputmask(mask) == 0,
         "Input Mask field can only contain the letters 'A', 'D', 'F', 'I', and 'N'."},
    };
    for (const auto& check : checks) {
        if (check.failed)
            return {check.text, "Field Definition"};
    }
    if ((edits.field.bit_values2 & ALLOW_CALCULATION) != 0 && check_for_decimal_inputmask(mask) == 0)
        return {"When Allow Calculation is ON\nInput Mask must be Decimal.", "Input Mask Error"};
    return {};
}

void store_field(const FIELD_DEFINITION& edited) {
    if (!is_on_field())
        return;
    FIELD_DEFINITION& field = *current_handle();
    note_lookup(field.lookup_filename_handle, edited.lookup_filename_handle);
    field = edited;
    if (field.input_source == SOURCE_LOOKUP_FILE)
        no_lookup_target = false;
    new_field = false;
    file_changed = true;
}
