#include "base/errors.h"
#include "system/launch.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace morvane {

namespace {

[[noreturn]] void fail(int code, const std::string& path) {
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
    int read_end = -1;
    int write_end = -1;

    Pipe() {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw RuntimeError(ErrorNumber::DeviceIo, "no pipe to an outside program");
        }
        read_end = ends[0];
        write_end = ends[1];
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        ::close(read_end);
        close_write_end();
    }
    void close_write_end() {
        if (write_end >= 0) {
            ::close(write_end);
            write_end = -1;
        }
    }
};

// Between fork and exec only calls that are safe there are made; everything else was prepared.
[[noreturn]] void become_program(char* const* arguments, int output, int report) {
    const int nothing = ::open("/dev/null", O_RDONLY);
    if (nothing >= 0 && ::dup2(nothing, STDIN_FILENO) >= 0 && ::dup2(output, STDOUT_FILENO) >= 0 &&
        ::dup2(output, STDERR_FILENO) >= 0) {
        ::signal(SIGPIPE, SIG_DFL);
        ::execv(arguments[0], arguments);
    }
    const int code = errno;
    const ssize_t told = ::write(report, &code, sizeof code);
    ::_exit(told == sizeof code ? 127 : 126);
}

int wait_for(pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

int exit_status_of(int status) {
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

// Starts the program without a shell, so that no argument is ever read as a command. The second
// pipe closes by itself when the program has begun, or brings the reason why it did not.
pid_t spawn(const ProgramCall& call, int output) {
    std::vector<std::string> texts = call.arguments;
    std::vector<char*> arguments;
    arguments.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        arguments.push_back(text.data());
    }
    arguments.push_back(nullptr);
    Pipe report;
    const pid_t process = ::fork();
    if (process < 0) {
        throw RuntimeError(ErrorNumber::DeviceIo, texts[0]);
    }
    if (process == 0) {
        become_program(arguments.data(), output, report.write_end);
    }
    report.close_write_end();
    int code = 0;
    ssize_t got = -1;
    do {
        got = ::read(report.read_end, &code, sizeof code);
    } while (got < 0 && errno == EINTR);
    if (got == sizeof code) {
        wait_for(process);
        fail(code, texts[0]);
    }
    return process;
}

class PosixRunningProgram final : public RunningProgram {
  public:
    explicit PosixRunningProgram(pid_t process) : process_(process) {}

    std::optional<int> exit_status() override {
        int status = 0;
        if (!ended_ && ::waitpid(process_, &status, WNOHANG) == process_) {
            ended_ = exit_status_of(status);
        }
        return ended_;
    }

  private:
    pid_t process_;
    std::optional<int> ended_;
};

class PosixLauncher final : public Launcher {
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
        const int output =
            ::open(output_file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        if (output < 0) {
            fail(errno, output_file);
        }
        try {
            const pid_t process = spawn(call, output);
            ::close(output);
            return std::make_unique<PosixRunningProgram>(process);
        } catch (...) {
            ::close(output);
            throw;
        }
    }

    int run(const ProgramCall& call, const std::function<void(std::string_view)>& output) override {
        Pipe pipe;
        const pid_t process = spawn(call, pipe.write_end);
        pipe.close_write_end();
        std::array<char, 65536> buffer{};
        ssize_t got = 0;
        while ((got = ::read(pipe.read_end, buffer.data(), buffer.size())) != 0) {
            if (got > 0) {
                output({buffer.data(), static_cast<std::size_t>(got)});
            } else if (errno != EINTR) {
                break;
            }
        }
        return exit_status_of(wait_for(process));
    }
};

} // namespace

std::unique_ptr<Launcher> make_system_launcher() {
    return std::make_unique<PosixLauncher>();
}

} // namespace morvane
