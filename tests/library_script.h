// The answers that tests give when a library's member is to be chosen. A question that was not announced
// aborts the test.
#pragma once

#include <string>
#include <vector>

// The rows offered must be `rows`, any where there are none; `answer` is the row chosen, -1 for Cancel.
void expect_library_member(const std::vector<std::string>& rows, int answer);

// True when all announced questions were asked.
bool library_questions_asked();
