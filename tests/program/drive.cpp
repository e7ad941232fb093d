// Drives the running program from another process. Each line of standard input is a command with its
// arguments, each of them a stop and its bytes in hexadecimal, and is answered by one line of JSON. Windows
// are named by their handles in decimal; a text is a string of bytes, one character each.
#include <windows.h>

#include <functional>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

// Longer than the program is ever busy without looking at its messages (a modem's pause of 5 seconds).
constexpr UINT ANSWER_LIMIT = 15000; // milliseconds
constexpr int TEXT_LIMIT = 65536;    // bytes
constexpr int CLASS_LIMIT = 256;     // bytes
constexpr int CAPTION_LIMIT = 1024;  // bytes

using ARGUMENTS = std::vector<std::string>;

std::string quoted(const std::string& text) {
    static constexpr char DIGITS[] = "0123456789abcdef";
    std::string json = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= ' ' && byte < 0x7F && c != '"' && c != '\\')
            json += c;
        else
            json += std::string("\\u00") + DIGITS[byte >> 4] + DIGITS[byte & 15];
    }
    return json + "\"";
}

std::string boolean(bool value) {
    return value ? "true" : "false";
}

ARGUMENTS split(const std::string& line) {
    ARGUMENTS arguments;
    std::istringstream words(line);
    for (std::string word; words >> word;) {
        arguments.emplace_back();
        for (std::size_t i = 1; i < word.size(); i += 2)
            arguments.back() += static_cast<char>(std::stoi(word.substr(i, 2), nullptr, 16));
    }
    return arguments;
}

HWND window_of(const std::string& handle) {
    return reinterpret_cast<HWND>(std::stoull(handle));
}

std::string number_of(HWND window) {
    return std::to_string(reinterpret_cast<ULONG_PTR>(window));
}

DWORD_PTR ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    DWORD_PTR answer = 0;
    SendMessageTimeoutA(window, message, wParam, lParam, SMTO_NORMAL, ANSWER_LIMIT, &answer);
    return answer;
}

std::string text_of(HWND window) {
    std::string text(TEXT_LIMIT, '\0');
    text.resize(ask(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data())));
    return text;
}

std::string class_of(HWND window) {
    char name[CLASS_LIMIT] = "";
    GetClassNameA(window, name, CLASS_LIMIT);
    return name;
}

// What the system keeps of a text, without asking a program that may be busy or about to close the window.
std::string caption_of(HWND window) {
    char caption[CAPTION_LIMIT] = "";
    GetWindowTextA(window, caption, CAPTION_LIMIT);
    return caption;
}

bool keeps_caption(HWND window) {
    const std::string name = class_of(window);
    const bool top_level = (GetWindowLongA(window, GWL_STYLE) & WS_CHILD) == 0;
    return top_level || name == "Static" || name == "Button";
}

std::string description(HWND window) {
    RECT rect{};
    GetWindowRect(window, &rect);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return "{\"handle\":" + number_of(window) + ",\"class\":" + quoted(class_of(window)) +
           ",\"text\":" + quoted(keeps_caption(window) ? caption_of(window) : text_of(window)) +
           ",\"enabled\":" + boolean(IsWindowEnabled(window)) +
           ",\"minimised\":" + boolean(IsIconic(window)) + ",\"process\":" + std::to_string(process) +
           ",\"rect\":[" + std::to_string(rect.left) + "," + std::to_string(rect.top) + "," +
           std::to_string(rect.right) + "," + std::to_string(rect.bottom) + "]}";
}

// Appends to the list that `list` points to.
BOOL CALLBACK add_top_level(HWND window, LPARAM list) {
    if (IsWindowVisible(window))
        reinterpret_cast<std::vector<std::string>*>(list)->push_back(description(window));
    return TRUE;
}

BOOL CALLBACK add_child(HWND window, LPARAM list) {
    reinterpret_cast<std::vector<std::string>*>(list)->push_back(description(window));
    return TRUE;
}

std::string joined(const std::vector<std::string>& parts) {
    std::string json;
    for (const std::string& part : parts)
        json += (json.empty() ? "" : ",") + part;
    return "[" + json + "]";
}

std::string top_level_windows(const ARGUMENTS&) {
    std::vector<std::string> list;
    EnumWindows(add_top_level, reinterpret_cast<LPARAM>(&list));
    return joined(list);
}

std::string children(const ARGUMENTS& arguments) {
    std::vector<std::string> list;
    EnumChildWindows(window_of(arguments.at(1)), add_child, reinterpret_cast<LPARAM>(&list));
    return joined(list);
}

// A caption by its words alone.
std::string plain(std::string caption) {
    std::erase_if(caption, [](char c) { return c == '&' || c == ':'; });
    return caption;
}

// The visible label or button with a caption and the two controls behind it; 0 where there is none.
std::string find_caption(const ARGUMENTS& arguments) {
    std::vector<HWND> found;
    for (HWND window = GetWindow(window_of(arguments.at(1)), GW_CHILD); window != nullptr && found.size() < 3;
         window = GetWindow(window, GW_HWNDNEXT)) {
        if (!IsWindowVisible(window))
            continue;
        if (!found.empty() || (keeps_caption(window) && plain(caption_of(window)) == plain(arguments.at(2))))
            found.push_back(window);
    }
    found.resize(3);
    return "[" + number_of(found[0]) + "," + number_of(found[1]) + "," + number_of(found[2]) + "]";
}

std::string describe(const ARGUMENTS& arguments) {
    const HWND window = window_of(arguments.at(1));
    return IsWindow(window) ? description(window) : "null";
}

std::string child_handle(const ARGUMENTS& arguments) {
    return number_of(GetDlgItem(window_of(arguments.at(1)), std::stoi(arguments.at(2))));
}

std::string set_text(const ARGUMENTS& arguments) {
    ask(window_of(arguments.at(1)), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(arguments.at(2).c_str()));
    return "null";
}

// Gives a message, with its window, number and parameters, to a procedure that takes such.
template <typename PROCEDURE>
auto pass_message(const ARGUMENTS& arguments, PROCEDURE procedure) {
    return procedure(window_of(arguments.at(1)), static_cast<UINT>(std::stoul(arguments.at(2))),
                     static_cast<WPARAM>(std::stoll(arguments.at(3))),
                     static_cast<LPARAM>(std::stoll(arguments.at(4))));
}

std::string post(const ARGUMENTS& arguments) {
    return boolean(pass_message(arguments, PostMessageA));
}

std::string send(const ARGUMENTS& arguments) {
    return std::to_string(static_cast<LONG_PTR>(pass_message(arguments, ask)));
}

// Sends without waiting for the answer, so that what the message opens may stay open. Messages sent later are
// taken later.
std::string tell(const ARGUMENTS& arguments) {
    return boolean(pass_message(arguments, SendNotifyMessageA));
}

// A character may bring up a box, which takes messages too: the WM_NULL is answered behind the last
// character.
std::string type(const ARGUMENTS& arguments) {
    HWND window = window_of(arguments.at(1));
    for (const char c : arguments.at(2))
        SendNotifyMessageA(window, WM_CHAR, static_cast<unsigned char>(c), 1);
    ask(window, WM_NULL, 0, 0);
    return "null";
}

// The entries of a list or combo box. Only the wide messages are carried over to another process.
std::string entries(const ARGUMENTS& arguments) {
    const HWND window = window_of(arguments.at(1));
    const bool combo = class_of(window) == "ComboBox";
    std::vector<std::string> list;
    const auto count = static_cast<int>(ask(window, combo ? CB_GETCOUNT : LB_GETCOUNT, 0, 0));
    for (int i = 0; i < count; ++i) {
        wchar_t wide[1024] = L"";
        char text[1024] = "";
        SendMessageW(window, combo ? CB_GETLBTEXT : LB_GETTEXT, static_cast<WPARAM>(i),
                     reinterpret_cast<LPARAM>(wide));
        WideCharToMultiByte(CP_ACP, 0, wide, -1, text, sizeof text, nullptr, nullptr);
        list.push_back(quoted(text));
    }
    return joined(list);
}

// The window that has the keyboard in the thread of the given one.
std::string focus(const ARGUMENTS& arguments) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(window_of(arguments.at(1)), nullptr), &info);
    return number_of(info.hwndFocus);
}

std::string foreground(const ARGUMENTS&) {
    return number_of(GetForegroundWindow());
}

const std::map<std::string, std::function<std::string(const ARGUMENTS&)>> COMMANDS = {
    {"windows", top_level_windows},
    {"children", children},
    {"find", find_caption},
    {"describe", describe},
    {"child", child_handle},
    {"set_text", set_text},
    {"post", post},
    {"send", send},
    {"tell", tell},
    {"type", type},
    {"entries", entries},
    {"focus", focus},
    {"foreground", foreground},
};

} // namespace

int main() {
    std::string line;
    while (std::getline(std::cin, line)) {
        const ARGUMENTS arguments = split(line);
        std::cout << COMMANDS.at(arguments.front())(arguments) << std::endl;
    }
    return 0;
}
