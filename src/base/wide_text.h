// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace morvane {

/// Windows takes names of files and arguments of programs in UTF-16; inside the program they are
/// UTF-8. Half a surrogate pair, which a file's name there may hold, survives the way there and
/// back as three bytes of its own.

/// UTF-16 units of a name in UTF-8. A name that is not UTF-8 (written down by an older program) is
/// taken for Windows-1252.
std::wstring wide_text(std::string_view text);

/// The name in UTF-8.
std::string narrow_text(std::wstring_view units);

} // namespace morvane
