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

/// What a kind and its parameters would make of one material that is still unprocessed.
struct Ghost {
    int material = -1;
    std::vector<Mark> marks;
    std::vector<std::uint32_t> refused; // lines of triangles that a windsock refuses, ascending
    std::string trouble; // the message that Process would show; empty: it would succeed
};

/// Runs the rewrite on a copy of the set, which stays as it is, and decodes the lines it made where
/// `scene`, read from the same set, has the material's block. When triangles are refused the marks
/// are those of the others, though Process would make none. Costs a small part of read_set.
/// `disk` is not used but for the rewrite's sake: nothing is written.
Ghost ghost_of(Disk& disk, const OpenSet& set, const Scene& scene, std::size_t row, Kind kind,
               const Parameters& parameters);

} // namespace morvane::scene
