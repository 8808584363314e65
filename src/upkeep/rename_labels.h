// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "source/line_store.h"
#include "system/services.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// The most labels that one file may define.
inline constexpr std::size_t max_labels = 2000;

/// The names of all labels that the lines define, in their order, repeated ones too: of each line
/// with "label" in it the trimmed text before. A line that begins with "label" gives an empty name.
/// Throws SubscriptOutOfRange for the 2001st.
std::vector<std::string> collect_labels(const LineStore& store);

/// Puts the suffix after the first occurrence of every label in every line, where a blank, comma,
/// semicolon or the line's end is on either side of it. The labels are taken one after another,
/// each on the lines as the earlier ones left them. An empty name occurs nowhere.
/// Gives the number of labels. Throws SubscriptOutOfRange for the 2001st label; nothing is then
/// changed.
std::size_t append_label_suffix(LineStore& store, std::string_view suffix);

/// The same for labels that are given, which other files may define.
void append_suffix_to_labels(LineStore& store, const std::vector<std::string>& labels,
                             std::string_view suffix);

/// The label rename tool: appends the suffix to all labels of a file (full name, with extension)
/// and to their uses, tells how many there were, asks, and writes the file back.
Outcome rename_labels(const Services& services, const std::string& path, std::string_view suffix);

} // namespace morvane
