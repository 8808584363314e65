// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/rig.h"
#include "ui/scene_view/scene_view.h"

#include <QPoint>

#include <cstdint>
#include <optional>

namespace morvane::test {

SceneView& scene_view(const Rig& rig);

/// Waits until the picture shows the document as it is now.
void settle();

/// A place of the widget where a triangle of the model, or a mark, of that MATERIAL number is seen;
/// the middle of what is seen of it, as near as it can be hit. std::nullopt when it is hidden.
std::optional<QPoint> place_of_material(SceneView& view, int material);

/// Likewise of the triangle in a line of the model file.
std::optional<QPoint> place_of_line(SceneView& view, std::uint32_t line);

/// How many pixels have an id for which `fits` says so.
template <typename Fits>
int count_ids(SceneView& view, const Fits& fits) {
    int count = 0;
    for (const std::uint32_t id : view.picture().ids) {
        count += id != raster::no_id && fits(id) ? 1 : 0;
    }
    return count;
}

} // namespace morvane::test
