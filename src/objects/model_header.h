// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "source/line_store.h"
#include "source/open_set.h"
#include "system/services.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace morvane {

using DictionaryTable = std::vector<DictionaryRow>;

/// The most lines of a dictionary's body that are read.
inline constexpr std::size_t max_dictionary_lines = 300;

/// Where the next entry of a dictionary begins: offset + size of the last row's data line.
double dictionary_size(const DictionaryTable& table);

/// Reads the parameter extension dictionary of the frame file base & ".asm" from disk. Comment
/// lines and blank lines of its body are left out; a last line without a partner too. Empty when
/// there is none. Throws RuntimeError, after its message, when the file cannot be read.
DictionaryTable load_ext_parameters(const Services& services, const std::string& base);

/// Why aircraft lights will not work with the frame file of that path: it has neither a dictionary
/// nor a place for one, or its dictionary has no end label or more entries than are read.
std::vector<Note> check_dictionary(const LineStore& frame, const std::string& path);

/// Writes a visual model header with the dictionary in place of the first "dd  0" line; without
/// such a line the store stays as it is. When `trace_folder` names one, the new store is written
/// to "new_azm.txt" there.
void insert_model_header(Disk& disk, LineStore& frame, const DictionaryTable& table,
                         const std::optional<std::string>& trace_folder = {});

/// Rewrites the body of the dictionary that the frame has, and its size. A dictionary without an
/// end label is left alone, since nobody knows where its body ends.
void update_model_header(Disk& disk, LineStore& frame, const DictionaryTable& table,
                         const std::optional<std::string>& trace_folder = {});

/// The index of the first BGL_END line; `start` is a line before which none stands. Without one a
/// message box is shown and the result is 0.
std::size_t find_bgl_end(const LineStore& model, Reporter& reporter, std::size_t start = 1);

/// Whether the dictionary has the entry that aircraft lights test.
bool holds_light_states(const std::vector<DictionaryRow>& dictionary);

/// Makes sure that the set's dictionary, and its frame store, hold that entry, and marks the frame
/// as changed. Whether the frame store was rewritten for it. Throws RuntimeError.
bool ensure_light_states(const Services& services, OpenSet& set);

} // namespace morvane
