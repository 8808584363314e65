// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scene/scene.h"
#include "source/open_set.h"
#include "system/services.h"

#include <string>

namespace morvane {
class Disk;
}

namespace morvane::scene {

/// The scene of an open set as it is now, what was generated so far included. Textures count as
/// missing until locate_textures has looked for them. Never fails: what cannot be drawn is in
/// Scene::notes.
Scene read_set(const OpenSet& set);

/// The scene of the two files of a set, which Open may refuse: rewritten before, nothing marked,
/// no frame file. Throws RuntimeError when there is no model file, or it cannot be read.
Scene read_set_files(Disk& disk, const std::string& base);

/// Looks for the scene's textures, letter case ignored, in the folder of its model file, in the
/// folder `texture` beside that folder, and in `extra_folder` unless it is empty; the first found
/// counts. Folders that cannot be read hold nothing.
void locate_textures(Disk& disk, Scene& scene, const std::string& extra_folder = {});

} // namespace morvane::scene
