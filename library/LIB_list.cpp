// The librarian's list: the files that a library is made of.
#include "library/LIB.h"

#include "app/desktop.h"
#include "app/files.h"
#include "app/paths.h"

#include <algorithm>
#include <exception>
#include <new>
#include <optional>
#include <utility>

LIBRARIAN librarian;

namespace {

std::string upper_case(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return static_cast<char>(fold_type(static_cast<std::uint8_t>(c))); });
    return text;
}

// Windows opens a device by these names in every folder and with any extension.
bool is_device_name(const std::string& file_name) {
    std::string base = upper_case(file_name.substr(0, file_name.find('.')));
    base.erase(base.find_last_not_of(' ') + 1);
    static constexpr std::string_view DEVICES[] = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$", "CLOCK$"};
    if (std::find(std::begin(DEVICES), std::end(DEVICES), base) != std::end(DEVICES))
        return true;
    // The ports count from 1 to 9, the raised digits among them.
    const std::string_view port = std::string_view(base).substr(0, 3);
    return base.size() == 4 && (port == "COM" || port == "LPT") &&
           std::string_view("0123456789\xB9\xB2\xB3").find(base.back()) != std::string_view::npos;
}

// A name comes out of the library's bytes: it must not lead out of the folder it is looked up in.
bool is_plain_file_name(const std::string& name) {
    return std::none_of(name.begin(), name.end(),
                        [](char c) {
                            return (c >= '\0' && c < ' ') ||
                                   std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos;
                        }) &&
           !is_device_name(name);
}

// The name of the file that a member was made from, as far as the library tells it.
std::string derived_name(const LIBRARY_MEMBER& member, const std::string& library) {
    switch (member.type) {
    case 'I':
        return member.name + ".PGT";
    case 'R':
        return member.name + ".LKT";
    default:
        return path_base_name(library) + ".CFT";
    }
}

std::vector<std::string> found_files(const std::vector<LIBRARY_MEMBER>& members, const std::string& library) {
    std::vector<std::string> files;
    for (const LIBRARY_MEMBER& member : members) {
        const std::string name = derived_name(member, library);
        if (!is_plain_file_name(name))
            continue;
        for (const std::string& path : {name, path_folder(library) + name}) {
            if (open_file(path, "rb")) {
                files.push_back(path);
                break;
            }
        }
    }
    return files;
}

bool take_library(const std::string& filename) {
    const FILE_HANDLE file = open_file(filename, "rb");
    std::vector<LIBRARY_MEMBER> members;
    const bool is_library = file && read_library_members(file.get(), false, members);
    LIBRARIAN taken;
    taken.files = found_files(members, filename);
    taken.changed = !is_library && librarian.changed;
    taken.file_name = is_library ? filename : librarian.file_name;
    librarian = std::move(taken);
    return is_library;
}

int refuse_listed_file(WINDOW owner, const std::string& text, const char* caption) {
    show_message(owner, text, caption, MESSAGE_ICON::WARNING);
    return 0;
}

// A path whose writing does not count; without a folder it may lie in any.
std::string comparable_path(std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    return upper_case(std::move(path));
}

bool may_be_same_file(const std::string& one, const std::string& other) {
    const std::string a = comparable_path(one);
    const std::string b = comparable_path(other);
    return a == b ||
           (path_file_title(a) == path_file_title(b) && (path_folder(a).empty() || path_folder(b).empty()));
}

// The bytes of a listed file up to the NULs that a transfer left behind it: in a library they would hide
// every file after them.
std::optional<std::string> read_without_padding(std::FILE* file) {
    const FILE_START start = read_file_start(file);
    auto bytes = read_whole_file(file);
    const std::int64_t size = size_by_length(start.length, start.type);
    if (bytes && size < static_cast<std::int64_t>(bytes->size()) &&
        bytes->find_first_not_of('\0', static_cast<std::size_t>(size)) == std::string::npos)
        bytes->resize(static_cast<std::size_t>(size));
    return bytes;
}

// Result as of save_library_file, for a list of files that fit into memory.
int write_library(const std::string& filename) {
    const auto& files = librarian.files;
    if (std::any_of(files.begin(), files.end(),
                    [&](const std::string& name) { return may_be_same_file(name, filename); }))
        return 0;
    std::string library;
    for (const std::string& name : files) {
        const FILE_HANDLE file = open_file(name, "rb");
        if (!file) { // the library ends here, and the operator is told
            save_whole_file(filename, library);
            return 0;
        }
        const auto bytes = read_without_padding(file.get());
        if (!bytes)
            return 0;
        library += *bytes;
    }
    return save_whole_file(filename, library) ? 1 : 0;
}

} // namespace

void library_list_add(WINDOW hDlg, const std::string& name) {
    librarian.selected_row = librarian.files.size();
    library_list_insert(hDlg, name);
}

void library_list_insert(WINDOW hDlg, const std::string& name) {
    const std::size_t row = std::min(librarian.selected_row, librarian.files.size());
    librarian.files.insert(librarian.files.begin() + static_cast<std::ptrdiff_t>(row), name);
    librarian.changed = true;
    show_library_list(hDlg);
}

void library_list_delete(WINDOW hDlg) {
    if (librarian.selected_row >= librarian.files.size())
        return;
    librarian.files.erase(librarian.files.begin() + static_cast<std::ptrdiff_t>(librarian.selected_row));
    if (librarian.selected_row == librarian.files.size() && librarian.selected_row > 0)
        --librarian.selected_row;
    librarian.changed = true;
    show_library_list(hDlg);
}

int open_library_file(WINDOW hDlg, const std::string& filename) {
    bool is_library = false;
    try {
        is_library = take_library(filename);
    } catch (const std::bad_alloc&) {
        return report_out_of_memory(hDlg);
    }
    show_library_list(hDlg);
    return is_library ? 1 : 0;
}

int valid_sys_files(WINDOW hDlg) {
    for (const std::string& name : librarian.files) {
        const FILE_HANDLE file = open_file(name, "rb");
        if (!file)
            return refuse_listed_file(hDlg, "The file " + name + " not found. Could not add to Library!",
                                      "File Not Found");
        if (!is_library_member_type(read_file_start(file.get()).type))
            return refuse_listed_file(hDlg, "The file " + name + " is not a Valid System File!",
                                      "Invalid System File");
    }
    return 1;
}

int save_library_file(WINDOW hDlg, const std::string& filename) {
    try {
        return write_library(filename);
    } catch (const std::exception&) { // more than memory or any string can hold
        return report_out_of_memory(hDlg);
    }
}
