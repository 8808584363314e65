// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scene/shape.h"

#include <string_view>

namespace morvane::scene {

/// Draws the code of a library object into `shape`: points, faces, lines, textures, box, commands
/// and trouble are set; name, identifier and sizes are left. Conditions are decided for day,
/// summer, and the finest detail; animations are at rest, shadows omitted.
///
/// Nothing the code says is trusted: at most 20,000 commands, calls 100 deep, 2,048 points, every
/// count checked against the bytes that are left. What was understood before the trouble stays.
void read_object(std::string_view code, Shape& shape);

} // namespace morvane::scene
