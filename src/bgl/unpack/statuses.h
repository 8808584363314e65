// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace morvane {

/// How `bglunpack` ends. Far from the numbers that a launcher or the system ends a program with.
enum UnpackStatus {
    unpack_done = 0,
    unpack_wrong_usage = 40,
    unpack_no_library = 41,
    unpack_no_function = 42,
    unpack_nothing = 43, // the library gave no bytes
    unpack_cannot_write = 44,
};

} // namespace morvane
