#include "convert/CONVERT.h"

#include "app/desktop.h"

namespace {

int refuse_quendal_file() {
    show_message(nullptr,
                 "This version cannot read files of the Quendal terminal yet.\n"
                 "If the file is a Tolvan file, it is damaged.",
                 "Open File", MESSAGE_ICON::WARNING);
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
