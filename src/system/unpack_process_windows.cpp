#ifdef _WIN32

#include "system/unpack_process.h"

#include <string_view>
#include <windows.h>

namespace morvane {

namespace {

std::wstring wide(const std::string& text) {
    const int size = static_cast<int>(text.size());
    std::wstring result(static_cast<std::size_t>(size), L'\0');
    result.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_UTF8, 0, text.data(), size, result.data(), size)));
    return result;
}

// A program takes its arguments apart again: quotes keep blanks together, and backslashes count
// double before a quote.
std::wstring quoted(const std::wstring& argument) {
    std::wstring result = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : argument) {
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        if (c == L'"') {
            result += L'\\';
        }
        result += c;
    }
    return result + std::wstring(backslashes, L'\\') + L"\"";
}

int wait_for(const PROCESS_INFORMATION& process) {
    constexpr DWORD two_minutes_ms = 120'000;
    DWORD status = 0;
    if (WaitForSingleObject(process.hProcess, two_minutes_ms) == WAIT_TIMEOUT) {
        TerminateProcess(process.hProcess, 1);
        return program_timed_out;
    }
    return GetExitCodeProcess(process.hProcess, &status) != 0 ? static_cast<int>(status)
                                                              : program_not_started;
}

} // namespace

int run_program(const std::vector<std::string>& command) {
    std::wstring line;
    for (const std::string& word : command) {
        line += (line.empty() ? L"" : L" ") + quoted(wide(word));
    }
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    if (CreateProcessW(wide(command[0]).c_str(), line.data(), nullptr, nullptr, FALSE,
                       CREATE_NO_WINDOW, nullptr, nullptr, &startup, &process) == 0) {
        return program_not_started;
    }
    const int result = wait_for(process);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return result;
}

} // namespace morvane

#endif
