// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/outcome.h"
#include "system/services.h"

#include <string>
#include <string_view>

namespace morvane {

/// The label rename tool: appends the suffix to all labels of a file (full name, with extension)
/// and to their uses, tells how many there were, asks, and writes the file back.
Outcome rename_labels(const Services& services, const std::string& path, std::string_view suffix);

} // namespace morvane
