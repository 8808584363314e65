// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "base/paths.h"
#include "bgl/search.h"
#include "system/disk.h"

#include <utility>

namespace morvane {

namespace {

std::vector<FolderEntry> entries_of(FolderWalk& walk, const std::string& path) {
    try {
        return walk.disk.list_folder(path);
    } catch (const RuntimeError&) {
        walk.unreadable.push_back(path);
        return {};
    }
}

void add_folder(FolderWalk& walk, const std::string& parent, std::size_t siblings,
                const std::string& name) {
    if (siblings == max_direct_subfolders) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange,
                           parent + " has more than " + std::to_string(max_direct_subfolders) +
                               " subfolders");
    }
    // The folder where the walk began is in the list too.
    if (walk.folder_list.size() + 1 == max_folders) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange,
                           join_path(parent, name) + " is beyond the " +
                               std::to_string(max_folders) + " folders that can be searched");
    }
    walk.folder_list.push_back({join_path(parent, name), 0, {}});
}

} // namespace

FoundFolder collect_folders(FolderWalk& walk, std::string path) {
    FoundFolder here{std::move(path), 0, {}};
    walk.stopped = walk.stopped || !walk.keep_going(walk.folder_list.size());
    if (walk.stopped) {
        return here;
    }
    const std::size_t first = walk.folder_list.size();
    for (FolderEntry& entry : entries_of(walk, here.path)) {
        if (entry.folder) {
            add_folder(walk, here.path, walk.folder_list.size() - first, entry.name);
        } else if (entry.file) {
            ++here.files;
            if (has_ending(entry.name, ".BGL")) {
                here.bgl_files.push_back(std::move(entry.name));
            }
        }
    }
    const std::size_t last = walk.folder_list.size();
    for (std::size_t i = first; i < last; ++i) {
        FoundFolder below = collect_folders(walk, walk.folder_list[i].path);
        walk.folder_list[i] = std::move(below);
    }
    return here;
}

} // namespace morvane
