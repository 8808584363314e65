// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scene/draw_scene.h"

#include <vector>

namespace morvane::scene {

/// 1, 2 or 5 times a power of ten, the largest that is not above `length`; 1 for what is not
/// positive.
double round_length(double length);

/// A grid on the ground below the box, drawn as a backdrop: whatever is drawn later covers it.
/// Its lines are at least `finest` metres from each other. Returns their distance.
double draw_grid(raster::Picture& picture, const raster::Projection& projection, const Box& box,
                 const Theme& theme, int scale, double finest = 0.1);

/// A north arrow in the upper right corner and a scale bar in the lower left one, which counts at
/// the distance of the camera's target.
void draw_compass(raster::Picture& picture, const raster::Projection& projection,
                  const Theme& theme, int scale, std::vector<Label>& labels);

} // namespace morvane::scene
