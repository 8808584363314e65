// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/picture.h"

#include <string_view>

namespace morvane::raster {

/// How a line or disc is drawn.
struct Stroke {
    Colour colour = 0xFF000000; // alpha below 255: mixed with what is there
    std::uint32_t id = no_id;
    int width = 1;       // pixels
    bool dashed = false; // six pixels drawn, four not
    /// Whether what is nearer hides it, and it hides what is farther. Otherwise it is painted over
    /// everything and changes no depth.
    bool depth_tested = true;
};

/// Draws the line between two places of the scene.
void draw_line(Picture& picture, const Projection& projection, const Vec3& from, const Vec3& to,
               const Stroke& stroke);

/// Draws a line between two pixels, over everything.
void draw_flat_line(Picture& picture, double x0, double y0, double x1, double y1,
                    const Stroke& stroke);

/// Draws a disc of `radius` pixels around a place of the scene; always facing the viewer.
void draw_disc(Picture& picture, const Projection& projection, const Vec3& place, int radius,
               const Stroke& stroke);

/// Fills a rectangle of pixels, over everything.
void fill_rectangle(Picture& picture, int x, int y, int width, int height, Colour colour);

/// Height of a line of letters in pixels, at size 1.
inline constexpr int letter_height = 12;

/// Width of a text in pixels. A program with fonts of its own draws better ones; these are for
/// pictures made without a display.
int text_width(std::string_view text, int size = 1);

/// Writes a text, its upper left corner at a pixel, over everything. Characters outside ASCII
/// become "?".
void draw_text(Picture& picture, int x, int y, std::string_view text, Colour colour, int size = 1);

} // namespace morvane::raster
