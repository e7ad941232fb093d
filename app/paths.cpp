#include "app/paths.h"

namespace {

std::size_t title_start(std::string_view path) {
    return path.find_last_of("\\/:") + 1; // npos + 1 is 0: no separator, all of it is the title
}

// Where the extension starts, or the path's end.
std::size_t extension_start(std::string_view path) {
    const std::size_t dot = path.rfind('.');
    return dot == std::string_view::npos || dot < title_start(path) ? path.size() : dot;
}

} // namespace

std::string path_folder(std::string_view path) {
    return std::string(path.substr(0, title_start(path)));
}

std::string path_file_title(std::string_view path) {
    return std::string(path.substr(title_start(path)));
}

std::string path_base_name(std::string_view path) {
    return path_file_title(path.substr(0, extension_start(path)));
}

std::string path_extension(std::string_view path) {
    return std::string(path.substr(extension_start(path)));
}

std::string replace_extension(std::string_view path, std::string_view extension) {
    return std::string(path.substr(0, extension_start(path))).append(extension);
}

std::string with_default_extension(std::string_view path, std::string_view extension) {
    std::string name(path);
    return path.find('.') == std::string_view::npos ? name.append(extension) : name;
}
