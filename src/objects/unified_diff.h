// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/open_set.h"

#include <string>

namespace morvane {

/// What Save would change in the model file, as a unified diff with three lines of context. The
/// diff's lines have the line ends of the files, so that
/// `patch --binary` makes the new file of the old one. Throws SubscriptOutOfRange like Save.
std::string model_diff(const OpenSet& set, const std::string& path);

/// The same for the frame file; empty when Process did not change it.
std::string frame_diff(const OpenSet& set, const std::string& path);

} // namespace morvane
