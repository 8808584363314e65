// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/line_store.h"
#include "source/open_set.h"

#include <map>
#include <string>
#include <string_view>

namespace morvane {

/// The file that a source line includes, as written; empty when it includes none.
std::string included_file(std::string_view line);

/// Puts the line that includes a file of macros (by its bare name) after the frame's last line that
/// includes an .inc file, else before its first line. False when the frame includes a file of that
/// name already, whatever its folder and letter case; nothing is then changed.
bool add_macro_include(LineStore& frame, std::string_view file);

/// The same for an open set, whose frame file Save then writes.
bool include_macros(OpenSet& set, std::string_view file);

/// Takes the folders out of lines that include one of the files, given by the lower case of their
/// names. True when a line was changed.
bool make_includes_bare(LineStore& store, const std::map<std::string, std::string>& names);

} // namespace morvane
