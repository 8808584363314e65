#ifndef _WIN32

#include "system/unpack_process.h"

#include <chrono>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace morvane {

namespace {

int exit_status(int status) {
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

int wait_for(pid_t child) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(2);
    int status = 0;
    while (::waitpid(child, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > deadline) {
            ::kill(child, SIGKILL);
            ::waitpid(child, &status, 0);
            return program_timed_out;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return exit_status(status);
}

} // namespace

int run_program(const std::vector<std::string>& command) {
    std::vector<std::string> words = command;
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t files;
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const int error =
        ::posix_spawn(&child, words[0].c_str(), &files, nullptr, arguments.data(), ::environ);
    ::posix_spawn_file_actions_destroy(&files);
    return error == 0 ? wait_for(child) : program_not_started;
}

} // namespace morvane

#endif
