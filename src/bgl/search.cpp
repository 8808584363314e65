// SPDX-License-Identifier: GPL-3.0-or-later
#include "bgl/search.h"

#include "base/encodings.h"
#include "base/errors.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "bgl/report.h"
#include "system/disk.h"

#include <utility>

namespace morvane {

namespace {

constexpr const char* searching = "Searching folders"; // as the progress is called

struct Search {
    Inspector& inspector;
    const LibraryFound& found;
    InvalidFileList invalid_files;
    SearchStatistics statistics;
    std::size_t steps = 0;  // folders and files, for the pace of the progress
    std::size_t folder = 0; // the one that is searched
};

// Whether the user still wants the search. Asked at every step, but a reporter may need longer for
// its answer than a step takes.
bool still_wanted(const Services& services, std::size_t step, const char* what, std::size_t done,
                  std::size_t total) {
    constexpr std::size_t pace = 64;
    return step % pace != 0 || services.reporter.progress(what, done, total);
}

Listing list_file(Search& search, const std::string& path) {
    OpenedBgl bgl = open_bgl(search.inspector.services.disk, path, search.invalid_files);
    if (bgl.state != BglState::Valid) {
        return {bgl.state == BglState::Invalid ? Listing::State::Invalid : Listing::State::NotABgl};
    }
    if (bgl.header.FL_library_ptr != 0 && bgl.header.FL_spare2 != 0) {
        ++search.statistics.compressed_files;
    }
    return list_any_objects(search.inspector, path, bgl, search.invalid_files);
}

// One file that cannot be read does not end a search.
Listing list_or_record(Search& search, const std::string& path) {
    try {
        return list_file(search, path);
    } catch (const RuntimeError& error) {
        if (error.code() == ErrorNumber::SubscriptOutOfRange) {
            throw;
        }
        search.invalid_files.add(path);
        return {Listing::State::Invalid};
    }
}

void report_library(Search& search, const std::string& path,
                    const std::vector<LibraryObject>& objects) {
    OutputBox& box = search.inspector.box;
    ++search.statistics.library_files;
    search.statistics.library_objects += static_cast<std::int32_t>(objects.size());
    // Windows-1252, as the names of objects are.
    box.out_line(source_text(path).value_or(path) + " :" + std::to_string(objects.size()));
    for (const LibraryObject& object : objects) {
        box.out_line(search_line(object));
    }
    if (search.found) {
        search.found(path, objects);
    }
}

void search_file(Search& search, const std::string& path) {
    const Listing listing = list_or_record(search, path);
    if (listing.state == Listing::State::Invalid) {
        ++search.statistics.invalid_files;
    } else if (listing.state == Listing::State::NoLibrary) {
        ++search.statistics.object_files;
    } else if (!listing.objects.empty()) {
        report_library(search, path, listing.objects);
    }
}

// Returns false when the user stopped the search.
bool search_files(Search& search, const std::vector<FoundFolder>& folder_list, std::size_t i) {
    const FoundFolder& folder = folder_list[i];
    search.folder = i;
    const Services& services = search.inspector.services;
    search.statistics.total_files += folder.files;
    search.statistics.bgl_files += static_cast<std::int32_t>(folder.bgl_files.size());
    for (const std::string& name : folder.bgl_files) {
        if (!still_wanted(services, search.steps++, searching, i, folder_list.size())) {
            return false;
        }
        search_file(search, join_path(folder.path, name));
        if (search.inspector.unpacking.stopped) {
            return false;
        }
    }
    return true;
}

void note_unreadable(Reporter& reporter, const std::vector<std::string>& unreadable) {
    if (!unreadable.empty()) {
        reporter.note({"Folders that could not be read and were passed over: " +
                       std::to_string(unreadable.size()) + ", the first is " + unreadable.front() +
                       "."});
    }
}

// The folder searched comes after all those below it.
FolderWalk all_folders(const Services& services, const std::string& folder) {
    if (!services.disk.is_folder(folder)) {
        throw RuntimeError(ErrorNumber::PathNotFound, folder + " is no folder");
    }
    FolderWalk walk{services.disk,
                    [&services, step = std::size_t{0}](std::size_t folders) mutable {
                        return still_wanted(services, step++, "Listing folders", folders, 0);
                    },
                    {},
                    {}};
    FoundFolder root = collect_folders(walk, folder);
    walk.folder_list.push_back(std::move(root));
    note_unreadable(services.reporter, walk.unreadable);
    return walk;
}

bool search_tree(Search& search, const std::string& folder) {
    const Services& services = search.inspector.services;
    const FolderWalk walk = all_folders(services, folder);
    const std::size_t folders = walk.folder_list.size();
    search.statistics.folders = static_cast<std::int32_t>(folders);
    search.inspector.unpacking.keep_going = [&services, &search, folders] {
        return services.reporter.progress(searching, search.folder, folders);
    };
    for (std::size_t i = 0; i < folders && !walk.stopped; ++i) {
        if (!search_files(search, walk.folder_list, i)) {
            return false;
        }
    }
    return !walk.stopped;
}

} // namespace

SearchResult search_folder(Inspector& inspector, const std::string& folder, bool auto_clear,
                           const LibraryFound& found) {
    begin_command(inspector.unpacking);
    inspector.box.begin_command(auto_clear);
    Search search{inspector, found, {inspector.services.disk, inspector.program_folder}, {}};
    SearchResult result;
    try {
        result.done = search_tree(search, folder);
        if (!result.done) {
            inspector.services.reporter.note({"The search was stopped before its end."});
        }
        print_search_summary(inspector.box, search.statistics);
        inspector.box.write_results();
    } catch (const RuntimeError& error) {
        result.done = false;
        report_error(inspector.services.reporter, error, "Error while searching: ", " : ");
    }
    inspector.unpacking.keep_going = {};
    result.statistics = search.statistics;
    return result;
}

void print_search_summary(OutputBox& box, const SearchStatistics& statistics) {
    const auto counter = [&](const char* label, std::int32_t number) {
        box.out_line(label + std::to_string(number));
    };
    box.out_line("==============================");
    // The number of BGL files is printed under both labels; this is intended.
    counter("Directories searched : ", statistics.bgl_files);
    counter("Total files found....: ", statistics.total_files);
    counter("BGL files scanned....: ", statistics.bgl_files);
    counter("Invalid BGL found....: ", statistics.invalid_files);
    counter("Compressed lib BGL...: ", statistics.compressed_files);
    counter("Object BGL files.....: ", statistics.object_files);
    counter("Library BGL files....: ", statistics.library_files);
    counter("Library objects......: ", statistics.library_objects);
    box.out_line("==============================");
}

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
