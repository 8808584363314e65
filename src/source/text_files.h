// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/line_store.h"
#include "system/services.h"

#include <cstddef>
#include <string>

namespace morvane {

class TextWriter;

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
