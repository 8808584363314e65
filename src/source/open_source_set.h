// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/open_set.h"
#include "system/services.h"

#include <string>

namespace morvane {

/// The Open command: loads the set of a base path (no extension), lists its marked materials and
/// reads its placement, with the log's messages. False, after a message box, when the files are
/// missing (the set that was open then stays) or cannot be used.
bool open_source_set(const Services& services, OpenSet& set, const std::string& base);

/// Number of triangles in a marked material's block: the DRAW_TRI lines, one after the other,
/// after the line that opens it.
std::size_t count_triangles(const LineStore& model, const MaterialBlock& block);

} // namespace morvane
