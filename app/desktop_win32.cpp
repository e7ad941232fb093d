#include "app/desktop.h"

#include "app/ini_file.h"

#include <windows.h>

#include <mmsystem.h>

namespace {

UINT icon_style(MESSAGE_ICON icon) {
    switch (icon) {
    case MESSAGE_ICON::STOP:
        return MB_ICONSTOP;
    case MESSAGE_ICON::WARNING:
        return MB_ICONWARNING;
    case MESSAGE_ICON::QUESTION:
        return MB_ICONQUESTION;
    case MESSAGE_ICON::INFORMATION:
        return MB_ICONINFORMATION;
    case MESSAGE_ICON::NONE:
        break;
    }
    return 0;
}

UINT buttons_style(MESSAGE_BUTTONS buttons) {
    switch (buttons) {
    case MESSAGE_BUTTONS::YES_NO:
        return MB_YESNO;
    case MESSAGE_BUTTONS::YES_NO_CANCEL:
        return MB_YESNOCANCEL;
    case MESSAGE_BUTTONS::OK:
        break;
    }
    return MB_OK;
}

} // namespace

BUTTON show_message(WINDOW owner, const std::string& text, const std::string& caption, MESSAGE_ICON icon,
                    MESSAGE_BUTTONS buttons) {
    // Without an owner nothing would keep the operator from working on behind the box.
    const UINT modality = owner == nullptr ? MB_TASKMODAL : MB_APPLMODAL;
    HWND active = GetActiveWindow();
    const int pressed = MessageBoxA(static_cast<HWND>(owner), text.c_str(), caption.c_str(),
                                    icon_style(icon) | buttons_style(buttons) | modality);
    if (GetActiveWindow() == nullptr) // a box without an owner may give the keyboard back to nobody
        SetActiveWindow(active);
    switch (pressed) {
    case IDYES:
        return BUTTON::YES;
    case IDNO:
        return BUTTON::NO;
    case IDOK:
        return BUTTON::OK;
    default:
        return BUTTON::CANCEL;
    }
}

void beep() {
    MessageBeep(MB_OK);
}

std::uint32_t read_setting_number(const char* section, const char* key, std::uint32_t missing) {
    return GetPrivateProfileIntA(section, key, static_cast<INT>(missing), ini_file_name().c_str());
}

std::string read_setting_text(const char* section, const char* key, const std::string& missing,
                              std::size_t limit) {
    std::string text(limit + 1, '\0'); // and its NUL
    text.resize(GetPrivateProfileStringA(section, key, missing.c_str(), text.data(),
                                         static_cast<DWORD>(text.size()), ini_file_name().c_str()));
    return text;
}

void write_setting(const char* section, const char* key, const std::string& value) {
    WritePrivateProfileStringA(section, key, value.c_str(), ini_file_name().c_str());
}

std::uint32_t tick_count() {
    return GetTickCount();
}

void rest() {
    // The system's clock ticks every 16 ms unless somebody asks for more: too slow a beat between two bytes.
    [[maybe_unused]] static const MMRESULT finer_clock = timeBeginPeriod(1);
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 1, QS_ALLINPUT);
}

LOCAL_TIME local_time() {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return {
        .year = now.wYear, .month = now.wMonth, .day = now.wDay, .hour = now.wHour, .minute = now.wMinute};
}

std::string temporary_file_name() {
    char folder[MAX_PATH + 1];
    char name[MAX_PATH];
    const DWORD length = GetTempPathA(sizeof folder, folder);
    if (length == 0 || length >= sizeof folder || GetTempFileNameA(folder, "TLV", 0, name) == 0)
        return "";
    return name;
}

bool replace_file(const std::string& from, const std::string& to) {
    return MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}
