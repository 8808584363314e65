// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// A place in a source that a line of a compiler's output names, and where the line names it.
struct CompilerPlace {
    std::size_t line_of_output = 0; // from 1
    std::size_t begin = 0;          // of the words that name the place, in bytes of that line
    std::size_t length = 0;
    std::string file; // as the compiler writes it
    std::size_t line = 0;
};

/// The places that a compiler's output names, as "FILE(12)" or "FILE:12:" at the beginning of a
/// line, one a line at most.
std::vector<CompilerPlace> compiler_places(std::string_view output);

/// The path of a file that the compiler named, which ran in `folder`: a name without a folder is
/// in there, and so is one that names a drive of the compiler's own machine ("Z:") as wine does.
std::string compiled_file(const std::string& folder, const std::string& file);

} // namespace morvane
