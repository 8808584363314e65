// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "recipe/recipe.h"
#include "source/open_set.h"

#include <cstddef>
#include <string>
#include <vector>

namespace morvane {

/// What came of reading the open set's files again.
struct Reload {
    /// Failed: the files cannot be used. Outdated: they changed while they were read. Either way
    /// the document stays as it was.
    enum class How { Done, Failed, Outdated };
    How how = How::Failed;
    std::string problem;           // why it failed
    std::vector<Assignment> idle;  // those that no material fell to
    std::vector<std::size_t> rows; // see same_rows
};

/// For each marked material of an export, by its row - 1, the row of the same material in another
/// export of the set; 0 for one that is gone. A material is the same when both of its colours are:
/// the first of those colours the first again, and so on.
std::vector<std::size_t> same_rows(const std::vector<Translation>& before,
                                   const std::vector<Translation>& after);

/// A warning for each marked material that is gone from the new export, and each that is new there.
/// `model` is the path of the model file.
std::vector<Note> changed_materials(const std::vector<Translation>& before,
                                    const std::vector<Translation>& after,
                                    const std::string& model);

} // namespace morvane
