// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/build_plan.h"
#include "project/export_watch.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace morvane {

/// Sources as a step writes them: names in the output folder and their bytes, in the order in which
/// they are put into place.
using MadeSources = std::vector<std::pair<std::string, std::string>>;

struct StepSources {
    bool ok = false;
    bool postponed = false; // an export must not be read now; then there are no problems
    MadeSources sources;
    std::vector<FileRecord> inputs; // as they were read
    std::vector<Problem> problems;  // at least one error when it is not ok
};

/// Makes the sources of a step from its exports, which are only read. An export that is missing or
/// incomplete, or changes meanwhile, fails the step. With `may_read` one that changes meanwhile, or
/// must not be read, postpones it. Nothing is written. Never throws RuntimeError.
StepSources make_sources(Disk& disk, const Project& project, const BuildPlan& plan,
                         const PlannedBuildStep& planned, const ExportGate& may_read = {});

/// Makes a single set as `watch` does: the export rewritten by the recipe and written under
/// another base path.
StepSources make_single_set(Disk& disk, const std::string& base, const Recipe& recipe,
                            const std::string& output, const ExportGate& may_read = {});

} // namespace morvane
