#include "base/errors.h"
#include "base/wide_text.h"
#include "system/launch.h"
#include "system/windows_command_line.h"

#include <algorithm>
#include <array>
#include <windows.h>

namespace morvane {

namespace {

[[noreturn]] void fail(DWORD code, const std::string& path) {
    switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        throw RuntimeError(ErrorNumber::FileNotFound, path);
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
        throw RuntimeError(ErrorNumber::PermissionDenied, path);
    default:
        throw RuntimeError(ErrorNumber::PathFileAccess, path);
    }
}

class Handle {
  public:
    explicit Handle(HANDLE handle = INVALID_HANDLE_VALUE) : handle_(handle) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    Handle(Handle&& other) noexcept : handle_(other.handle_) {
        other.handle_ = INVALID_HANDLE_VALUE;
    }
    Handle& operator=(Handle&&) = delete;
    ~Handle() { close(); }
    void close() {
        if (handle_ != INVALID_HANDLE_VALUE) {
            CloseHandle(handle_);
            handle_ = INVALID_HANDLE_VALUE;
        }
    }
    HANDLE get() const { return handle_; }

  private:
    HANDLE handle_;
};

bool is_plain_file(const std::wstring& name) {
    const DWORD attributes = GetFileAttributesW(name.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

constexpr std::array endings{L".com", L".exe", L".bat", L".cmd"};

std::wstring lower_case(std::wstring name) {
    CharLowerBuffW(name.data(), static_cast<DWORD>(name.size()));
    return name;
}

// The file that is run when a program is named, with or without its ending; empty when none is.
std::wstring program_file(const std::string& path) {
    std::wstring name = wide_text(path);
    std::replace(name.begin(), name.end(), L'/', L'\\');
    for (const wchar_t* ending : endings) {
        if (lower_case(name).ends_with(ending) && is_plain_file(name)) {
            return name;
        }
    }
    for (const wchar_t* ending : endings) {
        if (is_plain_file(name + ending)) {
            return name + ending;
        }
    }
    return {};
}

bool is_script(const std::wstring& program) {
    return lower_case(program).ends_with(L".bat") || lower_case(program).ends_with(L".cmd");
}

// Not the first one on the PATH: the current folder comes before that.
std::wstring interpreter() {
    std::wstring name(MAX_PATH, L'\0');
    name.resize(GetSystemDirectoryW(name.data(), MAX_PATH));
    return name + L"\\cmd.exe";
}

struct Pipe {
    Handle read_end;
    Handle write_end;
};

Pipe make_pipe() {
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE read_end = INVALID_HANDLE_VALUE;
    HANDLE write_end = INVALID_HANDLE_VALUE;
    if (CreatePipe(&read_end, &write_end, &inherited, 0) == 0) {
        throw RuntimeError(ErrorNumber::DeviceIo, "no pipe to an outside program");
    }
    // The program would hold its own output open and wait for itself.
    SetHandleInformation(read_end, HANDLE_FLAG_INHERIT, 0);
    return {Handle(read_end), Handle(write_end)};
}

Handle open_nothing() {
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    return Handle(CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                              OPEN_EXISTING, 0, nullptr));
}

// `output` is where its output goes, null for a console of its own.
Handle spawn(const std::wstring& program, const std::string& line, const std::string& about,
             HANDLE output) {
    const Handle nothing = open_nothing();
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    if (output != nullptr) {
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdInput = nothing.get();
        startup.hStdOutput = output;
        startup.hStdError = output;
    }
    PROCESS_INFORMATION process{};
    std::wstring words = wide_text(line);
    if (CreateProcessW(program.c_str(), words.data(), nullptr, nullptr,
                       output != nullptr ? TRUE : FALSE, 0, nullptr, nullptr, &startup,
                       &process) == 0) {
        fail(GetLastError(), about);
    }
    CloseHandle(process.hThread);
    return Handle(process.hProcess);
}

int exit_status_of(const Handle& process) {
    DWORD status = 0;
    GetExitCodeProcess(process.get(), &status);
    return static_cast<int>(status);
}

// The interpreter says only on its console that it cannot write the file.
void empty_file(const std::string& path) {
    const Handle file(CreateFileW(wide_text(path).c_str(), GENERIC_WRITE,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file.get() == INVALID_HANDLE_VALUE) {
        fail(GetLastError(), path);
    }
}

class WindowsRunningProgram final : public RunningProgram {
  public:
    explicit WindowsRunningProgram(Handle process) : process_(std::move(process)) {}

    std::optional<int> exit_status() override {
        if (WaitForSingleObject(process_.get(), 0) != WAIT_OBJECT_0) {
            return std::nullopt;
        }
        return exit_status_of(process_);
    }

  private:
    Handle process_;
};

class WindowsLauncher final : public Launcher {
  public:
    bool can_execute(const std::string& path) override { return !program_file(path).empty(); }

    std::string find_on_path(const std::string& name) override {
        std::wstring folders(32768, L'\0');
        folders.resize(
            GetEnvironmentVariableW(L"PATH", folders.data(), static_cast<DWORD>(folders.size())));
        std::wstring found(32768, L'\0');
        const DWORD length = SearchPathW(folders.c_str(), wide_text(name).c_str(), L".exe",
                                         static_cast<DWORD>(found.size()), found.data(), nullptr);
        found.resize(length < found.size() ? length : 0);
        return narrow_text(found);
    }

    std::unique_ptr<RunningProgram> start(const ProgramCall& call,
                                          const std::string& output_file) override {
        const ProgramCall resolved = resolve(call);
        empty_file(output_file);
        const std::string line =
            windows_interpreter_line(windows_command_line(resolved, output_file));
        return std::make_unique<WindowsRunningProgram>(
            spawn(interpreter(), line, call.arguments[0], nullptr));
    }

    int run(const ProgramCall& call, const std::function<void(std::string_view)>& output) override {
        const ProgramCall resolved = resolve(call);
        const std::wstring program = wide_text(resolved.arguments[0]);
        Pipe pipe = make_pipe();
        const Handle process =
            is_script(program)
                ? spawn(interpreter(), windows_interpreter_line(windows_words_line(resolved)),
                        call.arguments[0], pipe.write_end.get())
                : spawn(program, windows_program_line(resolved), call.arguments[0],
                        pipe.write_end.get());
        pipe.write_end.close();
        std::array<char, 65536> buffer{};
        DWORD got = 0;
        while (ReadFile(pipe.read_end.get(), buffer.data(), static_cast<DWORD>(buffer.size()), &got,
                        nullptr) != 0) {
            output({buffer.data(), got});
        }
        WaitForSingleObject(process.get(), INFINITE);
        return exit_status_of(process);
    }

  private:
    static ProgramCall resolve(const ProgramCall& call) {
        const std::wstring program = program_file(call.arguments[0]);
        if (program.empty()) {
            throw RuntimeError(ErrorNumber::FileNotFound, call.arguments[0]);
        }
        ProgramCall resolved = call;
        resolved.arguments[0] = narrow_text(program);
        return resolved;
    }
};

} // namespace

std::unique_ptr<Launcher> make_system_launcher() {
    return std::make_unique<WindowsLauncher>();
}

} // namespace morvane
