// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/encodings.h"
#include "base/errors.h"
#include "base/paths.h"
#include "system/handle_windows.h"
#include "system/programs.h"
#include "system/windows_command_line.h"

#include <algorithm>
#include <array>
#include <windows.h>

namespace morvane {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

[[noreturn]] void fail_to_start(DWORD code, const std::string& path) {
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

// The call with the file that is run. A relative name counts from here, not from the folder that
// the program runs in.
ProgramCall resolve(const ProgramCall& call) {
    const std::wstring program = program_file(call.arguments[0]);
    if (program.empty()) {
        throw RuntimeError(ErrorNumber::FileNotFound, call.arguments[0]);
    }
    ProgramCall resolved = call;
    resolved.arguments[0] = narrow_text(program);
    if (!call.folder.empty()) {
        resolved.arguments[0] = absolute_path(resolved.arguments[0]);
    }
    return resolved;
}

// Not the first one on the PATH: the current folder comes before that.
std::wstring interpreter() {
    std::wstring name(MAX_PATH, L'\0');
    name.resize(GetSystemDirectoryW(name.data(), MAX_PATH));
    return name + L"\\cmd.exe";
}

SECURITY_ATTRIBUTES inherited() {
    return {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
}

struct Pipe {
    Handle read_end;
    Handle write_end;
};

Pipe make_pipe() {
    SECURITY_ATTRIBUTES attributes = inherited();
    HANDLE read_end = INVALID_HANDLE_VALUE;
    HANDLE write_end = INVALID_HANDLE_VALUE;
    if (CreatePipe(&read_end, &write_end, &attributes, 0) == 0) {
        throw RuntimeError(ErrorNumber::DeviceIo, "no pipe to an outside program");
    }
    // The program would hold its own output open and wait for itself.
    SetHandleInformation(read_end, HANDLE_FLAG_INHERIT, 0);
    return {Handle(read_end), Handle(write_end)};
}

Handle open_nothing(DWORD access) {
    SECURITY_ATTRIBUTES attributes = inherited();
    return Handle(CreateFileW(L"NUL", access, FILE_SHARE_READ | FILE_SHARE_WRITE, &attributes,
                              OPEN_EXISTING, 0, nullptr));
}

Handle open_output(const std::string& path) {
    SECURITY_ATTRIBUTES attributes = inherited();
    Handle file(CreateFileW(wide_text(path).c_str(), GENERIC_WRITE,
                            FILE_SHARE_READ | FILE_SHARE_WRITE, &attributes, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.valid()) {
        fail_to_start(GetLastError(), path);
    }
    return file;
}

struct Process {
    Handle process;
    Handle thread;
};

// `output` is where its output goes; none for what the program has of its own, such as a window.
Process spawn(const ProgramCall& call, const Handle& output, DWORD flags) {
    const ProgramCall resolved = resolve(call);
    const std::wstring program =
        is_batch_file(resolved.arguments[0]) ? interpreter() : wide_text(resolved.arguments[0]);
    const Handle nothing = open_nothing(GENERIC_READ);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    if (output.valid()) {
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdInput = nothing.get();
        startup.hStdOutput = output.get();
        startup.hStdError = output.get();
    } else {
        startup.dwFlags = STARTF_USESHOWWINDOW;
        startup.wShowWindow = SW_SHOWNORMAL;
    }
    PROCESS_INFORMATION process{};
    std::wstring line = wide_text(windows_command_line(resolved));
    const std::wstring folder = wide_text(call.folder);
    if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr,
                       output.valid() ? TRUE : FALSE, flags, nullptr,
                       folder.empty() ? nullptr : folder.c_str(), &startup, &process) == 0) {
        fail_to_start(GetLastError(), call.arguments[0]);
    }
    return {Handle(process.hProcess), Handle(process.hThread)};
}

int exit_status_of(const Handle& process) {
    DWORD status = 0;
    GetExitCodeProcess(process.get(), &status);
    return static_cast<int>(status);
}

/// A program and all that it starts, which are ended together.
class Job {
  public:
    explicit Job(const Process& started) : job_(CreateJobObjectW(nullptr, nullptr)) {
        AssignProcessToJobObject(job_.get(), started.process.get());
        ResumeThread(started.thread.get());
    }
    void end() const { TerminateJobObject(job_.get(), 1); }

  private:
    Handle job_;
};

/// Waits for one program and hands its output on meanwhile.
class Watch {
  public:
    Watch(Process started, Handle from, const RunOptions& options)
        : started_(std::move(started)), from_(std::move(from)), options_(options), job_(started_) {}

    ProgramEnd wait() {
        for (;;) {
            const bool busy = hand_on_output();
            if (WaitForSingleObject(started_.process.get(), busy ? 0 : longest_wait_ms) ==
                WAIT_OBJECT_0) {
                while (hand_on_output()) { // what it printed last
                }
                return {ProgramEnd::How::Exited, exit_status_of(started_.process)};
            }
            if (options_.limit && Clock::now() - begun_ > *options_.limit) {
                return end_all(ProgramEnd::How::TimedOut);
            }
            if (!wanted()) {
                return end_all(ProgramEnd::How::Stopped);
            }
        }
    }

  private:
    static constexpr DWORD longest_wait_ms = 10;
    static constexpr milliseconds ask_every{50};

    // Whether there was anything.
    bool hand_on_output() {
        DWORD waiting = 0;
        if (!from_.valid() ||
            PeekNamedPipe(from_.get(), nullptr, 0, nullptr, &waiting, nullptr) == 0 ||
            waiting == 0) {
            return false;
        }
        std::array<char, 65536> buffer;
        DWORD got = 0;
        if (ReadFile(from_.get(), buffer.data(), static_cast<DWORD>(buffer.size()), &got,
                     nullptr) != 0 &&
            got > 0) {
            options_.output({buffer.data(), got});
        }
        return got > 0;
    }

    bool wanted() {
        if (!options_.keep_going || Clock::now() < ask_at_) {
            return true;
        }
        ask_at_ = Clock::now() + ask_every;
        return options_.keep_going();
    }

    ProgramEnd end_all(ProgramEnd::How how) const {
        job_.end();
        WaitForSingleObject(started_.process.get(), INFINITE);
        return {how, exit_status_of(started_.process)};
    }

    Process started_;
    Handle from_;
    const RunOptions& options_;
    Job job_;
    Clock::time_point begun_ = Clock::now();
    Clock::time_point ask_at_ = begun_ + ask_every;
};

class WindowsRunningProgram final : public RunningProgram {
  public:
    explicit WindowsRunningProgram(Process started) : process_(std::move(started.process)) {}

    std::optional<int> exit_status() override {
        if (WaitForSingleObject(process_.get(), 0) != WAIT_OBJECT_0) {
            return std::nullopt;
        }
        return exit_status_of(process_);
    }

  private:
    Handle process_;
};

class WindowsPrograms final : public Programs {
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
        const Handle output = output_file.empty() ? Handle() : open_output(output_file);
        return std::make_unique<WindowsRunningProgram>(spawn(call, output, 0));
    }

    // What prints nothing for us needs no console of its own either.
    ProgramEnd run(const ProgramCall& call, const RunOptions& options) override {
        Pipe pipe = options.output ? make_pipe() : Pipe{Handle(), open_nothing(GENERIC_WRITE)};
        const DWORD window = options.output ? 0 : CREATE_NO_WINDOW;
        Process started = spawn(call, pipe.write_end, CREATE_SUSPENDED | window);
        pipe.write_end.close();
        return Watch(std::move(started), std::move(pipe.read_end), options).wait();
    }
};

} // namespace

std::unique_ptr<Programs> make_system_programs() {
    return std::make_unique<WindowsPrograms>();
}

} // namespace morvane
