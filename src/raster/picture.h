// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/camera.h"

#include <cstdint>
#include <string>
#include <vector>

namespace morvane::raster {

/// A colour as 0xAARRGGBB, alpha 255 being opaque: what QImage calls ARGB32 and, where every pixel
/// is opaque, RGB32.
using Colour = std::uint32_t;

constexpr Colour colour_of(unsigned red, unsigned green, unsigned blue, unsigned alpha = 255) {
    return alpha << 24 | red << 16 | green << 8 | blue;
}
/// The colour of channels that are given as parts of 1. What lies outside 0 .. 1 is brought there;
/// what is no number counts as 0.
Colour colour_of_parts(double red, double green, double blue, double alpha);
/// `part` of 256 of `a`, the rest of `b`, in each channel; opaque.
Colour mixed(Colour a, Colour b, unsigned part);
/// Each channel `part` of 256 of what it was; alpha as it was.
Colour darkened(Colour colour, unsigned part);

/// What an id of a pixel says where nothing was drawn that has one.
inline constexpr std::uint32_t no_id = 0;

inline constexpr int max_picture_side = 16384;

/// A picture being drawn: for every pixel, rows from the top, its colour, its depth (the larger the
/// nearer) and the id of what is seen there.
struct Picture {
    PictureSize size{0, 0};
    std::vector<Colour> pixels;
    std::vector<float> depths;
    std::vector<std::uint32_t> ids;

    /// Index of a pixel, which must be inside.
    std::size_t at(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width) +
               static_cast<std::size_t>(x);
    }
    bool inside(int x, int y) const {
        return x >= 0 && y >= 0 && x < size.width && y < size.height;
    }
};

/// Makes the picture that size, 1 to `max_picture_side` each way, of one colour, infinitely deep,
/// without ids. Memory of an earlier picture is used again.
void clear(Picture& picture, const PictureSize& size, Colour colour);

/// The id at a pixel, `no_id` outside. The nearest within `reach` pixels counts where there is
/// none, so that thin things can be hit.
std::uint32_t id_at(const Picture& picture, int x, int y, int reach = 0);

/// The picture at half its size, each pixel the mean of four; ids and depths are dropped. Smooths
/// edges of a picture that was drawn twice as large.
Picture halved(const Picture& picture);

/// The bytes of a PNG file of the picture's colours; the same on every machine. Throws
/// RuntimeError when there is no memory for it.
std::string png_bytes(const Picture& picture);

} // namespace morvane::raster
