// The targets: what reads files, settings or the line, and what is then done with what was read.
#include "fuzz/fuzz.h"

#include "app/files.h"
#include "app/settings.h"
#include "comm/PCOM.h"
#include "comm/line.h"
#include "convert/CONVERT_text.h"
#include "files/FILEGEN.h"
#include "files/FILEGEN_formats.h"
#include "files/FILEGEN_import.h"
#include "files/MEMORY.h"
#include "library/LIB.h"
#include "monitor/MONITOR.h"
#include "monitor/MONITOR_text.h"
#include "program/LOOKUP.h"
#include "program/Prog.h"
#include "program/Prog_display.h"
#include "program/Prog_fields.h"
#include "program/Prog_file.h"
#include "setup/SETUP.h"

#include <cstdlib>

namespace {

void require(bool holds) {
    if (!holds)
        std::abort();
}

// Opens a program, shows it as the editor does, and saves it.
void fuzz_program(std::string_view input) {
    free_prog_memory();
    init_programming();
    open_program_file(nullptr, input_file(input, ".PGT"));
    derive_global_options(true);
    require(field_list_rows().size() == program_header.fields.size() + 1);
    for (auto field = program_header.fields.begin(); field != program_header.fields.end(); ++field) {
        compose_display(program_header.fields, field, *field);
        parse_lookup_table(field->lookup_filename_handle);
        parse_lookup_file(field->lookup_filename_handle);
    }
    save_program_file(input_file("", ".PGT"));
}

void fuzz_setup(std::string_view input) {
    reset_setups();
    open_setup_file(input_file(input, ".CFT"));
    const std::string saved = input_file("", ".CFT");
    save_setup_file(saved);
    require(open_setup_file(saved) == 1);
}

std::int64_t stored_records() {
    std::int64_t records = 0;
    for (char* record = goto_first_record(); *record != END_OF_RECORDS; record = goto_next_record(record))
        ++records;
    require(records == record_count());
    return records;
}

void fuzz_edit_file(std::string_view input, int file_type, const char* extension) {
    initialize_memory();
    const std::int64_t result = read_edit_file(nullptr, input_file(input, extension), file_type);
    require(result < 0 || result == stored_records());
    const std::int64_t records = stored_records();
    const std::string saved = input_file("", extension);
    // What was saved opens again.
    if (write_edit_file(nullptr, saved, file_type) > 0 && records > 0) {
        free_memchunks();
        require(read_edit_file(nullptr, saved, file_type) != 0);
    }
    free_memblock();
}

void fuzz_lookup_file(std::string_view input) {
    fuzz_edit_file(input, LOOKUP_FILE_EDITED, ".LKT");
}

void fuzz_data_file(std::string_view input) {
    fuzz_edit_file(input, DATA_FILE_EDITED, ".DAT");
}

void fuzz_import(std::string_view input, std::int64_t (*read)(WINDOW, TEXT_SOURCE&)) {
    initialize_memory();
    const FILE_HANDLE file = open_file(input_file(input, ".TXT"), "rb");
    TEXT_SOURCE source = open_source(file.get());
    const std::int64_t result = read(nullptr, source);
    require(result < 0 || result == stored_records());
    free_memblock();
}

void fuzz_dbase(std::string_view input) {
    if (is_dbase_file(input, input.size()) == 1)
        fuzz_import(input, read_dbase_file);
}

void fuzz_comma_text(std::string_view input) {
    fuzz_import(input, read_text_ascii_file);
}

void fuzz_library(std::string_view input) {
    const std::string name = input_file(input, ".LBT");
    if (open_library_file(nullptr, name) == 1 && valid_sys_files(nullptr) == 1)
        save_library_file(nullptr, input_file("", ".LBT"));
    std::string member = name;
    if (extract_library_file(nullptr, member) == 1)
        (void)std::remove(member.c_str());
    open_program_file(nullptr, name);
    open_setup_file(name);
}

void fuzz_upgrade(std::string_view input) {
    isflash_file(input_file(input, ".UPG"));
}

void fuzz_capture(std::string_view input) {
    const std::string name = input_file(input, ".CAP");
    open_capture_file(nullptr, name);
    for (const MON_STRINGS& line : captured_text.lines)
        require(std::string_view(line.string.data()).size() <= MON_LINE_LIMIT);
    save_capture_file(nullptr, name);
    clear_captured_text();
    for (const char byte : input)
        write_serkey(static_cast<std::uint8_t>(byte));
    clear_captured_text();
}

void fuzz_compressed_text(std::string_view input) {
    const FILE_HANDLE file = open_file(input_file(input, ".PRG"), "rb");
    std::string text;
    while (read_string_data(file.get(), text))
        require(text.size() <= 2 * input.size() + 1);
}

void fuzz_lookup_string(std::string_view input) {
    const std::string text(input.substr(0, LOOKUP_LIMIT));
    const LOOKUP_TABLE table = parse_lookup_table(text);
    require(lookup_table_text(table).size() <= LOOKUP_LIMIT || table.entries.size() > 1);
    const LOOKUP_FILE file = parse_lookup_file(text);
    find_lookup_file_fault(file);
    lookup_file_text(file);
    lookup_message_lines(file.message, false);
}

void fuzz_settings(std::string_view input) {
    settings_are(input);
    read_com_setup();
    summarize_settings(comm_settings);
    read_directory_setup();
    read_window_size();
    initialize_com_settings();
    for (int item = 0; item < MONITOR_ITEM_COUNT; ++item)
        require(!monitor_item_text(static_cast<MONITOR_ITEM>(item)).empty());
    for (LINE* const line : {comm_initialize(ACTION_SEND), mon_comm_initialize()})
        close_line(line);
    reset_com_setups();
}

// A transfer that runs against the input.
void fuzz_line(std::string_view input, void (*transfer)(WINDOW, const std::string&), unsigned protocol,
               unsigned interface_mode) {
    reset_com_setups();
    comm_settings.protocol = protocol;
    comm_settings.interface_mode = interface_mode;
    comm_settings.flow_control = next_answer(3);
    comm_settings.xmodem_retries = next_answer(3);
    comm_settings.filemode = next_answer(2);
    line_says(input);
    transfer(nullptr, input_file(std::string(300, 'x'), ".DAT"));
}

void fuzz_xmodem_receive(std::string_view input) {
    fuzz_line(input, receive_file, PROTOCOL_XMODEM, INTERFACE_DIRECT);
}

void fuzz_xmodem_auto_receive(std::string_view input) {
    auto_receive_flag = true;
    fuzz_line(input, receive_file, PROTOCOL_XMODEM, INTERFACE_DIRECT);
    auto_receive_flag = false;
}

void fuzz_xmodem_send(std::string_view input) {
    fuzz_line(input, send_file, PROTOCOL_XMODEM, INTERFACE_DIRECT);
}

void fuzz_modem(std::string_view input) {
    fuzz_line(input, next_answer(2) == 0 ? send_file : receive_file, PROTOCOL_NONE, INTERFACE_MODEM);
}

} // namespace

const FUZZ_TARGET FUZZ_TARGETS[] = {
    {"program", fuzz_program},
    {"setup", fuzz_setup},
    {"lookup_file", fuzz_lookup_file},
    {"data_file", fuzz_data_file},
    {"dbase", fuzz_dbase},
    {"comma_text", fuzz_comma_text},
    {"library", fuzz_library},
    {"upgrade", fuzz_upgrade},
    {"capture", fuzz_capture},
    {"compressed_text", fuzz_compressed_text},
    {"lookup_string", fuzz_lookup_string},
    {"settings", fuzz_settings},
    {"xmodem_receive", fuzz_xmodem_receive},
    {"xmodem_auto_receive", fuzz_xmodem_auto_receive},
    {"xmodem_send", fuzz_xmodem_send},
    {"modem", fuzz_modem},
};
const std::size_t FUZZ_TARGET_COUNT = std::size(FUZZ_TARGETS);
