// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/picture.h"

#include <QImage>
#include <QPalette>

namespace morvane {

/// How everything that shows a picture answers to mouse and keys.
inline constexpr double turned_per_point = 0.5; // degrees, of a drag
inline constexpr double turned_per_key = 5;     // degrees
inline constexpr double panned_per_key = 40;    // points
inline constexpr double zoomed_per_step = 1.2;  // of the wheel, or a key

/// The picture's pixels, not copied: the picture must outlive the image and stay as it is.
inline QImage image_of(const raster::Picture& picture) {
    return {reinterpret_cast<const uchar*>(picture.pixels.data()), picture.size.width,
            picture.size.height, qsizetype{4} * picture.size.width, QImage::Format_RGB32};
}

/// Whether pictures have to suit a dark window.
inline bool wants_dark_picture(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < 128;
}

} // namespace morvane
