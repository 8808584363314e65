// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/library_list.h"
#include "problems/problem.h"
#include "system/disk.h"

#include <string>
#include <vector>

namespace morvane {

/// What is wrong with a library besides its labels: an object that is given another scale than its
/// design has, and a design whose model file is missing. `list_file` is the file that says so.
std::vector<Problem> find_library_list_problems(Disk& disk, const LibraryList& list,
                                                const std::string& list_file);

} // namespace morvane
