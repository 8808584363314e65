// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPalette>

namespace morvane {

/// How everything that shows a picture answers to mouse and keys.
inline constexpr double turned_per_point = 0.5; // degrees, of a drag
inline constexpr double turned_per_key = 5;     // degrees
inline constexpr double panned_per_key = 40;    // points
inline constexpr double zoomed_per_step = 1.2;  // of the wheel, or a key

/// Whether pictures have to suit a dark window.
inline bool wants_dark_picture(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < 128;
}

} // namespace morvane
