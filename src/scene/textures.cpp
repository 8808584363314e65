// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/textures.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/text.h"
#include "system/disk.h"

#include <map>

namespace morvane::scene {

namespace {

using Found = std::map<std::string, std::string>; // path by upper-case name

void add_files(Disk& disk, const std::string& folder, Found& found) {
    try {
        for (const FolderEntry& entry : disk.list_folder(folder)) {
            if (entry.file) {
                found.emplace(upper_case(entry.name), join_path(folder, entry.name));
            }
        }
    } catch (const RuntimeError&) {
        // A folder that is not there, most often.
    }
}

// The folder as it is on the disk: "texture", "Texture", "TEXTURE".
std::string texture_folder(Disk& disk, const std::string& parent) {
    try {
        for (const FolderEntry& entry : disk.list_folder(parent)) {
            if (entry.folder && equal_ignoring_case(entry.name, "texture")) {
                return join_path(parent, entry.name);
            }
        }
    } catch (const RuntimeError&) {
        // Then neither is the one below it.
    }
    return {};
}

} // namespace

void locate_textures(Disk& disk, Scene& scene, const std::string& extra_folder) {
    if (scene.textures.empty()) {
        return;
    }
    const std::string part = folder_part(scene.model_path);
    const std::string folder = part.empty() ? "." : part;
    Found found;
    add_files(disk, folder, found);
    const std::string beside = texture_folder(disk, join_path(folder, ".."));
    for (const std::string& other : {beside, extra_folder}) {
        if (!other.empty()) {
            add_files(disk, other, found);
        }
    }
    for (SceneTexture& texture : scene.textures) {
        const auto file = found.find(upper_case(texture.name));
        texture.path = file == found.end() ? std::string() : file->second;
    }
}

} // namespace morvane::scene
