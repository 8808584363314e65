// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bgl/bgl_file.h"
#include "bgl/decompress_bgl.h"
#include "bgl/library_objects.h"
#include "bgl/report.h"
#include "system/services.h"

#include <string>
#include <vector>

namespace morvane {

/// What the library browser's commands share: the report, the scratch files' folder and the way to
/// read compressed files.
struct Inspector {
    /// `helper_folders` are searched for the unpacking program after the program folder.
    Inspector(Services services, std::string program_folder, Programs& programs,
              std::vector<std::string> helper_folders = {});

    Services services;
    std::string program_folder;
    OutputBox box;
    Unpacking unpacking;
};

/// What an analysis found out, besides the report in the box.
struct Analysis {
    bool done = false; // the file is a BGL file and its report is complete
    BglState state = BglState::NotABgl;
    BglHeader header{};
    HeaderExtension extension{}; // all zero when `header.FL_magic` is 0
    std::vector<LibraryObject> objects{};
};

/// Command "Analyse Selected file": writes the report of one file into the box and, for a valid
/// file, the box into "out.txt". Run-time errors are shown to the user.
Analysis analyse_file(Inspector& inspector, const std::string& path, bool show_raw,
                      bool auto_clear);

/// list_objects for an opened file with library data; a compressed one is closed and unpacked
/// first. `Listing::State::Compressed` means that it could not be unpacked. Throws RuntimeError
/// when the file cannot be read or has too many objects.
Listing list_any_objects(Inspector& inspector, const std::string& path, OpenedBgl& bgl,
                         InvalidFileList& invalid_files);

} // namespace morvane
