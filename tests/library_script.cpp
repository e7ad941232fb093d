#include "tests/library_script.h"

#include "library/LIB.h"
#include "tests/desktop_script.h"

#include <optional>

namespace {

std::optional<std::vector<std::string>> announced_rows;
int announced_answer;

} // namespace

void expect_library_member(const std::vector<std::string>& rows, int answer) {
    announced_rows = rows;
    announced_answer = answer;
}

bool library_questions_asked() {
    return !announced_rows;
}

int choose_library_member(WINDOW, const std::vector<std::string>& rows) {
    if (!announced_rows || (!announced_rows->empty() && *announced_rows != rows))
        stop_test("other members offered than announced, the first of them " + rows.at(0));
    announced_rows.reset();
    return announced_answer;
}

void show_library_list(WINDOW) {}
