// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/open_set.h"

#include <optional>
#include <string>

namespace morvane {

class Disk;

/// Writes what a Process has made into `folder`, when one is given: "bgl_code.txt" (the whole model
/// store), "bgl_new_code.txt" (the code of all materials in the order of Process) and, when the
/// frame store was rewritten, "new_azm.txt". Throws RuntimeError.
void write_traces(Disk& disk, const OpenSet& set, const std::optional<std::string>& folder,
                  bool frame_written);

/// Writes "new_azm.txt" (the frame store) into `folder`, when one is given. Throws RuntimeError.
void write_frame_trace(Disk& disk, const LineStore& frame,
                       const std::optional<std::string>& folder);

} // namespace morvane
