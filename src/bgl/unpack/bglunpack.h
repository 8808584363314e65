// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

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

inline constexpr std::size_t name_buffer_size = 250;

/// A file's name as the simulator's library takes it: at most 250 characters, a longer one is cut,
/// and a NUL after them.
inline std::array<char, name_buffer_size + 1> name_buffer(std::string_view name) {
    std::array<char, name_buffer_size + 1> buffer{};
    name = name.substr(0, name_buffer_size);
    std::copy(name.begin(), name.end(), buffer.begin());
    return buffer;
}

} // namespace morvane
