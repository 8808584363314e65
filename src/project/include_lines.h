// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/line_store.h"

#include <map>
#include <string>

namespace morvane {

/// Takes the folders out of lines that include one of the files, given by the lower case of their
/// names. True when a line was changed.
bool make_includes_bare(LineStore& store, const std::map<std::string, std::string>& names);

} // namespace morvane
