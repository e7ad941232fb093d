// Starts the program named by the arguments with bridge.dll, which lies beside this one, inside it. Standard
// input and output go to the program; its exit code is the answer.
#include <windows.h>

#include <string>

namespace {

// The command line behind the first argument, which is this program's own name.
std::string rest_of(const std::string& command_line) {
    const std::size_t end =
        command_line.front() == '"' ? command_line.find('"', 1) + 1 : command_line.find(' ');
    return command_line.substr(command_line.find_first_not_of(' ', end));
}

std::string bridge_path() {
    char path[MAX_PATH];
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    const std::string own = path;
    return own.substr(0, own.rfind('\\') + 1) + "bridge.dll";
}

// LoadLibraryA is called there as a thread, as both take one pointer. System libraries have one address in
// all processes, so the procedure's here is its address there.
void load_bridge(HANDLE process) {
    const std::string path = bridge_path();
    void* there = VirtualAllocEx(process, nullptr, path.size() + 1, MEM_COMMIT, PAGE_READWRITE);
    WriteProcessMemory(process, there, path.c_str(), path.size() + 1, nullptr);
    const auto load_library = reinterpret_cast<LPTHREAD_START_ROUTINE>(reinterpret_cast<void*>(LoadLibraryA));
    CloseHandle(CreateRemoteThread(process, nullptr, 0, load_library, there, 0, nullptr));
}

} // namespace

int main() {
    std::string command_line = rest_of(GetCommandLineA());
    STARTUPINFOA start_up{};
    start_up.cb = sizeof start_up;
    start_up.dwFlags = STARTF_USESTDHANDLES;
    start_up.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    start_up.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    PROCESS_INFORMATION started{};
    if (!CreateProcessA(nullptr, command_line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start_up,
                        &started))
        return -1;
    WaitForInputIdle(started.hProcess, INFINITE); // a process that is being set up takes no library
    load_bridge(started.hProcess);
    DWORD exit_code = 0;
    WaitForSingleObject(started.hProcess, INFINITE);
    GetExitCodeProcess(started.hProcess, &exit_code);
    return static_cast<int>(exit_code);
}
