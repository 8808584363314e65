// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/line_store.h"
#include "system/services.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace morvane {

class TextWriter;

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

/// The filter of the dialogs that choose a file of a source set.
inline constexpr std::string_view source_file_filter = ".asm/.azm file|*.a?m";

/// The base path that a chosen file stands for: its name less the last four characters. Nothing
/// for a name of less than five.
std::optional<std::string> base_of_chosen_file(std::string_view name);

/// Writes lines first .. last of a store, each as one line; nothing when last < first.
void write_lines(TextWriter& out, const LineStore& store, std::size_t first, std::size_t last);

/// Reads a text file into a line store, replacing it. Returns its element 0 (number of lines + 1);
/// 0, after a message, when the file is missing or cannot be read. The store is then left as it
/// was.
std::size_t load_file2array(const Services& services, const std::string& path, LineStore& store);

/// Writes elements 1 .. element 0 of a store, each as one line, in place of the file. The last
/// of them is the spare, so the file ends with one more empty line than it was loaded with: this
/// is intended. The file takes the permissions of `permissions_of`; when that is empty it keeps its
/// own. Throws RuntimeError; the old file is then whole.
void save_array2file(Disk& disk, const std::string& path, const LineStore& store,
                     const std::string& permissions_of = {});

/// load_file2array and save_array2file: the copy has CR LF line ends and the extra empty line.
/// Throws RuntimeError; when loading failed, after the message for that. The old destination is
/// then whole.
void copy_text_file(const Services& services, const std::string& source,
                    const std::string& destination, const std::string& permissions_of = {});

} // namespace morvane
