// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/render_picture.h"

namespace morvane::scene {

raster::Picture render_picture(const Scene& scene, raster::Camera camera,
                               const raster::PictureSize& size, DrawOptions options) {
    // Drawn twice as large and then halved, which smooths the edges. The letters are sharp as they
    // are.
    const raster::PictureSize doubled{2 * size.width, 2 * size.height};
    options.scale = 2;
    fit(camera, doubled, scene);
    raster::Picture large;
    Painter painter;
    std::vector<Label> labels = painter.draw(large, scene, camera, doubled, options);
    raster::Picture picture = halved(large);
    for (Label& label : labels) {
        label.x /= 2;
        label.y /= 2;
    }
    draw_labels(picture, labels, 1);
    return picture;
}

} // namespace morvane::scene
