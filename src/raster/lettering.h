// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/picture.h"

#include <string_view>

namespace morvane::raster {

/// Height of a line of letters in pixels, at size 1.
inline constexpr int letter_height = 12;

/// Width of a text in pixels. A program with fonts of its own draws better ones; these are for
/// pictures made without a display.
int text_width(std::string_view text, int size = 1);

/// Writes a text, its upper left corner at a pixel, over everything. Characters outside ASCII
/// become "?".
void draw_text(Picture& picture, int x, int y, std::string_view text, Colour colour, int size = 1);

} // namespace morvane::raster
