// The program that the portable runs, as the editors hold it: a header and a chain of field definitions.
//
// A member named ..._handle owns a text of stored bytes (see Prog_text.h); an absent text is empty.
#pragma once

#include <cstdint>
#include <list>
#include <string>

inline constexpr std::size_t MAX_FIELDS = 250;
inline constexpr unsigned MAX_INPUT_LIMIT = 250;    // characters of a field's input
inline constexpr std::size_t PROGRAM_NAME_SIZE = 9; // bytes in the file; the name may fill them all
inline constexpr char PROGRAM_FILE_TYPE = 'I';

// PROGRAM_HEADER::bit_values
inline constexpr std::uint8_t AUTO_ALPHA_OFF = 0x01; // inverse of "Auto Alpha Switch"
inline constexpr std::uint8_t DISABLE_VIEW_LOOKUP = 0x02;
inline constexpr std::uint8_t ALLOW_APPEND = 0x20;
inline constexpr std::uint8_t RECEIVED_FILES_ONLY = 0x40;
inline constexpr std::uint8_t HEADER_CLEARED_AT_SAVE = 0x80;

// FIELD_DEFINITION::barcode_bit_values
inline constexpr std::uint16_t BARCODE_AUTO_ADVANCE = 0x0001;
inline constexpr std::uint16_t BARCODE_APPEND = 0x0002;
inline constexpr std::uint16_t BARCODE_ALL = 0x8000;

// FIELD_DEFINITION::bit_values1
inline constexpr std::uint8_t NO_DUPLICATES = 0x01;
inline constexpr std::uint8_t AUTO_ADVANCE = 0x02;
inline constexpr std::uint8_t HEADER_INPUT = 0x04;
inline constexpr std::uint8_t NEW_SCREEN = 0x08;
inline constexpr std::uint8_t INPUT_TRANSMIT = 0x10;
inline constexpr std::uint8_t SHIFT_TO_UPPER = 0x20;
inline constexpr std::uint8_t REQUIRE_INPUT = 0x40;
inline constexpr std::uint8_t FIELD_ALWAYS_SET = 0x80; // set in a new field, never edited

// FIELD_DEFINITION::bit_values2
inline constexpr std::uint8_t AUTOINCREMENT_FIELD = 0x01; // set at save only
inline constexpr std::uint8_t ALLOW_CALCULATION = 0x08;
inline constexpr std::uint8_t TRANSMIT_TOTAL = 0x10;

// FIELD_DEFINITION::data_manip_source, rewritten at every save
inline constexpr std::uint8_t COMPARE_FIELD = 0x01;
inline constexpr std::uint8_t NO_DUPLICATE_WARNING = 0x02;
inline constexpr std::uint8_t CALCULATION_FIELD_ONE = 0x04;
inline constexpr std::uint8_t CALCULATION_FIELD_TWO = 0x08;
inline constexpr std::uint8_t CALCULATION_RESULT = 0x10;
inline constexpr std::uint8_t OPERATOR_ADD = 0x20;
inline constexpr std::uint8_t OPERATOR_SUBTRACT = 0x40;
inline constexpr std::uint8_t OPERATOR_MULTIPLY = 0x80; // none of the three: divide

// FIELD_DEFINITION::input_type
inline constexpr std::uint8_t INPUT_DATA = 'D';
inline constexpr std::uint8_t INPUT_STAMP = 'S';
inline constexpr std::uint8_t INPUT_YES_NO = 'Y';
inline constexpr std::uint8_t INPUT_EXHIBIT = 'E';
inline constexpr std::uint8_t INPUT_NO_EDIT = 'N';

// FIELD_DEFINITION::input_source
inline constexpr std::uint8_t SOURCE_KEYBOARD = 'K';
inline constexpr std::uint8_t SOURCE_BAR_CODE = 'B';
inline constexpr std::uint8_t SOURCE_SERIAL = 'S';
inline constexpr std::uint8_t SOURCE_LOOKUP_FILE = 'L';

struct FIELD_DEFINITION {
    std::uint16_t barcode_bit_values = 0;       // bar-code options and allowed symbologies
    std::uint16_t manip_barcode_bit_values = 0; // symbologies that the data manipulation applies to
    std::uint8_t bit_values1 = 0;
    std::uint8_t input_type = 0;
    std::uint8_t start_row = 0; // rows and columns of the display count from 0
    std::uint8_t start_col = 0;
    std::uint8_t end_row = 0;
    std::uint8_t end_col = 0;
    std::uint8_t max_input = 0;
    std::uint8_t min_input = 0;
    std::uint8_t input_source = 0;
    std::uint8_t output_format = 0; // 'V' variable, 'L' left justify, 'R' right justify
    std::uint8_t prefix_delay = 0;
    std::uint8_t suffix_delay = 0;
    std::uint8_t bit_values2 = 0;
    std::uint8_t strip_leading_chars = 0;
    std::uint8_t strip_trailing_chars = 0;
    std::uint8_t data_manip_source = 0; // roles in the global data options
    std::string prompt_string_handle;   // of a Stamp field: the stamp commands
    std::string display_pattern_handle;
    std::string input_mask_handle;
    std::string default_data_handle;
    std::string lookup_filename_handle; // lookup table or lookup file definition
    std::string prefix_text_handle;
    std::string suffix_text_handle;
    std::string data_manip_condition_handle; // of the autoincrement field: the amount
    std::string transmit_condition_handle;
    std::string calculated_field_handle;
    std::string branch_condition_handle;
};

// The field is asked once for each data file.
inline bool is_header(const FIELD_DEFINITION& field) {
    return (field.bit_values1 & HEADER_INPUT) != 0;
}

struct PROGRAM_HEADER {
    std::uint32_t file_size = 0; // bytes of the file without its checksum
    std::uint8_t file_type = 0;
    std::uint8_t header_count = 0;
    std::uint8_t stored_headers = 0;      // header fields that are not Exhibit
    std::uint8_t interactive_headers = 0; // header fields that are neither Exhibit nor Stamp
    std::uint8_t record_count = 0;
    std::uint8_t stored_records = 0;
    std::uint8_t interactive_records = 0;
    std::string name; // at most PROGRAM_NAME_SIZE bytes
    std::uint8_t sof_delay = 0;
    std::uint8_t eof_delay = 0;
    std::uint8_t bit_values = 0;
    std::uint8_t num_data_files = 0; // not in the file
    std::list<FIELD_DEFINITION> fields;
    std::string sof_text_handle;
    std::string eof_text_handle;
};

// Program-wide options. They reach the file through flags of the fields that a save sets. Field numbers count
// from 1; 0 is none.
struct GLOBAL_DATA_OPTIONS {
    std::int32_t field_compare = 0;
    std::int32_t field_to_inc = 0;
    std::int32_t amount_to_inc = 0;
    std::uint8_t dup_warning = 0; // 1: warn on duplicates
    std::int32_t mult_field_1 = 0;
    std::int32_t mult_field_2 = 0;
    std::int32_t mult_field_result = 0;
    std::int32_t mult_field_operator = 0; // 1 add, 2 subtract, 3 multiply, 4 divide
};

// What the first check that fails has against the operator's edits; an empty text when they pass all.
struct EDIT_FAULT {
    std::string text;
    std::string caption;
};

// The one open program and what its editors share beside it.
extern PROGRAM_HEADER program_header;
extern GLOBAL_DATA_OPTIONS global_options;
extern int field_list_total;      // fields plus one, the end marker row
extern bool file_changed;         // the program differs from its file
extern std::string lookup_string; // the first lookup definition met while reading, or the last one edited
extern int target;                // the target field number last entered for a lookup file definition
extern bool no_lookup_target;     // a lookup file definition wants a target field and there is none

// Defaults of a new program and of a new field.
void init_programming();
void init_field(FIELD_DEFINITION& field);

// Frees the fields and the two header texts, leaving an empty list.
void free_prog_memory();
