// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/change.h"
#include "objects/parameters.h"
#include "source/open_set.h"
#include "system/services.h"

#include <cstddef>
#include <optional>
#include <string>

namespace morvane {

struct ProcessResult {
    bool processed = false;
    std::size_t lines = 0; // what the log calls "Lines of new code"
    /// What was changed. There is one too when a flat triangle ended the material's Process after
    /// lines had been commented out.
    std::optional<Change> change{};
};

/// The Process command: turns one marked material (row 1 .. n of the list; 0 when none is
/// selected) into objects of a kind, files the code for Save, and keeps the light-states entry of
/// the dictionary for aircraft lights. What will not compile or not work in the code is noted.
///
/// Not processed, after a message box: no selection, processed before, no BGL_END line for effects
/// and library calls, or a run-time error; the set is then exactly as it was. Nor after a flat
/// windsock triangle: the lines before it stay commented out, and the next Process of the material
/// takes them as they were.
///
/// `trace_folder`: where the trace files are written; none when it is empty.
ProcessResult process_material(const Services& services, OpenSet& set, std::size_t row, Kind kind,
                               const Parameters& parameters,
                               const std::optional<std::string>& trace_folder = {});

} // namespace morvane
