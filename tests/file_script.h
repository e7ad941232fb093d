// The answers that tests give to what the logic of files asks the operator in dialogs of its own. A question
// is announced like a message box: it has its place between them, and what is offered is compared.
#pragma once

#include "files/FILEGEN_import.h"

#include <string>

void expect_lookup_format(int answer);

// Which columns to take, one letter a column ('y' or 'n'); an empty text cancels. Behind each
// name offered is a bar, and padding left out.
void expect_import_choice(const std::string& names, const std::string& columns,
                          const IMPORT_OPTIONS& options = {});

// Behind each row offered is a bar; where the text is empty, any rows will do. `answer` is the row chosen, -1
// for Cancel.
void expect_library_member(const std::string& rows, int answer);

// The records that are stored, each with a bar behind it.
std::string stored_records();
