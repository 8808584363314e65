// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace morvane {

/// The filter of the dialogs that choose a file of a source set.
inline constexpr std::string_view source_file_filter = ".asm/.azm file|*.a?m";

/// The base path that a chosen file stands for: its name less the last four characters. Nothing
/// for a name of less than five.
std::optional<std::string> base_of_chosen_file(std::string_view name);

} // namespace morvane
