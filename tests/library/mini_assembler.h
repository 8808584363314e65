// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

namespace morvane::test {

/// Gives the text of a file that an include line names.
using IncludedText = std::function<std::string(const std::string& path)>;

/// Assembles the data subset of the language that library sources are written in: labels ("NAME
/// label word"), dw, dd, db, "N dup(x)", hexadecimal and decimal numbers, strings, "(offset A)",
/// "(offset A) - (offset B)", include lines and comments. Throws std::runtime_error with the line
/// for anything else, a label twice, a label missing, or a number too large for its place.
std::string assemble(const std::string& source, const IncludedText& included);

} // namespace morvane::test
