// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scene/scene.h"
#include "scene/walk_model.h"

namespace morvane::scene {

/// Finds the triangle that each mark came from, by the order of things: the n-th object between a
/// MATERIAL line and its commented out block came from the block's n-th triangle; groups of placed
/// objects came, in the order of the line numbers in their labels, from the blocks that have
/// nothing before them. Where the numbers do not agree a mark is left without a source.
void find_mark_sources(const Walk& walk, Scene& scene);

} // namespace morvane::scene
