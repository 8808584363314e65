// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/document.h"
#include "problems/find_problems.h"
#include "system/disk.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace morvane {

/// What the program folder knows that a set does not.
struct CheckKnowledge {
    std::vector<std::string> effects{}; // the effect list; empty: effects are not looked up
    std::vector<KnownObject> objects{}; // of libraries; empty: identifiers are not looked up
    // Called now and then during the check with how many of its parts are done, and of how many.
    std::function<void(std::size_t, std::size_t)> progress{};
};

/// The problems of a document as it is now, worst first, without those that are switched off. Lines
/// are those of the files on the disk: generated code that is not saved yet belongs to the line
/// that it goes before, and a parameter to the line that selects its material. None while no set
/// has been read.
std::vector<Problem> problems_of(Disk& disk, const Document& document,
                                 const CheckKnowledge& knowledge);

} // namespace morvane
