#include "app/file_dialog.h"

#include "app/desktop.h"
#include "app/paths.h"

namespace {

constexpr std::size_t PATH_BUFFER = 1024; // bytes; the longest path that the file dialog can return

std::string filter_list(std::span<const FILE_FILTER> filters) {
    std::string list;
    for (const FILE_FILTER& filter : filters)
        list.append(filter.label).append(1, '\0').append(filter.pattern).append(1, '\0');
    return list; // its own NUL is the second one that ends the list
}

std::string current_folder() {
    std::string folder(GetCurrentDirectoryA(0, nullptr), '\0'); // room for its NUL is counted
    folder.resize(GetCurrentDirectoryA(static_cast<DWORD>(folder.size()), folder.data()));
    return folder;
}

// Shows one of the two system dialogs once.
bool run_file_dialog(FILE_DIALOG& dialog, BOOL(WINAPI* system_dialog)(OPENFILENAMEA*), DWORD flags) {
    const std::string filters = filter_list(dialog.filters);
    std::string path = dialog.name.size() < PATH_BUFFER ? dialog.name : "";
    path.resize(PATH_BUFFER);

    OPENFILENAMEA request{};
    request.lStructSize = sizeof request;
    request.hwndOwner = dialog.owner;
    request.lpstrFilter = filters.c_str();
    request.nFilterIndex = dialog.filter_index;
    request.lpstrFile = path.data();
    request.nMaxFile = PATH_BUFFER;
    request.lpstrInitialDir = dialog.directory != nullptr ? dialog.directory->c_str() : nullptr;
    request.lpstrTitle = dialog.title;
    request.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | flags;
    const std::string folder = current_folder();
    bool chosen = system_dialog(&request) != FALSE;
    if (!chosen && CommDlgExtendedError() == FNERR_INVALIDFILENAME) {
        path.assign(PATH_BUFFER, '\0'); // the proposed name cannot be a file's: ask without it
        chosen = system_dialog(&request) != FALSE;
    }
    if (!chosen || dialog.keeps_current_folder)
        SetCurrentDirectoryA(folder.c_str());
    if (!chosen)
        return false;

    dialog.name = path.substr(0, path.find('\0'));
    dialog.filter_index = request.nFilterIndex;
    if (dialog.directory != nullptr)
        *dialog.directory = dialog.name.substr(0, request.nFileOffset);
    return true;
}

bool may_replace(HWND owner, const std::string& path) {
    if (GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES)
        return true;
    return show_message(owner, path + " already exists.\nDo you want to replace it?", PROGRAM_TITLE,
                        MESSAGE_ICON::WARNING, MESSAGE_BUTTONS::YES_NO) == BUTTON::YES;
}

} // namespace

bool ask_open_name(FILE_DIALOG& dialog) {
    return run_file_dialog(dialog, GetOpenFileNameA, dialog.file_must_exist ? OFN_FILEMUSTEXIST : 0);
}

bool ask_save_name(FILE_DIALOG& dialog, const std::string& default_extension) {
    return ask_save_name(dialog, [&](const FILE_DIALOG& chosen) {
        return with_default_extension(chosen.name, default_extension);
    });
}

bool ask_save_name(FILE_DIALOG& dialog,
                   const std::function<std::string(const FILE_DIALOG& chosen)>& completed_name) {
    while (run_file_dialog(dialog, GetSaveFileNameA, dialog.asks_to_replace ? OFN_OVERWRITEPROMPT : 0)) {
        const std::string path = completed_name(dialog);
        // The system has asked about the name as it was chosen, not about the one made of it.
        const bool asked = !dialog.asks_to_replace || path == dialog.name;
        if (asked || may_replace(dialog.owner, path)) {
            dialog.name = path;
            return true;
        }
    }
    return false;
}
