#include "app/help.h"

#include "app/TolvanP.h"
#include "app/desktop.h"
#include "app/paths.h"

#include <shellapi.h>

#include <string>

namespace {

// Both in the program's own folder.
constexpr char HELP_FILE[] = "help\\helpfile.hlp";
constexpr char HELP_PAGES[] = "help\\index.html";

constexpr int FIRST_WITHOUT_VIEWER = 6; // major version of Windows

constexpr INT_PTR LAST_SHELL_ERROR = 32; // what the shell's procedures return above it is success

// File dialogs move the current folder, so the manual is looked for where the program stands.
std::string program_folder() {
    std::string path(MAX_PATH, '\0');
    path.resize(GetModuleFileNameA(nullptr, path.data(), MAX_PATH));
    return path_folder(path);
}

bool is_there(const std::string& path) {
    return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// Windows lost its help viewer with Vista; what runs under its name since then only shows a page of the web.
// Wine has a viewer, whatever Windows it plays. Without a list of supported versions in the manifest newer
// ones tell an older number, but none below that of Vista.
bool has_help_viewer() {
    return LOBYTE(LOWORD(GetVersion())) < FIRST_WITHOUT_VIEWER ||
           GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
}

// The viewer waits in a box of its own for a file that is missing, so it is not asked for one.
bool show_in_viewer(HWND hwnd, const std::string& file) {
    return has_help_viewer() && is_there(file) && WinHelpA(hwnd, file.c_str(), HELP_FINDER, 0) != FALSE;
}

bool show_in_browser(HWND hwnd, const std::string& page) {
    return is_there(page) &&
           reinterpret_cast<INT_PTR>(
               ShellExecuteA(hwnd, "open", page.c_str(), nullptr, nullptr, SW_SHOWNORMAL)) > LAST_SHELL_ERROR;
}

} // namespace

void show_help(HWND hwnd) {
    const std::string folder = program_folder();
    if (!show_in_viewer(hwnd, folder + HELP_FILE) && !show_in_browser(hwnd, folder + HELP_PAGES))
        show_message(hwnd, "The help cannot be shown. Its files belong here:\n" + folder + HELP_PAGES,
                     PROGRAM_TITLE, MESSAGE_ICON::INFORMATION);
}
