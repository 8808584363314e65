// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scene/scene.h"

#include <string>
#include <string_view>
#include <vector>

namespace morvane {
class Disk;
}

namespace morvane::scene {

/// Looks for the scene's textures, letter case ignored, in the folder of its model file, in the
/// folder `texture` beside that folder, and in `extra_folder` unless it is empty; the first found
/// counts. Folders that cannot be read hold nothing.
void locate_textures(Disk& disk, Scene& scene, const std::string& extra_folder = {});

} // namespace morvane::scene
