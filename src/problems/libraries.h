// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/library_list.h"
#include "problems/problem.h"
#include "problems/set_checks.h"
#include "system/disk.h"

#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// What is wrong with a library besides its labels: an object that is given another scale than its
/// design has, and a design whose model file is missing. `list_file` is the file that says so.
std::vector<Problem> find_library_list_problems(Disk& disk, const LibraryList& list,
                                                const std::string& list_file);

/// The library objects that a results file of a library search lists, in its order. An object that
/// a file is listed with twice, because the file was searched twice, counts once. Lines of any
/// other form are passed over. Scales have the three decimals of the file.
std::vector<KnownObject> listed_objects(std::string_view results);

/// The same of the results file in a program folder: what the last search found. Empty when nothing
/// was searched or the file cannot be read. Never throws.
std::vector<KnownObject> searched_objects(Disk& disk, const std::string& program_folder);

} // namespace morvane
