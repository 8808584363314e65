#pragma once

#include "source/line_store.h"
#include "system/services.h"

#include <cstddef>
#include <string>

namespace morvane {

class TextWriter;

/// Writes lines first .. last of a store, each as one line; nothing when last < first.
void write_lines(TextWriter& out, const LineStore& store, std::size_t first, std::size_t last);

/// Reads a text file into a line store, replacing it. Gives its element 0 (number of lines + 1).
/// A missing file or a failure is shown to the user and gives 0; the store is then left as it was.
std::size_t load_file2array(const Services& services, const std::string& path, LineStore& store);

/// Writes elements 1 .. element 0 of a store, each as one line, in place of the file. The last
/// of them is the spare, so the file ends with one more empty line than it was loaded with: this
/// is intended. Throws RuntimeError; the old file is then whole.
void save_array2file(Disk& disk, const std::string& path, const LineStore& store);

/// load_file2array and save_array2file: the copy has CR LF line ends and the extra empty line.
/// A load that fails shows its message, and nothing is written: then false.
bool copy_text_file(const Services& services, const std::string& source,
                    const std::string& destination);

} // namespace morvane
