// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "problems/set_checks.h"
#include "system/disk.h"

#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// The library objects that a results file of a library search lists, in its order. An object that
/// a file is listed with twice, because the file was searched twice, counts once. Lines of any
/// other form are passed over. Scales have the three decimals of the file.
std::vector<KnownObject> listed_objects(std::string_view results);

/// The same of the results file in a program folder: what the last search found. Empty when nothing
/// was searched or the file cannot be read. Never throws.
std::vector<KnownObject> searched_objects(Disk& disk, const std::string& program_folder);

} // namespace morvane
