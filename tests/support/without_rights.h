// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace morvane::test {

/// Runs `check` in a process of its own whose user is not root, so that permissions count, and
/// gives what it gives. Throws when the process ends in any other way.
bool holds_without_rights(const std::function<bool()>& check);

/// Runs `check` in a process of its own, in which no file may grow beyond `limit` bytes.
bool holds_under_size_limit(std::size_t limit, const std::function<bool()>& check);

} // namespace morvane::test
