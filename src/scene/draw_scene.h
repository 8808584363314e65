// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/camera.h"
#include "raster/picture.h"
#include "raster/triangles.h"
#include "scene/ghost.h"
#include "scene/scene.h"
#include "scene/shape.h"

#include <optional>
#include <string>
#include <vector>

namespace morvane::scene {

struct DrawOptions {
    bool model = true;
    bool marks = true;
    bool labels = true;
    bool normals = false;
    bool back_sides = true; // false: of each triangle only the side with its corners clockwise
    bool night = false;
    bool grid = true;             // on the ground
    bool compass = true;          // north arrow and scale bar
    bool dark = false;            // colours that suit a dark window
    std::vector<int> selected{};  // MATERIAL numbers that are lit, the rest dimmed; none: all lit
    std::optional<int> hovered{}; // MATERIAL number whose triangles are outlined
    const Ghost* ghost = nullptr;
    const Catalogue* objects = nullptr; // what library calls show; others are red boxes
    int scale = 1; // pixels of the picture for one of the screen's: widths of lines, sizes of marks
};

/// A text to be written into the picture, its left end and the middle of its height at a pixel. The
/// caller writes it, with the fonts it has (draw_labels in tests and pictures without a display).
struct Label {
    int x = 0;
    int y = 0;
    std::string text;
    Colour colour = 0xFF000000;
};

/// Draws scenes. Keeps its memory from one frame to the next; otherwise without a state.
class Painter {
  public:
    /// Draws the scene and gives its labels, none of which covers another. The ids of the picture
    /// say what is where: triangle n of the scene is n + 1, mark n has `mark_bit` set, mark n of
    /// the ghost `mark_bit` and `ghost_bit`.
    std::vector<Label> draw(raster::Picture& picture, const Scene& scene,
                            const raster::Camera& camera, const raster::PictureSize& size,
                            const DrawOptions& options);

  private:
    raster::ViewedPoints viewed_;
    std::vector<raster::Face> faces_;
};

/// Writes labels in the letters that raster has.
void draw_labels(raster::Picture& picture, const std::vector<Label>& labels, int scale);

/// Turns and moves the camera so that the whole scene is in the picture.
void fit(raster::Camera& camera, const raster::PictureSize& size, const Scene& scene);

/// The same for what is to be seen of some materials: their triangles, the marks made of them, and
/// the marks of the ghost. Without any of these nothing is changed.
void fit(raster::Camera& camera, const raster::PictureSize& size, const Scene& scene,
         const Ghost& ghost, const std::vector<int>& materials);

/// The colours of a picture.
struct Theme {
    Colour background;
    Colour grid;
    Colour ink;    // letters, north arrow, scale bar
    Colour accent; // what is selected or a ghost
    Colour alarm;  // refused, unknown, never reached
};
Theme theme_of(bool dark, bool night);

/// The scene as a picture of its own, with letters and smooth edges: seen from far enough away that
/// all of it is in the picture.
raster::Picture render_picture(const Scene& scene, raster::Camera camera,
                               const raster::PictureSize& size, DrawOptions options);

} // namespace morvane::scene
