// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace morvane {

/// How a command ended. What went wrong has then been told to the user.
enum class Outcome { Done, Declined, Failed };

} // namespace morvane
