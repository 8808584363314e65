#pragma once

#include <string>

namespace morvane {

/// The full name of a file, by the current folder when it has none of its own. The file need not be
/// there.
std::string absolute_path(const std::string& path);

} // namespace morvane
