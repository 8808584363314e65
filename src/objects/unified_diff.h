#pragma once

#include "source/open_set.h"

#include <string>

namespace morvane {

/// What Save would change in the model file, as a unified diff with three lines of context. `old`
/// is the file as it was opened.
std::string model_diff(const OpenSet& set, const LineStore& old, const std::string& path);

/// The same for the frame file; empty when Process did not change it.
std::string frame_diff(const OpenSet& set, const LineStore& old, const std::string& path);

} // namespace morvane
