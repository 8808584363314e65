// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/library_list.h"

#include <string>

namespace morvane {

class TextWriter;

/// Writes the assembler source of a library: a BGL header, the index, and a record with the
/// drawing code of each object. `file_name` is the one that a comment tells the user to compile.
/// The designs must have names that Windows-1252 can hold.
void write_library_source(TextWriter& out, const LibraryList& list, const std::string& file_name);

} // namespace morvane
