// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/library_list.h"
#include "system/services.h"

#include <optional>
#include <string>

namespace morvane {

class TextWriter;

/// Writes the assembler source of a library: a BGL header, the index, and a record with the
/// drawing code of each object. `file_name` is the one that a comment tells the user to compile.
/// The designs must have names that Windows-1252 can hold.
void write_library_source(TextWriter& out, const LibraryList& list, const std::string& file_name);

/// "Create Library": writes the library's source to `output_path`, in place of the file. False
/// after a message box (no path, two objects with one identifier, an output that is a file of a
/// design, a design whose name source files cannot hold, the file cannot be written); an older file
/// is then as it was. Notes name designs without drawing code.
bool create_library(const Services& services, const LibraryList& list,
                    const std::string& output_path);

/// The identifier, as text, that two of the list's objects have; of several the first as sorted.
std::optional<std::string> duplicated_identifier(const LibraryList& list);

/// The file of a design that writing to `output_path` would destroy.
std::optional<std::string> overwritten_design(Disk& disk, const LibraryList& list,
                                              const std::string& output_path);

} // namespace morvane
