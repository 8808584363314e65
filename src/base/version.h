#pragma once

#include <string_view>

namespace morvane {

/// The version as the window, the library sources and `--version` show it.
inline constexpr std::string_view version_caption = "v0.20b";

} // namespace morvane
