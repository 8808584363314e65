// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/without_rights.h"

#include <exception>
#include <grp.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace morvane::test {

namespace {

constexpr int held = 0;
constexpr int failed = 1;
constexpr int broken = 2;
constexpr uid_t nobody = 65534;

int outcome_of(const std::function<bool()>& prepare, const std::function<bool()>& check) {
    try {
        if (!prepare()) {
            return broken;
        }
        return check() ? held : failed;
    } catch (const std::exception&) {
        return failed;
    }
}

bool holds_in_child(const std::function<bool()>& prepare, const std::function<bool()>& check) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(outcome_of(prepare, check));
    }
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status) ||
        WEXITSTATUS(status) == broken) {
        throw std::runtime_error("the process that was to check did not get through");
    }
    return WEXITSTATUS(status) == held;
}

bool drop_rights() {
    return ::getuid() != 0 ||
           (::setgroups(0, nullptr) == 0 && ::setgid(nobody) == 0 && ::setuid(nobody) == 0);
}

} // namespace

bool holds_without_rights(const std::function<bool()>& check) {
    return holds_in_child(drop_rights, check);
}

bool holds_under_size_limit(std::size_t limit, const std::function<bool()>& check) {
    const auto set_limit = [&] {
        const rlimit size{limit, limit};
        return ::setrlimit(RLIMIT_FSIZE, &size) == 0;
    };
    return holds_in_child(set_limit, check);
}

} // namespace morvane::test
