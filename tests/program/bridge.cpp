// Inside the running program, calls Windows as a test says. A line of standard input names a procedure and
// its arguments: numbers, and behind a '=' buffers in hexadecimal. The answer is a line too: the result as a
// 32-bit number, then each buffer as the call left it. The end of the input ends the program.
#include <windows.h>

#include <array>
#include <deque>
#include <iostream>
#include <sstream>
#include <string>

namespace {

constexpr DWORD SETTLE_LIMIT = 15000; // milliseconds; longer than the program ever leaves its messages alone
constexpr std::size_t ARGUMENT_LIMIT = 12;

const UINT marker = RegisterWindowMessageA("Tolvan test step");
const HANDLE settled = CreateEventA(nullptr, FALSE, FALSE, nullptr);

LRESULT CALLBACK see_marker(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HC_ACTION && reinterpret_cast<const MSG*>(lParam)->message == marker)
        SetEvent(settled);
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

// Waits until a thread has taken every message posted to it so far, and what those posted; 0 in vain.
ULONG_PTR settle(ULONG_PTR thread) {
    static HHOOK hook = SetWindowsHookExA(WH_GETMESSAGE, see_marker, nullptr, static_cast<DWORD>(thread));
    bool taken = hook != nullptr;
    for (int i = 0; i < 2 && taken; ++i) {
        ResetEvent(settled);
        PostThreadMessageA(static_cast<DWORD>(thread), marker, 0, 0);
        taken = WaitForSingleObject(settled, SETTLE_LIMIT) == WAIT_OBJECT_0;
    }
    return taken ? 1 : 0;
}

void* procedure_of(const std::string& name) {
    if (name == "settle")
        return reinterpret_cast<void*>(settle);
    for (const char* library : {"user32", "gdi32", "kernel32"})
        if (const auto procedure = GetProcAddress(GetModuleHandleA(library), name.c_str()))
            return reinterpret_cast<void*>(procedure);
    return nullptr;
}

std::string bytes_of(const std::string& digits) {
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2)
        bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    return bytes;
}

std::string hexadecimal(const std::string& bytes) {
    std::string digits;
    for (const char c : bytes)
        for (const int shift : {4, 0})
            digits += "0123456789abcdef"[static_cast<unsigned char>(c) >> shift & 15];
    return digits;
}

std::string call(const std::string& line) {
    std::istringstream words(line);
    std::string name, word;
    words >> name;
    std::deque<std::string> buffers;
    std::array<ULONG_PTR, ARGUMENT_LIMIT> a{};
    for (std::size_t i = 0; words >> word; ++i) {
        if (word.front() == '=')
            a.at(i) = reinterpret_cast<ULONG_PTR>(buffers.emplace_back(bytes_of(word.substr(1))).data());
        else
            a.at(i) = static_cast<ULONG_PTR>(std::stoll(word));
    }
    using PROCEDURE = ULONG_PTR(WINAPI*)(ULONG_PTR, ULONG_PTR, ULONG_PTR, ULONG_PTR, ULONG_PTR, ULONG_PTR,
                                         ULONG_PTR, ULONG_PTR, ULONG_PTR, ULONG_PTR, ULONG_PTR, ULONG_PTR);
    const auto procedure = reinterpret_cast<PROCEDURE>(procedure_of(name)); // each takes as many as it has
    std::string answer = std::to_string(static_cast<int>(
        procedure(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7], a[8], a[9], a[10], a[11])));
    for (const std::string& buffer : buffers)
        answer += " =" + hexadecimal(buffer);
    return answer;
}

DWORD WINAPI serve(void*) {
    for (std::string line; std::getline(std::cin, line);)
        std::cout << call(line) << std::endl;
    TerminateProcess(GetCurrentProcess(), 1);
    return 0;
}

} // namespace

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH)
        CloseHandle(CreateThread(nullptr, 0, serve, nullptr, 0, nullptr));
    return TRUE;
}
