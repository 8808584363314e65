// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scene/draw_scene.h"

namespace morvane::scene {

/// The scene as a picture of its own, with letters and smooth edges: seen from far enough away that
/// all of it is in the picture.
raster::Picture render_picture(const Scene& scene, raster::Camera camera,
                               const raster::PictureSize& size, DrawOptions options);

} // namespace morvane::scene
