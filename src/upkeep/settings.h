// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/services.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace morvane {

/// The settings files are in the program folder, which every operation here takes first. They are
/// plain text, one value a line, without keys. Readers never fail: what is missing or cannot be
/// read keeps its default, and a note says so where nothing else is said. Writers throw
/// RuntimeError; the old file is then whole.

/// "morvane.ini": the two paths of the main window, as they were written, blanks included.
struct MainPaths {
    std::string input;
    std::string output;

    bool operator==(const MainPaths&) const = default;
};
MainPaths read_main_paths(const Services& services, const std::string& folder,
                          const MainPaths& defaults);
void write_main_paths(Disk& disk, const std::string& folder, const MainPaths& paths);

/// "model.ini": the base paths of the model modifier: complete model, fuselage, wings high, wings
/// low, shadow. Trimmed when read, not when written. Created with empty paths when missing.
using AircraftPaths = std::array<std::string, 5>;
AircraftPaths read_aircraft_paths(const Services& services, const std::string& folder);
void write_aircraft_paths(Disk& disk, const std::string& folder, const AircraftPaths& paths);

/// "libview.ini": the folder that the library browser showed last; a relative one counts from the
/// program folder. Nothing, quietly, when the file or that folder is gone.
std::optional<std::string> read_library_folder(Disk& disk, const std::string& folder);
void write_library_folder(Disk& disk, const std::string& folder, const std::string& shown);

/// "fx_list.txt": the effect names, one a line, empty ones too; kept by hand, never written but
/// when missing, then with the simulator's stock names.
std::vector<std::string> read_effect_names(const Services& services, const std::string& folder);
/// The same without creating the file.
std::vector<std::string> effect_names(const Services& services, const std::string& folder);

} // namespace morvane
