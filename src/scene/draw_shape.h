// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/camera.h"
#include "raster/picture.h"
#include "scene/draw_scene.h"
#include "scene/shape.h"

#include <string>
#include <vector>

namespace morvane::scene {

struct ShapeOptions {
    bool dark = false;
    bool grid = true; // a metre wide where that is neither too fine nor too coarse to see
    int scale = 1;    // pixels of the picture for one of the screen's
};

/// Draws one object of a library as large as it was designed. One that draws nothing is shown as
/// the box that its size field says.
void draw_shape(raster::Picture& picture, const Shape& shape, const raster::Camera& camera,
                const raster::PictureSize& size, const ShapeOptions& options);

/// Moves the camera so that the whole object is in the picture.
void fit(raster::Camera& camera, const raster::PictureSize& size, const Shape& shape);

/// The same for an object that is turned: large enough for every heading, the middle of the object
/// in the middle of the picture.
void fit_all_round(raster::Camera& camera, const raster::PictureSize& size, const Shape& shape);

/// A picture with smooth edges and without letters, the whole object in it, from a quarter above
/// unless the camera has another view. What a shelf of objects shows.
raster::Picture thumbnail(const Shape& shape, const raster::PictureSize& size,
                          const ShapeOptions& options, raster::Camera camera = {});

/// "6.2 m high, 4.0 m wide", or what could not be understood.
std::string measures_text(const Shape& shape);

/// Thumbnails with name and measures below each, row by row. A size of 0, 0 is as large as it
/// takes; otherwise they are made to fit.
raster::Picture sheet(const std::vector<Shape>& shapes, const raster::PictureSize& size,
                      const raster::Camera& camera, const ShapeOptions& options);

} // namespace morvane::scene
