// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace morvane {

/// The full name of a file, by the current folder when it has none of its own. The file need not be
/// there.
std::string absolute_path(const std::string& path);

/// The full name of a file that is named as seen from `folder`, which is itself a full name;
/// without
/// "." and "..". A path that is full already stays as it is.
std::string absolute_path(const std::string& path, const std::string& folder);

} // namespace morvane
