// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scene/model_index.h"
#include "scene/scene.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace morvane::scene {

/// A block that a rewrite commented out.
struct CommentedBlock {
    std::size_t position = 0; // of its first line in the text
    std::size_t selected = 0; // of the MATERIAL line before it
    int material = -1;
    struct Triangle {
        std::uint32_t line = 0;        // of the model file
        std::array<Vec3, 3> corners{}; // in the scene; not finite where a vertex is missing
    };
    std::vector<Triangle> triangles{};
};

/// Where the line of a mark is, to find the triangle that it came from.
struct MarkPosition {
    std::size_t position = 0; // in the text
    std::string skip_label{}; // of the SCALE around it
};

/// What a walk through the code finds besides the scene itself.
struct Walk {
    std::vector<MarkPosition> marks; // one for each of Scene::marks
    std::vector<CommentedBlock> commented;
    std::vector<bool> reached; // for each line of the text, by any way through the code
};

/// Walks through the code from `entries` (positions in the text) as the simulator does, and adds to
/// the scene what it draws: the finest detail, animations at rest, and both ways at every other
/// condition. Then adds the code that no way leads to, as not reached.
///
/// Code that calls itself, loops, or repeats large parts is cut off at limits that no model meets,
/// with a problem.
Walk walk_model(const ModelText& text, const ModelIndex& index,
                const std::vector<std::size_t>& entries, Scene& scene, Problems& problems);

/// Adds what lines draw that follow each other, without jumps; `start` leads from their numbers to
/// the scene.
void walk_straight(const ModelText& text, const Affine& start, Scene& scene, Problems& problems);

} // namespace morvane::scene
