// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/build_plan.h"
#include "system/disk.h"

#include <string>

namespace morvane {

/// What builds of this program depend on besides the project: the effect list in its program
/// folder, whose first name is `default_effect`, and the installed share folder.
BuildSurroundings build_surroundings(Disk& disk, const std::string& program_folder,
                                     const std::string& default_effect);

} // namespace morvane
