#include "tests/library_script.h"

#include "library/LIB.h"
#include "tests/desktop_script.h"

#include <deque>

namespace {

struct CHOICE {
    std::vector<std::string> rows;
    int answer;
};
std::deque<CHOICE> choices;

} // namespace

void expect_library_member(const std::vector<std::string>& rows, int answer) {
    choices.push_back({rows, answer});
}

bool library_questions_asked() {
    return choices.empty();
}

int choose_library_member(WINDOW, const std::vector<std::string>& rows) {
    if (choices.empty() || (!choices.front().rows.empty() && choices.front().rows != rows))
        stop_test("other members offered than announced, the first of them " + rows.at(0));
    const int answer = choices.front().answer;
    choices.pop_front();
    return answer;
}

void show_library_list(WINDOW) {}
