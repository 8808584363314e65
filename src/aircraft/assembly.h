// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "aircraft/assemble_aircraft.h"
#include "source/line_store.h"
#include "system/services.h"

#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// One run of Process Aircraft: the frame file being assembled and one other file at a time.
struct Assembly {
    const Services& services;
    const AircraftJob& job;
    LineStore frame;
    LineStore scratch;
    std::vector<std::string> changed; // files of the user that this run wrote
};

inline constexpr std::string_view lod_anchor = "LOD_0L    label    BGLCODE";
inline constexpr std::string_view include_anchor = "include";

/// The line that includes the model file of the first level of detail; 0 when there is none.
std::size_t find_lod_include(const LineStore& frame);

/// Joins fuselage and wings in the frame. False when the run has to stop; the message was shown.
bool add_flexing_wings(Assembly& assembly);

/// Gives the aircraft the shadow model, or lets the low wings cast one. False likewise.
bool use_shadow_model(Assembly& assembly);
void add_wing_shadow(Assembly& assembly);

/// Renames the labels of this export's model file in place. False when it cannot be loaded.
bool suffix_labels_of(Assembly& assembly, AircraftPart part);

/// Writes a store in place of a file of the user's and remembers that.
void save_user_file(Assembly& assembly, const std::string& path, const LineStore& store);

/// Loads a file that must be there by now. Throws RuntimeError when it cannot be loaded.
void reload(const Assembly& assembly, const std::string& path, LineStore& store);

std::string scratch_file(const Assembly& assembly);

/// Turns the instance calls of the lines (VINSTANCE_CALL, SHADOW_VICALL) into their 32-bit form,
/// which reaches further. Lines that have that form already stay as they are.
void convert_calls32(LineStore& store);

} // namespace morvane
