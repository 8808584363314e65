// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bgl/inspector.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace morvane {

inline constexpr std::size_t max_folders = 30000;
inline constexpr std::size_t max_direct_subfolders = 200;

/// A folder of the tree that is searched.
struct FoundFolder {
    std::string path;
    std::int32_t files = 0;             // of any name
    std::vector<std::string> bgl_files; // names that end in ".bgl", in byte order
};

/// The counters of a search.
struct SearchStatistics {
    std::int32_t folders = 0; // not printed
    std::int32_t total_files = 0;
    std::int32_t bgl_files = 0;
    std::int32_t library_files = 0;
    std::int32_t object_files = 0; // valid, without library data
    std::int32_t compressed_files = 0;
    std::int32_t invalid_files = 0;
    std::int32_t library_objects = 0;
};

struct SearchResult {
    bool done = false; // the whole tree was searched
    SearchStatistics statistics;
};

/// Told of every library file with objects, as it is found.
using LibraryFound =
    std::function<void(const std::string& path, const std::vector<LibraryObject>& objects)>;

/// The state of a walk over a folder tree.
struct FolderWalk {
    Disk& disk;
    /// Asked at every folder; false ends the walk early.
    std::function<bool(std::size_t folders)> keep_going;
    std::vector<FoundFolder> folder_list;
    std::vector<std::string> unreadable; // folders that were passed over
    bool stopped = false;
};

/// Appends every folder below `path` to the list: all direct subfolders in byte order, then those
/// below each of them in turn. Returns what is in `path` itself. Links are not followed, and a
/// folder that cannot be read counts as empty.
/// Throws SubscriptOutOfRange, naming the folder, beyond `max_direct_subfolders` in one folder or
/// `max_folders` in all.
FoundFolder collect_folders(FolderWalk& walk, std::string path);

/// Command "Search Selected Directory": lists the objects of every library file in a folder tree
/// into the box, then the counters, and writes the box into "out.txt". Run-time errors are shown
/// to the user; what was found before one stays in the box.
SearchResult search_folder(Inspector& inspector, const std::string& folder, bool auto_clear,
                           const LibraryFound& found = {});

/// Writes the nine lines of the summary.
void print_search_summary(OutputBox& box, const SearchStatistics& statistics);

} // namespace morvane
