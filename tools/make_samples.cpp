// Writes the sample job into the folder named by its argument: the program, the setup and the collected data
// of a stock count. Headers ask once for site and counter; each record is one item scanned from a shelf.
#include "app/files.h"
#include "program/Prog.h"
#include "program/Prog_file.h"
#include "setup/SETUP.h"

#include <cstdio>

namespace {

// Display cells that a field takes, rows and columns from 0.
struct CELLS {
    std::uint8_t start_row;
    std::uint8_t start_col;
    std::uint8_t end_row;
    std::uint8_t end_col;
};

FIELD_DEFINITION& add_field(std::uint8_t input_type, std::uint8_t flags, const CELLS& cells,
                            const char* prompt) {
    auto& field = program_header.fields.emplace_back();
    init_field(field);
    field.input_type = input_type;
    field.bit_values1 = FIELD_ALWAYS_SET | AUTO_ADVANCE | flags;
    field.start_row = cells.start_row;
    field.start_col = cells.start_col;
    field.end_row = cells.end_row;
    field.end_col = cells.end_col;
    field.prompt_string_handle = prompt;
    field.suffix_text_handle.clear();
    return field;
}

void set_input(FIELD_DEFINITION& field, std::uint8_t source, std::uint8_t min_input, std::uint8_t max_input) {
    field.input_source = source;
    field.min_input = min_input;
    field.max_input = max_input;
}

void add_header_fields() {
    auto& site = add_field(INPUT_DATA, HEADER_INPUT | NEW_SCREEN | REQUIRE_INPUT, {0, 0, 0, 9}, "Site:");
    set_input(site, SOURCE_KEYBOARD, 4, 4);
    site.display_pattern_handle = "____";
    site.input_mask_handle = "NNNN";

    auto& counter =
        add_field(INPUT_DATA, HEADER_INPUT | REQUIRE_INPUT | SHIFT_TO_UPPER, {1, 0, 1, 19}, "Counter:");
    set_input(counter, SOURCE_BAR_CODE, 2, 10);
}

void add_record_fields() {
    auto& stamp = add_field(INPUT_STAMP, INPUT_TRANSMIT, {0, 0, 0, 19}, "Y-M-D H:I");
    stamp.input_mask_handle = "AAAAIAAIAAIAAIAA";
    stamp.display_pattern_handle = "____-__-__ __:__";
    stamp.prefix_text_handle = "\xA1,\xA2,"; // the two header inputs
    stamp.suffix_text_handle = ",";

    auto& item = add_field(INPUT_DATA, NEW_SCREEN | INPUT_TRANSMIT | REQUIRE_INPUT, {0, 0, 0, 19}, "Item:");
    set_input(item, SOURCE_BAR_CODE, 8, 13);
    // Record field 2, counted without the headers, is the item; field 3 receives its description.
    item.lookup_filename_handle = "FD3SA,PARTS,2,1,2,1,1,?Item is not in the  parts list";
    item.suffix_text_handle = ",";

    auto& description = add_field(INPUT_NO_EDIT, INPUT_TRANSMIT, {1, 0, 1, 19}, "");
    set_input(description, SOURCE_LOOKUP_FILE, 1, 20);
    description.suffix_text_handle = ",";

    auto& quantity = add_field(INPUT_DATA, INPUT_TRANSMIT | REQUIRE_INPUT, {2, 0, 2, 9}, "Qty:");
    set_input(quantity, SOURCE_KEYBOARD, 1, 5);
    quantity.input_mask_handle = "D";
    quantity.bit_values2 = ALLOW_CALCULATION;
    quantity.output_format = 'R';
    quantity.suffix_text_handle = ",";

    auto& damaged = add_field(INPUT_YES_NO, INPUT_TRANSMIT, {2, 10, 2, 19}, "Damaged?");
    set_input(damaged, SOURCE_KEYBOARD, 1, 1);
    damaged.suffix_text_handle = "\r\n";

    add_field(INPUT_EXHIBIT, 0, {3, 0, 3, 19}, "Scan the next item");
}

bool write_program(const std::string& folder) {
    init_programming();
    program_header.name = "STOCK";
    program_header.bit_values = ALLOW_APPEND;
    add_header_fields();
    add_record_fields();
    return save_program_file(folder + "/STOCK.PGT") == 1;
}

void write_setup(const std::string& folder) {
    reset_setups();
    setup_record.I25FLAGS = 0; // no shelf label uses it, and cut-off codes pass for it
    setup_record.LSRTIME = 5;
    setup_record.BEEPTN = 3; // high: the stock room is loud
    setup_record.LIDENT = 0;
    setup_record.OFFTIME = 15;
    setup_record.AUTOF = 1;
    setup_record.REREAD = 2;
    save_setup_file(folder + "/STOCK.CFT");
}

// What the portable sends at the end of the count: the kind of file, its name and the program's, the records.
bool write_data(const std::string& folder) {
    const FILE_HANDLE file = open_file(folder + "/STOCK.DAT", "wb");
    return file && std::fputs("D\r\n"
                              "STOCK\r\n"
                              "STOCK\r\n"
                              "0017,ANNA,2026-11-20 08:02,2000100001011,MARKER BLACK,   12,N\r\n"
                              "0017,ANNA,2026-11-20 08:02,2000100001028,MARKER RED,    9,N\r\n"
                              "0017,ANNA,2026-11-20 08:03,2000100002032,NOTEBOOK A5 LINED,  140,N\r\n"
                              "0017,ANNA,2026-11-20 08:04,2000100002032,NOTEBOOK A5 LINED,    3,Y\r\n"
                              "0017,ANNA,2026-11-20 08:06,2000100003046,STAPLER 24/6,    7,N\r\n"
                              "0017,ANNA,2026-11-20 08:07,2000100004050,STAPLES 24/6 BOX,   55,N\r\n"
                              "0017,ANNA,2026-11-20 08:11,2000100005064,ENVELOPE C5 WHITE, 1250,N\r\n",
                              file.get()) >= 0;
}

} // namespace

int main(int argument_count, char** arguments) {
    if (argument_count != 2) {
        std::fprintf(stderr, "usage: make_samples FOLDER\n");
        return 2;
    }
    const std::string folder = arguments[1];
    write_setup(folder);
    return write_program(folder) && write_data(folder) ? 0 : 1;
}
