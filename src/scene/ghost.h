// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/parameters.h"
#include "scene/scene.h"
#include "source/open_set.h"

#include <cstdint>
#include <string>
#include <vector>

namespace morvane {
class Disk;
}

namespace morvane::scene {

/// What a kind and its parameters would make of materials that are still unprocessed.
struct Ghost {
    int material = -1; // the last of several
    std::vector<Mark> marks;
    std::vector<std::uint32_t> refused; // lines of triangles that a windsock refuses, ascending
    std::string trouble; // the message that Process would show; empty: it would succeed
};

/// Makes the code without changing the set, and decodes its lines where `scene`, read from the same
/// set, has the material's block. When triangles are refused the marks
/// are those of the others, though Process would make none. Costs a small part of read_set.
/// Nothing is read from or written to the disk.
Ghost ghost_of(Disk& disk, const OpenSet& set, const Scene& scene, std::size_t row, Kind kind,
               const Parameters& parameters);

/// The same for several rows together. Rows that are processed already are passed over.
Ghost ghost_of(Disk& disk, const OpenSet& set, const Scene& scene,
               const std::vector<std::size_t>& rows, Kind kind, const Parameters& parameters);

} // namespace morvane::scene
