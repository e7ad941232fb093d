#include "convert/CONVERT.h"

#include "app/desktop.h"

bool quendal_file_refused = false;

namespace {

int refuse_quendal_file() {
    show_message(nullptr,
                 "This is no Tolvan file, or a damaged one.\n"
                 "A file of the Quendal terminal cannot be converted by this version:\n"
                 "key its contents in anew, or ask for a Tolvan file.",
                 "Open File", MESSAGE_ICON::WARNING);
    quendal_file_refused = true;
    return 0;
}

} // namespace

int open_quendal_program_file(const std::string&) {
    return refuse_quendal_file();
}

int open_quendal_setup_file(const std::string&) {
    return refuse_quendal_file();
}

std::int64_t read_quendal_lookup_sys_file(const std::string&) {
    return refuse_quendal_file();
}
