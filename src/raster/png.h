// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/picture.h"

#include <string>

namespace morvane::raster {

/// The bytes of a PNG file of the picture's colours; the same on every machine. Throws
/// RuntimeError when there is no memory for it.
std::string png_bytes(const Picture& picture);

} // namespace morvane::raster
