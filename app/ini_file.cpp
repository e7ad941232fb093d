#include "app/ini_file.h"

#include <windows.h>

#include <shlobj.h>

namespace {

constexpr char INI_NAME[] = "TolvanP.INI"; // without a folder it stands for the one in the Windows folder

constexpr DWORD SHARE_ALL = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

bool file_exists(const std::string& path) {
    return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::string find_ini_file() {
    char folder[MAX_PATH];
    if (GetWindowsDirectoryA(folder, MAX_PATH) == 0)
        return INI_NAME;
    const std::string in_windows = std::string(folder) + "\\" + INI_NAME;
    if (SHGetFolderPathA(nullptr, CSIDL_APPDATA | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT, folder) !=
        S_OK)
        return INI_NAME;
    const std::string in_application_data = std::string(folder) + "\\" + INI_NAME;

    switch (choose_ini_file(file_exists(in_application_data), can_write_file(in_windows),
                            file_exists(in_windows))) {
    case INI_CHOICE::WINDOWS:
        return INI_NAME;
    case INI_CHOICE::COPY_TO_APPLICATION_DATA:
        CopyFileA(in_windows.c_str(), in_application_data.c_str(), TRUE);
        SetFileAttributesA(in_application_data.c_str(),
                           FILE_ATTRIBUTE_NORMAL); // a copy is as read-only as its original
        break;
    case INI_CHOICE::APPLICATION_DATA:
        break;
    }
    return in_application_data;
}

} // namespace

INI_CHOICE choose_ini_file(bool in_application_data, bool windows_writable, bool in_windows) {
    if (in_application_data)
        return INI_CHOICE::APPLICATION_DATA;
    if (windows_writable)
        return INI_CHOICE::WINDOWS;
    return in_windows ? INI_CHOICE::COPY_TO_APPLICATION_DATA : INI_CHOICE::APPLICATION_DATA;
}

bool can_write_file(const std::string& path) {
    const bool exists = file_exists(path);
    HANDLE file =
        exists ? CreateFileA(path.c_str(), GENERIC_WRITE, SHARE_ALL, nullptr, OPEN_EXISTING, 0, nullptr)
               : CreateFileA(path.c_str(), GENERIC_WRITE | DELETE, SHARE_ALL, nullptr, CREATE_NEW,
                             FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    CloseHandle(file);
    return true;
}

const std::string& ini_file_name() {
    static const std::string name = find_ini_file();
    return name;
}
