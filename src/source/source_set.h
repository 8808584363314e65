// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/line_store.h"
#include "system/services.h"

#include <string>
#include <string_view>

namespace morvane {

/// The two files of a source set, named by plain concatenation: a base path typed with its
/// extension names files that do not exist.
std::string model_file_name(std::string_view base); // base & "_0.asm"
std::string frame_file_name(std::string_view base); // base & ".asm"

/// What came of loading a set: element 0 of each store, 0 for a file that was not loaded.
struct LoadedSet {
    std::size_t model = 0;
    std::size_t frame = 0;

    bool any() const { return model != 0 || frame != 0; }
    bool whole() const { return model != 0 && frame != 0; }
};

/// Loads both files of a set. A missing file shows its message and leaves its store as it was. When
/// a file is there but cannot be read, nothing counts as loaded, and after that file's own message
/// that of the set is shown.
LoadedSet load_source_set(const Services& services, const std::string& base, LineStore& model,
                          LineStore& frame);

} // namespace morvane
