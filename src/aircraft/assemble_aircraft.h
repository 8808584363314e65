// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/services.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace morvane {

/// The places of the five exports of an aircraft in `AircraftJob::bases`.
enum AircraftPart : std::size_t { CompleteModel, Fuselage, WingsHigh, WingsLow, Shadow };

struct AircraftJob {
    std::array<std::string, 5> bases; // base paths, no extension; by AircraftPart
    bool flexing_wings = false;
    bool shadow_optimization = false;
    std::string program_folder;              // "temp.masm" is written there
    std::optional<std::string> trace_folder; // the trace of the model header, if wanted
};

/// Process Aircraft: joins the exports into one aircraft that draws the low wings on the ground and
/// the high wings in the air, and takes its shadow from the shadow model, as the two flags say.
///
/// The result replaces the frame file of the complete model; the model files of wings and shadow
/// have their labels renamed in place on the way. Gives the output's path, or nothing when the run
/// stopped; the message says why, and notes say what will be missing before anything is written,
/// and after a stop which files were changed.
std::optional<std::string> assemble_aircraft(const Services& services, const AircraftJob& job);

} // namespace morvane
