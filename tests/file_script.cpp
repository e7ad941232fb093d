#include "tests/file_script.h"

#include "files/FILEGEN.h"
#include "files/MEMORY.h"
#include "library/LIB.h"
#include "tests/desktop_script.h"

namespace {

std::string columns_taken;
IMPORT_OPTIONS options_taken;
bool any_rows;

void announce(const std::string& offered, int answer) {
    expect_message(offered, "", MESSAGE_ICON::NONE, MESSAGE_BUTTONS::OK, static_cast<BUTTON>(answer));
}

int ask(const std::string& offered) {
    return static_cast<int>(show_message(nullptr, offered, "", MESSAGE_ICON::NONE, MESSAGE_BUTTONS::OK));
}

} // namespace

void expect_lookup_format(int answer) {
    announce("system or text", answer);
}

int choose_lookup_format(WINDOW) {
    return ask("system or text");
}

void expect_import_choice(const std::string& names, const std::string& columns,
                          const IMPORT_OPTIONS& options) {
    columns_taken = columns;
    options_taken = options;
    announce(names, columns.empty() ? 0 : 1);
}

bool choose_import_fields(WINDOW, std::vector<FIELD_DESCRIPTOR>& fields, IMPORT_OPTIONS& options) {
    std::string names;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::string& name = fields[i].field_name;
        names += name.substr(0, name.find_last_not_of(' ') + 1) + "|";
        fields[i].import_field = i < columns_taken.size() && columns_taken[i] == 'y';
    }
    options = options_taken;
    return ask(names) == 1;
}

void expect_library_member(const std::string& rows, int answer) {
    any_rows = rows.empty();
    announce(rows, answer);
}

int choose_library_member(WINDOW, const std::vector<std::string>& rows) {
    std::string offered;
    for (const std::string& row : rows)
        offered += row + "|";
    return ask(any_rows ? "" : offered);
}

void show_library_list(WINDOW) {}

std::string stored_records() {
    std::string records;
    for (char* record = goto_first_record(); *record != END_OF_RECORDS; record = goto_next_record(record))
        records += record + std::string("|");
    return records;
}
