// SPDX-License-Identifier: GPL-3.0-or-later

// A library that is loaded before all others and makes the n-th call that reads or changes a file
// go wrong. tests/faults/run_faults.py tells it what to do by environment variables:
//
//   FAULTS_AT       the number of the call, from 1; 0 or nothing lets all succeed
//   FAULTS_DO       kill       the process dies before the call
//                   torn       of a write half is done, then the process dies
//                   powerless  the process dies, and what no fsync has confirmed is lost
//                   short      a read or a write does half of its work and says so
//                   append     before the call a line is added to the file FAULTS_FILE
//                   a number   the call fails with this errno
//   FAULTS_ALWAYS   calls after the n-th go wrong in the same way
//   FAULTS_JOURNAL  a file to which the name of every call is added
//
// Of the reading calls (open, read, pread) those are counted that are about files below the folder
// the program was started in. Programs that it starts are left alone.
//
// Calls about standard output and error are not counted. Nor is what a build does that notes which
// lines are reached: it makes the notes' folder before the program begins, and writes them when it
// has ended.

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

const char* variable(const char* name) {
    const char* text = std::getenv(name);
    return text == nullptr ? "" : text;
}

template <typename Function>
Function real(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

// Files opened for writing: a second descriptor of each, and how much of it is on the medium.
struct Written {
    int original = -1;
    int second = -1;
    off_t confirmed = 0;
};

constexpr int most_written = 64;
Written written[most_written];
long calls = 0;
bool has_ended = false;

void remember(int fd) {
    struct stat status {};
    for (Written& file : written) {
        if (file.second < 0 && fd >= 0 && ::fstat(fd, &status) == 0 && S_ISREG(status.st_mode)) {
            file = {fd, ::fcntl(fd, F_DUPFD_CLOEXEC, 200), status.st_size};
            return;
        }
    }
}

void confirm(int fd) {
    struct stat status {};
    for (Written& file : written) {
        if (file.original == fd && file.second >= 0 && ::fstat(fd, &status) == 0) {
            file.confirmed = status.st_size;
        }
    }
}

void forget(int fd) {
    for (Written& file : written) {
        if (file.original == fd) {
            file.original = -1; // still to be cut if the power goes
        }
    }
}

[[noreturn]] void die() {
    ::raise(SIGKILL);
    std::abort();
}

[[noreturn]] void lose_power() {
    for (const Written& file : written) {
        struct stat status {};
        if (file.second >= 0 && ::fstat(file.second, &status) == 0 &&
            status.st_size > file.confirmed) {
            ::syscall(SYS_ftruncate, file.second, file.confirmed);
        }
    }
    die();
}

void write_raw(const char* path, const char* text) {
    const int fd = static_cast<int>(
        ::syscall(SYS_openat, AT_FDCWD, path, O_WRONLY | O_CREAT | O_APPEND, 0666));
    if (fd >= 0) {
        ::syscall(SYS_write, fd, text, std::strlen(text));
        ::syscall(SYS_close, fd);
    }
}

void write_journal(const char* call, const char* about) {
    char line[4200];
    std::snprintf(line, sizeof line, "%s %s\n", call, about);
    if (*variable("FAULTS_JOURNAL") != 0) {
        write_raw(variable("FAULTS_JOURNAL"), line);
    }
}

enum class Turn { Go, Half, Fail };

/// Counts a call. Does what is to be done about it, as far as that is the same for all calls.
Turn turn(const char* call, const char* about) {
    if (has_ended) {
        return Turn::Go;
    }
    if (++calls == 1) {
        // What is registered last is called first.
        std::atexit([] { has_ended = true; });
    }
    write_journal(call, about);
    const long at = std::atol(variable("FAULTS_AT"));
    const bool reached = at > 0 && (calls == at || (calls > at && *variable("FAULTS_ALWAYS") != 0));
    const char* what = variable("FAULTS_DO");
    if (!reached) {
        return Turn::Go;
    }
    if (std::strcmp(what, "kill") == 0) {
        die();
    }
    if (std::strcmp(what, "powerless") == 0) {
        lose_power();
    }
    if (std::strcmp(what, "append") == 0) {
        write_raw(variable("FAULTS_FILE"), "; by another program\r\n");
        return Turn::Go;
    }
    if (std::strcmp(what, "short") == 0 || std::strcmp(what, "torn") == 0) {
        return Turn::Half;
    }
    errno = std::atoi(what);
    return Turn::Fail;
}

// For calls that cannot be done by half: with "torn" the process dies in their place.
bool may_go(const char* call, const char* about) {
    const Turn now = turn(call, about);
    if (now == Turn::Half && std::strcmp(variable("FAULTS_DO"), "torn") == 0) {
        die();
    }
    return now != Turn::Fail;
}

const char* name_of(int fd) {
    static char name[4096];
    char link[64];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", fd);
    const ssize_t length = ::readlink(link, name, sizeof name - 1);
    name[length < 0 ? 0 : length] = 0;
    return name;
}

/// Whether a name is that of a file below the folder the program was started in. What the system's
/// own libraries read is elsewhere.
bool is_below_start(const char* path) {
    static char start[4096];
    if (start[0] == 0 && ::getcwd(start, sizeof start) == nullptr) {
        return false;
    }
    const std::size_t length = std::strlen(start);
    return path[0] != '/' || (std::strncmp(path, start, length) == 0 && path[length] == '/');
}

/// How many bytes to ask for in place of `count`, so that a file's rest comes by half.
std::size_t half_of_the_rest(int fd, off_t offset, std::size_t count) {
    struct stat status {};
    if (::fstat(fd, &status) != 0 || status.st_size <= offset) {
        return count;
    }
    const auto rest = static_cast<std::size_t>(status.st_size - offset);
    return (std::min(rest, count) + 1) / 2;
}

/// Counts a reading call; how many bytes it is to ask for, or none when it is to fail.
bool may_read(const char* call, int fd, off_t offset, std::size_t& count) {
    const char* const name = name_of(fd);
    if (fd <= STDERR_FILENO || !is_below_start(name)) {
        return true;
    }
    const Turn now = turn(call, name);
    if (now == Turn::Half) {
        count = half_of_the_rest(fd, offset, count);
    }
    return now != Turn::Fail;
}

bool is_for_writing(int flags) {
    return (flags & O_ACCMODE) != O_RDONLY || (flags & O_CREAT) != 0;
}

int open_with(int folder, const char* path, int flags, unsigned mode) {
    if (is_for_writing(flags) ? !may_go("open", path)
                              : is_below_start(path) && !may_go("open-for-reading", path)) {
        return -1;
    }
    const int fd = static_cast<int>(::syscall(SYS_openat, folder, path, flags, mode));
    if (is_for_writing(flags)) {
        remember(fd);
    }
    return fd;
}

unsigned mode_argument(int flags, va_list arguments) {
    return (flags & O_CREAT) != 0 ? va_arg(arguments, unsigned) : 0;
}

} // namespace

// The environment is searched for it when a program is started, and by no one else.
__attribute__((constructor)) static void leave_other_programs_alone() {
    ::unsetenv("LD_PRELOAD");
}

extern "C" {

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const unsigned mode = mode_argument(flags, arguments);
    va_end(arguments);
    return open_with(AT_FDCWD, path, flags, mode);
}

int open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const unsigned mode = mode_argument(flags, arguments);
    va_end(arguments);
    return open_with(AT_FDCWD, path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const unsigned mode = mode_argument(flags, arguments);
    va_end(arguments);
    return open_with(folder, path, flags, mode);
}

ssize_t write(int fd, const void* bytes, size_t count) {
    if (fd > STDERR_FILENO) {
        const Turn now = turn("write", name_of(fd));
        if (now == Turn::Fail) {
            return -1;
        }
        if (now == Turn::Half) {
            const long half = ::syscall(SYS_write, fd, bytes, (count + 1) / 2);
            if (std::strcmp(variable("FAULTS_DO"), "torn") == 0) {
                die();
            }
            return half;
        }
    }
    return ::syscall(SYS_write, fd, bytes, count);
}

ssize_t read(int fd, void* bytes, size_t count) {
    if (!may_read("read", fd, ::lseek(fd, 0, SEEK_CUR), count)) {
        return -1;
    }
    return ::syscall(SYS_read, fd, bytes, count);
}

ssize_t pread(int fd, void* bytes, size_t count, off_t offset) {
    if (!may_read("pread", fd, offset, count)) {
        return -1;
    }
    return ::syscall(SYS_pread64, fd, bytes, count, offset);
}

ssize_t pread64(int fd, void* bytes, size_t count, off64_t offset) {
    return pread(fd, bytes, count, offset);
}

int fsync(int fd) {
    if (!may_go("fsync", name_of(fd))) {
        return -1;
    }
    confirm(fd);
    return real<int (*)(int)>("fsync")(fd);
}

int ftruncate(int fd, off_t size) noexcept {
    if (!may_go("ftruncate", name_of(fd))) {
        return -1;
    }
    return static_cast<int>(::syscall(SYS_ftruncate, fd, size));
}

int fchmod(int fd, mode_t mode) noexcept {
    return may_go("fchmod", name_of(fd)) ? static_cast<int>(::syscall(SYS_fchmod, fd, mode)) : -1;
}

int rename(const char* from, const char* to) noexcept {
    return may_go("rename", to) ? real<int (*)(const char*, const char*)>("rename")(from, to) : -1;
}

int unlink(const char* path) noexcept {
    return may_go("unlink", path) ? static_cast<int>(::syscall(SYS_unlinkat, AT_FDCWD, path, 0))
                                  : -1;
}

int remove(const char* path) noexcept {
    return may_go("unlink", path) ? real<int (*)(const char*)>("remove")(path) : -1;
}

int mkdir(const char* path, mode_t mode) noexcept {
    const bool for_notes =
        std::strncmp(variable("LLVM_PROFILE_FILE"), path, std::strlen(path)) == 0;
    return for_notes || may_go("mkdir", path)
               ? static_cast<int>(::syscall(SYS_mkdirat, AT_FDCWD, path, mode))
               : -1;
}

int close(int fd) {
    forget(fd);
    return static_cast<int>(::syscall(SYS_close, fd));
}

} // extern "C"
