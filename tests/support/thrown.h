// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/errors.h"

#include <stdexcept>

namespace morvane::test {

/// The run-time error that `action` throws. Throws itself, failing the test, when there is none.
template <typename Action>
RuntimeError thrown_by(const Action& action) {
    try {
        action();
    } catch (const RuntimeError& error) {
        return error;
    }
    throw std::logic_error("no run-time error was thrown");
}

} // namespace morvane::test
