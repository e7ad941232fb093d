// The answers that tests give to what file logic asks the operator in dialogs of its own. A question that was
// not announced aborts the test.
#pragma once

#include "files/FILEGEN_import.h"

#include <string>

void expect_lookup_format(int answer);

// Which columns to take, one letter a column ('y' or 'n'); an empty text cancels. The names offered are
// compared with `names`, parted by '|', padding left out.
void expect_import_choice(const std::string& names, const std::string& columns,
                          const IMPORT_OPTIONS& options = {});

// True when all announced questions were asked.
bool filegen_questions_asked();

// The records that are stored, each with a bar behind it.
std::string stored_records();
