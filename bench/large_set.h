// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace morvane::bench {

/// How many marked materials the set has, and how many triangles each.
inline constexpr int marked_materials = 300;
inline constexpr int triangles = 100;

/// Writes the two files of a source set of about `lines` lines under a base path.
void write_large_set(const std::string& base, int lines);

} // namespace morvane::bench
