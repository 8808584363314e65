#pragma once

#include "source/open_set.h"

#include <optional>
#include <string>

namespace morvane {

class Disk;

/// Writes "bgl_code.txt" (the whole model store) and "bgl_new_code.txt" (the whole new-code buffer)
/// into `folder`, when one is given. Throws RuntimeError.
void write_code_traces(Disk& disk, const OpenSet& set, const std::optional<std::string>& folder);

/// Writes "new_azm.txt" (the frame store) into `folder`, when one is given. Throws RuntimeError.
void write_frame_trace(Disk& disk, const LineStore& frame,
                       const std::optional<std::string>& folder);

} // namespace morvane
