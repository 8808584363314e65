// SPDX-License-Identifier: GPL-3.0-or-later
#include "system/interruption.h"

#include <array>
#include <csignal>

namespace morvane {

namespace {

constexpr std::array<int, 3> ending_signals{SIGINT, SIGTERM, SIGHUP};

// A signal's handler can reach nothing but what is global.
volatile std::sig_atomic_t requested_flag = 0;

void on_signal(int /*number*/) {
    requested_flag = 1;
}

bool is_ignored(int number) {
    struct sigaction action {};
    ::sigaction(number, nullptr, &action);
    return action.sa_handler == SIG_IGN;
}

void handle(int number, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    ::sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    ::sigaction(number, &action, nullptr);
}

} // namespace

Interruption::Interruption() {
    requested_flag = 0;
    for (const int number : ending_signals) {
        if (!is_ignored(number)) {
            handle(number, on_signal);
        }
    }
}

Interruption::~Interruption() {
    for (const int number : ending_signals) {
        if (!is_ignored(number)) {
            handle(number, SIG_DFL);
        }
    }
}

bool Interruption::requested() {
    return requested_flag != 0;
}

} // namespace morvane
