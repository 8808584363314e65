// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "base/paths.h"
#include "system/descriptor_posix.h"
#include "system/programs.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace morvane {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

[[noreturn]] void fail_to_start(int code, const std::string& path) {
    switch (code) {
    case ENOENT:
        throw RuntimeError(ErrorNumber::FileNotFound, path);
    case EACCES:
    case EPERM:
    case EROFS:
        throw RuntimeError(ErrorNumber::PermissionDenied, path);
    default:
        throw RuntimeError(ErrorNumber::PathFileAccess, path);
    }
}

struct Pipe {
    Descriptor read_end;
    Descriptor write_end;
};

Pipe make_pipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw RuntimeError(ErrorNumber::DeviceIo, "no pipe to an outside program");
    }
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

int exit_status_of(int status) {
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::optional<int> status_if_ended(pid_t process) {
    int status = 0;
    return ::waitpid(process, &status, WNOHANG) == process ? std::optional(exit_status_of(status))
                                                           : std::nullopt;
}

/// What a new program starts with: no input, its output in one place, and this program's signals.
class SpawnSettings {
  public:
    // `output` -1 throws the output away.
    SpawnSettings(const std::string& folder, int output, bool own_group, const sigset_t& signals) {
        ::posix_spawn_file_actions_init(&files_);
        ::posix_spawnattr_init(&attributes_);
        ::posix_spawn_file_actions_addopen(&files_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        if (output < 0) {
            ::posix_spawn_file_actions_addopen(&files_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        } else {
            ::posix_spawn_file_actions_adddup2(&files_, output, STDOUT_FILENO);
        }
        ::posix_spawn_file_actions_adddup2(&files_, STDOUT_FILENO, STDERR_FILENO);
        if (!folder.empty()) {
            ::posix_spawn_file_actions_addchdir_np(&files_, folder.c_str());
        }
        sigset_t defaults;
        ::sigemptyset(&defaults);
        ::sigaddset(&defaults, SIGPIPE);
        ::sigaddset(&defaults, SIGXFSZ); // ignored here, see make_system_disk
        ::posix_spawnattr_setsigdefault(&attributes_, &defaults);
        ::posix_spawnattr_setsigmask(&attributes_, &signals);
        ::posix_spawnattr_setpgroup(&attributes_, 0);
        ::posix_spawnattr_setflags(
            &attributes_, static_cast<short>(POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK |
                                             (own_group ? POSIX_SPAWN_SETPGROUP : 0)));
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        ::posix_spawn_file_actions_destroy(&files_);
        ::posix_spawnattr_destroy(&attributes_);
    }
    const posix_spawn_file_actions_t* files() const { return &files_; }
    const posix_spawnattr_t* attributes() const { return &attributes_; }

  private:
    posix_spawn_file_actions_t files_{};
    posix_spawnattr_t attributes_{};
};

pid_t spawn(const ProgramCall& call, const SpawnSettings& settings) {
    std::vector<std::string> texts = call.arguments;
    std::vector<char*> arguments;
    arguments.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        arguments.push_back(text.data());
    }
    arguments.push_back(nullptr);
    // A relative name counts from here, not from the folder that the program runs in.
    const std::string program = call.folder.empty() ? texts[0] : absolute_path(texts[0]);
    pid_t process = 0;
    const int code = ::posix_spawn(&process, program.c_str(), settings.files(),
                                   settings.attributes(), arguments.data(), ::environ);
    if (code != 0) {
        fail_to_start(code, texts[0]);
    }
    return process;
}

/// While alive, keeps the signals that would end this program waiting, since the terminal sends
/// them only to our own group: a program that runs in another one would be left behind.
class HeldSignals {
  public:
    explicit HeldSignals(bool hold) {
        ::sigemptyset(&held_);
        for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
            struct sigaction action {};
            ::sigaction(number, nullptr, &action);
            if (hold && action.sa_handler != SIG_IGN) {
                ::sigaddset(&held_, number);
            }
        }
        ::pthread_sigmask(SIG_BLOCK, &held_, &before_);
    }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;
    ~HeldSignals() {
        ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
        if (arrived_ > 0) {
            ::kill(::getpid(), arrived_);
        }
    }
    bool arrived() {
        const timespec at_once{};
        arrived_ = arrived_ > 0 ? arrived_ : ::sigtimedwait(&held_, nullptr, &at_once);
        return arrived_ > 0;
    }
    const sigset_t& before() const { return before_; }

  private:
    sigset_t held_{};
    sigset_t before_{};
    int arrived_ = 0;
};

/// Waits for one program and hands its output on meanwhile.
class Watch {
  public:
    Watch(pid_t process, Descriptor from, const RunOptions& options)
        : process_(process), from_(std::move(from)), options_(options) {}

    ProgramEnd wait(HeldSignals& signals) {
        for (;;) {
            hand_on_output(longest_wait);
            if (const auto status = status_if_ended(process_)) {
                while (hand_on_output(milliseconds(0))) { // what it printed last
                }
                return {ProgramEnd::How::Exited, *status};
            }
            if (options_.limit && Clock::now() - started_ > *options_.limit) {
                return end_all(ProgramEnd::How::TimedOut);
            }
            if (signals.arrived() || !wanted()) {
                return end_all(ProgramEnd::How::Stopped);
            }
            if (!from_.valid()) {
                ::poll(nullptr, 0, 2);
            }
        }
    }

  private:
    static constexpr milliseconds longest_wait{20};
    static constexpr milliseconds ask_every{50};

    // Whether there was anything.
    bool hand_on_output(milliseconds wait) {
        pollfd output{from_.get(), POLLIN, 0};
        if (!from_.valid() || ::poll(&output, 1, static_cast<int>(wait.count())) <= 0) {
            return false;
        }
        std::array<char, 65536> buffer;
        const ssize_t got = ::read(from_.get(), buffer.data(), buffer.size());
        if (got > 0) {
            options_.output({buffer.data(), static_cast<std::size_t>(got)});
        } else if (got == 0 || errno != EINTR) {
            from_.close();
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
        ::kill(-process_, SIGKILL);
        while (::waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
        }
        return {how, 128 + SIGKILL};
    }

    pid_t process_;
    Descriptor from_;
    const RunOptions& options_;
    Clock::time_point started_ = Clock::now();
    Clock::time_point ask_at_ = started_ + ask_every;
};

class PosixRunningProgram final : public RunningProgram {
  public:
    explicit PosixRunningProgram(pid_t process) : process_(process) {}

    std::optional<int> exit_status() override {
        if (!ended_) {
            ended_ = status_if_ended(process_);
        }
        return ended_;
    }

  private:
    pid_t process_;
    std::optional<int> ended_;
};

Descriptor open_output(const std::string& path) {
    if (path.empty()) {
        return Descriptor();
    }
    Descriptor output(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (!output.valid()) {
        fail_to_start(errno, path);
    }
    return output;
}

class PosixPrograms final : public Programs {
  public:
    bool can_execute(const std::string& path) override {
        struct stat status {};
        return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
               ::access(path.c_str(), X_OK) == 0;
    }

    std::string find_on_path(const std::string& name) override {
        const char* const variable = std::getenv("PATH");
        std::string_view rest = variable == nullptr ? "" : variable;
        while (!rest.empty()) {
            const std::size_t colon = rest.find(':');
            std::string candidate = std::string(rest.substr(0, colon)) + "/" + name;
            if (candidate.front() == '/' && can_execute(candidate)) {
                return candidate;
            }
            rest.remove_prefix(colon == std::string_view::npos ? rest.size() : colon + 1);
        }
        return {};
    }

    std::unique_ptr<RunningProgram> start(const ProgramCall& call,
                                          const std::string& output_file) override {
        const Descriptor output = open_output(output_file);
        const HeldSignals none(false);
        return std::make_unique<PosixRunningProgram>(
            spawn(call, SpawnSettings(call.folder, output.get(), false, none.before())));
    }

    ProgramEnd run(const ProgramCall& call, const RunOptions& options) override {
        const bool own_group = options.limit || options.keep_going;
        HeldSignals signals(own_group);
        Pipe pipe = options.output ? make_pipe() : Pipe{Descriptor(), Descriptor()};
        const SpawnSettings settings(call.folder, pipe.write_end.get(), own_group,
                                     signals.before());
        Watch watch(spawn(call, settings), std::move(pipe.read_end), options);
        pipe.write_end.close();
        return watch.wait(signals);
    }
};

} // namespace

std::unique_ptr<Programs> make_system_programs() {
    return std::make_unique<PosixPrograms>();
}

} // namespace morvane
