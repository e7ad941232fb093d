// The program file, numbers big-endian:
//
//   offset  size  content
//        0     4  length word: bytes before the checksum
//        4     1  type byte 'I'
//        5     6  counts of header and record fields
//       11     9  name, NUL-padded
//       20     3  sof_delay, eof_delay, bit_values
//       23     -  start-of-file and end-of-file text, each with its NUL
//        -     -  for each field: two words, 16 bytes and 11 texts, in the order of the tables below
//   length     2  checksum
#include "program/Prog_file.h"

#include "app/checksum.h"
#include "app/desktop.h"
#include "app/files.h"
#include "convert/CONVERT.h"
#include "library/LIB.h"
#include "program/Prog.h"
#include "program/Prog_checks.h"
#include "program/Prog_text.h"

#include <array>
#include <new>

namespace {

constexpr char OPEN_CAPTION[] = "Open File";
constexpr char SAVE_CAPTION[] = "Save File";
constexpr char CANNOT_OPEN[] = "Cannot Open Program File!";
constexpr std::size_t FILE_TYPE_OFFSET = 4;

constexpr std::array COUNTS = {
    &PROGRAM_HEADER::header_count, &PROGRAM_HEADER::stored_headers, &PROGRAM_HEADER::interactive_headers,
    &PROGRAM_HEADER::record_count, &PROGRAM_HEADER::stored_records, &PROGRAM_HEADER::interactive_records,
};
constexpr std::array FIELD_WORDS = {
    &FIELD_DEFINITION::barcode_bit_values,
    &FIELD_DEFINITION::manip_barcode_bit_values,
};
constexpr std::array FIELD_BYTES = {
    &FIELD_DEFINITION::bit_values1,
    &FIELD_DEFINITION::input_type,
    &FIELD_DEFINITION::start_row,
    &FIELD_DEFINITION::start_col,
    &FIELD_DEFINITION::end_row,
    &FIELD_DEFINITION::end_col,
    &FIELD_DEFINITION::max_input,
    &FIELD_DEFINITION::min_input,
    &FIELD_DEFINITION::input_source,
    &FIELD_DEFINITION::output_format,
    &FIELD_DEFINITION::prefix_delay,
    &FIELD_DEFINITION::suffix_delay,
    &FIELD_DEFINITION::bit_values2,
    &FIELD_DEFINITION::strip_leading_chars,
    &FIELD_DEFINITION::strip_trailing_chars,
    &FIELD_DEFINITION::data_manip_source,
};
constexpr std::array FIELD_TEXTS = {
    &FIELD_DEFINITION::prompt_string_handle,      &FIELD_DEFINITION::display_pattern_handle,
    &FIELD_DEFINITION::input_mask_handle,         &FIELD_DEFINITION::default_data_handle,
    &FIELD_DEFINITION::lookup_filename_handle,    &FIELD_DEFINITION::prefix_text_handle,
    &FIELD_DEFINITION::suffix_text_handle,        &FIELD_DEFINITION::data_manip_condition_handle,
    &FIELD_DEFINITION::transmit_condition_handle, &FIELD_DEFINITION::calculated_field_handle,
    &FIELD_DEFINITION::branch_condition_handle,
};

void show_warning(const std::string& text, const char* caption) {
    show_message(nullptr, text, caption, MESSAGE_ICON::WARNING);
}

std::string read_name(BYTE_READER& reader) {
    const std::string_view name = read_block(reader, PROGRAM_NAME_SIZE);
    return std::string(name.substr(0, name.find('\0')));
}

void read_header(BYTE_READER& reader) {
    for (const auto count : COUNTS)
        program_header.*count = read_byte(reader);
    program_header.name = read_name(reader);
    program_header.sof_delay = read_byte(reader);
    program_header.eof_delay = read_byte(reader);
    program_header.bit_values = read_byte(reader);
    program_header.sof_text_handle = read_string(reader);
    program_header.eof_text_handle = read_string(reader);
}

FIELD_DEFINITION read_field(BYTE_READER& reader) {
    FIELD_DEFINITION field;
    for (const auto word : FIELD_WORDS)
        field.*word = read_word(reader);
    for (const auto byte : FIELD_BYTES)
        field.*byte = read_byte(reader);
    for (const auto text : FIELD_TEXTS)
        field.*text = read_string(reader);
    return field;
}

// Fills the empty program from the bytes before the checksum. False when they end before the fields that the
// header counts.
bool read_program(std::string_view data) {
    BYTE_READER reader{data, FILE_TYPE_OFFSET + 1};
    read_header(reader);
    program_header.fields.clear();
    const int total = program_header.header_count + program_header.record_count;
    int loaded = 0;
    for (; loaded < total && reader.position < data.size(); ++loaded) {
        const auto& field = program_header.fields.emplace_back(read_field(reader));
        if (lookup_string.empty())
            lookup_string = field.lookup_filename_handle;
        global_options.amount_to_inc = decimal_value(field.data_manip_condition_handle);
    }
    field_list_total = loaded + 1;
    return loaded == total && !reader.past_end;
}

// Reads a file that is one program. Result as of open_program_file.
int load_program(std::FILE* file) {
    const FILE_START start = read_file_start(file);
    program_header.file_size = start.length;
    program_header.file_type = start.type;
    if (start.type != PROGRAM_FILE_TYPE)
        return 0;
    const auto image = read_whole_file(file);
    if (!image) {
        show_warning(CANNOT_OPEN, OPEN_CAPTION);
        return 0;
    }
    const bool complete = read_program(std::string_view(*image).substr(0, start.length));
    if (!isvalid_checksum(file, PROGRAM_CHECKSUM) || !complete) {
        show_warning("Invalid Checksum in Program File!", "Invalid Checksum");
        return -1;
    }
    return 1;
}

int load_program_within_memory(std::FILE* file) {
    try {
        return load_program(file);
    } catch (const std::bad_alloc&) {
        free_prog_memory();
        report_out_of_memory(nullptr);
        return 0;
    }
}

void append_field(std::string& image, const FIELD_DEFINITION& field) {
    for (const auto word : FIELD_WORDS)
        append_word(image, field.*word);
    for (const auto byte : FIELD_BYTES)
        append_byte(image, field.*byte);
    for (const auto text : FIELD_TEXTS)
        append_text(image, field.*text);
}

std::string program_image() {
    std::string image;
    append_long(image, program_header.file_size);
    append_byte(image, program_header.file_type);
    for (const auto count : COUNTS)
        append_byte(image, program_header.*count);
    std::string name = program_header.name;
    name.resize(PROGRAM_NAME_SIZE);
    image += name;
    append_byte(image, program_header.sof_delay);
    append_byte(image, program_header.eof_delay);
    append_byte(image, program_header.bit_values);
    append_text(image, program_header.sof_text_handle);
    append_text(image, program_header.eof_text_handle);
    for (const auto& field : program_header.fields)
        append_field(image, field);
    put_long(image, 0, static_cast<std::uint32_t>(image.size()));
    return image;
}

int refuse_save(const std::string& text) {
    show_warning(text, SAVE_CAPTION);
    return 0;
}

// Result as of save_program_file, for a program whose file fits into memory.
int save_checked_program(const std::string& file_name) {
    std::string refusal = check_fields_before_save();
    if (refusal.empty())
        refusal = update_counts_and_flags();
    if (!refusal.empty())
        return refuse_save(refusal);
    const std::string image = program_image();
    if (!save_with_checksum(file_name, image, PROGRAM_CHECKSUM))
        return refuse_save("Cannot Save Program File.\nFile Creation Error!");
    program_header.file_size = static_cast<std::uint32_t>(image.size());
    return 1;
}

} // namespace

int open_program_file(WINDOW owner, const std::string& file_name) {
    FILE_HANDLE file = open_file(file_name, "rb");
    if (!file) {
        show_warning(CANNOT_OPEN, OPEN_CAPTION);
        return 0;
    }
    lookup_string.clear();
    const FILE_START start = read_file_start(file.get());
    program_header.file_size = start.length;
    if (fills_file(file.get(), start.length))
        return load_program_within_memory(file.get());
    file.reset();
    if (!is_library_member_type(start.type))
        return open_quendal_program_file(file_name);
    return static_cast<int>(read_library_member(owner, file_name, load_program_within_memory));
}

int save_program_file(const std::string& file_name) {
    try {
        return save_checked_program(file_name);
    } catch (const std::bad_alloc&) {
        report_out_of_memory(nullptr);
        return 0;
    }
}
