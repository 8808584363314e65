// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/guid128.h"
#include "objects/parameters.h"
#include "problems/assembly_checks.h"
#include "source/open_set.h"
#include "system/disk.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace morvane {

/// What becomes, or became, of a marked material.
struct PlannedObject {
    std::size_t row = 0; // of the list of marked materials, from 1
    Kind kind = Kind::Lights;
    Parameters parameters;
    std::string path{};   // of the recipe that says so; empty: none does
    std::size_t line = 0; // in it
};

/// An object of a library that was searched.
struct KnownObject {
    Guid128 guid{};
    std::optional<double> scale; // as it was designed
    std::string file;
};

// Checks of a set as a whole. Each adds what it finds; lines of the model file are those of the
// opened set.

/// Lines with the old name of a label that was renamed, and names that renaming takes for labels.
void check_renaming(const FlatSource& source, Problems& problems);
/// Generated calls that are never reached.
void check_flow(const FlatSource& source, Problems& problems);
/// The reference line of the frame file, and its END.
void check_frame(const OpenSet& set, Problems& problems);
/// Marked materials that are not processed, were processed before, or are drawn elsewhere too.
void check_materials(const OpenSet& set, Problems& problems);
/// Tables that are nearly full.
void check_limits(const OpenSet& set, Problems& problems);
/// Files that other programs have changed, and the backup.
void check_files(Disk& disk, const OpenSet& set, Problems& problems);
/// Textures that are in no texture folder of the set, if it has one.
void check_textures(Disk& disk, const FlatSource& source, Problems& problems);

/// The triangles and the place of a material that becomes an object of a kind.
void check_object(const OpenSet& set, const PlannedObject& object, Problems& problems);
/// The parameters of an object, at the place that gives them.
void check_parameters_of(const PlannedObject& object, Problems& problems);
/// Effects that the list does not have. An empty list says nothing.
void check_effect_name(const PlannedObject& object, const std::vector<std::string>& effects,
                       Problems& problems);
/// Identifiers in none of the libraries searched or in several, and scales other than designed.
void check_identifier(const PlannedObject& object, const std::vector<KnownObject>& known,
                      Problems& problems);

/// A corner of a triangle in model units.
struct Corner {
    double x = 0;
    double y = 0;
    double z = 0;
};

struct RowTriangle {
    std::size_t line = 0; // of the opened model
    Corner corners[3];
};

/// The triangles of a marked material's block, also of one that was commented out by Process. Those
/// with a corner that is no number or not in the model file are omitted.
std::vector<RowTriangle> triangles_of_row(const OpenSet& set, std::size_t row);

/// Whether the lines after a material's selecting line were commented out by Process.
bool is_block_rewritten(const OpenSet& set, std::size_t row);

} // namespace morvane
