// The librarian's list: the files that a library is made of.
#include "library/LIB.h"

LIBRARIAN librarian;

void library_list_add(WINDOW, const std::string&) {}

void library_list_insert(WINDOW, const std::string&) {}

void library_list_delete(WINDOW) {}

int open_library_file(WINDOW, const std::string&) {
    return 0;
}

int valid_sys_files(WINDOW) {
    return 0;
}

int save_library_file(WINDOW, const std::string&) {
    return 0;
}
