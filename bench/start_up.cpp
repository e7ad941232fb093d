// Start-up of the program against that of Wine's notepad, by turns in one run: from the creation of the
// process until its window is shown and waits for the operator. Wanted: at most one and a half times as long.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace {

constexpr int ROUNDS = 21;      // an odd number has a median
constexpr DWORD LIMIT = 30'000; // milliseconds, for one start
constexpr double MOST_TIMES = 1.5;

BOOL CALLBACK find_shown_window(HWND window, LPARAM process) {
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    return owner != static_cast<DWORD>(process) || !IsWindowVisible(window);
}

// Returns the seconds that one start took, below 0 when no window came up. The process is ended.
double start_once(const std::string& program) {
    std::string command = program; // which is written to
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    const auto begin = std::chrono::steady_clock::now();
    if (!CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process))
        return -1;
    bool up = WaitForInputIdle(process.hProcess, LIMIT) == 0;
    while (up && EnumWindows(find_shown_window, static_cast<LPARAM>(process.dwProcessId))) {
        up = WaitForSingleObject(process.hProcess, 1) == WAIT_TIMEOUT &&
             std::chrono::steady_clock::now() - begin < std::chrono::milliseconds(LIMIT);
    }
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - begin;
    TerminateProcess(process.hProcess, 0);
    WaitForSingleObject(process.hProcess, LIMIT);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return up ? passed.count() : -1;
}

double median(std::vector<double>& seconds) {
    const auto middle = seconds.begin() + ROUNDS / 2;
    std::nth_element(seconds.begin(), middle, seconds.end());
    return *middle;
}

} // namespace

int main(int, char** arguments) {
    const std::string program =
        '"' + (std::filesystem::path(arguments[0]).parent_path() / "TolvanP.exe").string() + '"';
    const std::string notepad = "notepad.exe";
    start_once(program); // the files of both are in memory from here on
    start_once(notepad);
    std::vector<double> of_program;
    std::vector<double> of_notepad;
    for (int round = 0; round < ROUNDS; ++round) {
        of_program.push_back(start_once(program));
        of_notepad.push_back(start_once(notepad));
        if (of_program.back() < 0 || of_notepad.back() < 0) {
            std::printf("a window did not come up\n");
            return 1;
        }
    }
    const double ratio = median(of_program) / median(of_notepad);
    const bool fast = ratio <= MOST_TIMES;
    std::printf("start-up, median of %d: TolvanP %.0f ms, notepad %.0f ms\n", ROUNDS,
                1000 * median(of_program), 1000 * median(of_notepad));
    std::printf("TolvanP takes %.2f times as long as notepad (at most %.1f wanted): %s\n", ratio, MOST_TIMES,
                fast ? "good" : "TOO SLOW");
    return fast ? 0 : 1;
}
