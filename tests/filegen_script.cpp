#include "tests/filegen_script.h"

#include "files/FILEGEN.h"
#include "files/MEMORY.h"

#include <cstdio>
#include <cstdlib>
#include <deque>

namespace {

struct IMPORT_ANSWER {
    std::string names, columns;
    IMPORT_OPTIONS options;
};
std::deque<int> formats;
std::deque<IMPORT_ANSWER> imports;

template <typename ANSWER>
ANSWER next_answer(std::deque<ANSWER>& answers, const char* question) {
    if (answers.empty()) {
        std::fprintf(stderr, "a question that was not announced: %s\n", question);
        std::abort();
    }
    const ANSWER answer = answers.front();
    answers.pop_front();
    return answer;
}

std::string without_padding(const std::string& name) {
    return name.substr(0, name.find_last_not_of(' ') + 1);
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
    return next_answer(formats, "lookup format");
}

bool choose_import_fields(WINDOW, std::vector<FIELD_DESCRIPTOR>& fields, IMPORT_OPTIONS& options) {
    const IMPORT_ANSWER answer = next_answer(imports, "import fields");
    std::string names;
    for (const FIELD_DESCRIPTOR& field : fields)
        names += (names.empty() ? "" : "|") + without_padding(field.field_name);
    if (names != answer.names) {
        std::fprintf(stderr, "columns offered: %s instead of %s\n", names.c_str(), answer.names.c_str());
        std::abort();
    }
    for (std::size_t i = 0; i < answer.columns.size(); ++i)
        fields[i].import_field = answer.columns[i] == 'y';
    options = answer.options;
    return !answer.columns.empty();
}

std::string stored_records() {
    std::string records;
    for (char* record = goto_first_record(); *record != END_OF_RECORDS; record = goto_next_record(record))
        records += record + std::string("|");
    return records;
}
