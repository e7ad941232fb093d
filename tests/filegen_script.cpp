#include "tests/filegen_script.h"

#include "files/FILEGEN.h"
#include "files/MEMORY.h"
#include "tests/desktop_script.h"

#include <deque>

namespace {

struct IMPORT_ANSWER {
    std::string names, columns;
    IMPORT_OPTIONS options;
};
std::deque<int> formats;
std::deque<IMPORT_ANSWER> imports;

template <typename ANSWER>
ANSWER next_answer(std::deque<ANSWER>& answers) {
    if (answers.empty())
        stop_test("a question that was not announced");
    const ANSWER answer = answers.front();
    answers.pop_front();
    return answer;
}

} // namespace

void expect_lookup_format(int answer) {
    formats.push_back(answer);
}

void expect_import_choice(const std::string& names, const std::string& columns,
                          const IMPORT_OPTIONS& options) {
    imports.push_back({names, columns, options});
}

bool filegen_questions_asked() {
    return formats.empty() && imports.empty();
}

int choose_lookup_format(WINDOW) {
    return next_answer(formats);
}

bool choose_import_fields(WINDOW, std::vector<FIELD_DESCRIPTOR>& fields, IMPORT_OPTIONS& options) {
    const IMPORT_ANSWER answer = next_answer(imports);
    std::string names;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::string& name = fields[i].field_name; // padded
        names += (i == 0 ? "" : "|") + name.substr(0, name.find_last_not_of(' ') + 1);
        fields[i].import_field = i < answer.columns.size() && answer.columns[i] == 'y';
    }
    if (names != answer.names)
        stop_test("columns offered: " + names + " instead of " + answer.names);
    options = answer.options;
    return !answer.columns.empty();
}

std::string stored_records() {
    std::string records;
    for (char* record = goto_first_record(); *record != END_OF_RECORDS; record = goto_next_record(record))
        records += record + std::string("|");
    return records;
}
