#include "program/Prog.h"

#include "program/Prog_display.h"

PROGRAM_HEADER program_header;
GLOBAL_DATA_OPTIONS global_options;
int field_list_total = 1;
bool file_changed = false;
std::string lookup_string;
int target = 0;
bool no_lookup_target = false;

void init_programming() {
    program_header = {};
    global_options = {};
    global_options.mult_field_operator = 1;
    field_list_total = 1;
    lookup_string.clear();
    target = 0;
    no_lookup_target = false;
}

void init_field(FIELD_DEFINITION& field) {
    field = {};
    field.bit_values1 = AUTO_ADVANCE | NEW_SCREEN | INPUT_TRANSMIT | REQUIRE_INPUT | FIELD_ALWAYS_SET;
    field.input_type = INPUT_DATA;
    field.end_col = DISPLAY_COLUMNS - 1;
    field.max_input = MAX_INPUT_LIMIT;
    field.min_input = 1;
    field.input_source = SOURCE_BAR_CODE;
    field.output_format = 'V';
    field.barcode_bit_values = BARCODE_ALL | BARCODE_AUTO_ADVANCE;
    field.input_mask_handle.assign(1, 'A');
    field.suffix_text_handle = "\r\n";
}

void free_prog_memory() {
    program_header.fields.clear();
    program_header.sof_text_handle.clear();
    program_header.eof_text_handle.clear();
}
