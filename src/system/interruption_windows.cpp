// SPDX-License-Identifier: GPL-3.0-or-later
#include "system/interruption.h"

#include <atomic>
#include <windows.h>

namespace morvane {

namespace {

// The system calls the handler in a thread of its own.
std::atomic<bool> requested_flag{false};

BOOL WINAPI on_event(DWORD /*event*/) {
    requested_flag = true;
    return TRUE;
}

} // namespace

Interruption::Interruption() {
    requested_flag = false;
    ::SetConsoleCtrlHandler(on_event, TRUE);
}

Interruption::~Interruption() {
    ::SetConsoleCtrlHandler(on_event, FALSE);
}

bool Interruption::requested() {
    return requested_flag;
}

} // namespace morvane
