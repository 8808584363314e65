// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/build_plan.h"
#include "project/manifest.h"

#include <string>

namespace morvane {

/// Why a step has to be made, as in "exported again"; empty when it is up to date. Files whose
/// size, times and identity are as the record says count as the same; others are compared by their
/// content, and `record` then takes over what they are like now.
std::string reason_to_make(Disk& disk, const Project& project, const PlannedBuildStep& planned,
                           const BuildSurroundings& surroundings, StepRecord& record);

/// Stamp and hash of a file as it is. Throws RuntimeError.
FileRecord record_file(Disk& disk, const std::string& path);

/// Whether a file still is as recorded; `record` takes over a new stamp of the same content.
bool is_as_recorded(Disk& disk, const std::string& path, FileRecord& record);

} // namespace morvane
