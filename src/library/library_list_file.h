// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/guid128.h"
#include "base/reporter.h"
#include "library/library_list.h"
#include "system/services.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace morvane {

struct LibraryListReading {
    std::optional<LibraryList> list; // nothing when there are errors
    std::vector<std::string> errors;
    std::vector<Note> problems; // the same errors, with their places
};

/// Reads a library list file. Designs are named relative to its folder; what it leaves out of
/// scale, size and name is read from the design. Every error names file, line and key and shows the
/// line with a caret under the place. Never throws.
LibraryListReading read_library_list(const Services& services, const std::string& path);

/// The text of a list file in `folder` that reads back as `list`. A design whose path the list
/// could not carry as it stands is named by its absolute path.
std::string library_list_text(const LibraryList& list, const std::string& folder);

struct GuidFilling {
    std::size_t filled = 0;
    std::vector<std::string> errors; // of the list; then it was not changed
    std::vector<Note> problems;      // the same errors, with their places
};

/// Gives every object of a list file that has no identifier a new one from `source`, and writes
/// them into the file; every other byte stays as it is. Throws RuntimeError when the file cannot be
/// written; then it is as it was.
GuidFilling generate_guids(const Services& services, const std::string& path,
                           const std::function<Guid128()>& source);

/// An identifier that nobody has had.
Guid128 random_guid();

} // namespace morvane
