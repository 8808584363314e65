// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/line_store.h"

#include <cstddef>
#include <string_view>

namespace morvane {

/// The first line, from `start` on towards the end (or the beginning), that begins with `key`; 0
/// when none does. Letter case is ignored, and in key and line blanks at the ends are cut and runs
/// of blanks count as one. The spare element is searched too.
std::size_t find_line(std::string_view key, const LineStore& store, std::size_t start,
                      bool backward = false);

/// The first line from `start` on whose trimmed text begins with `prefix`, letter case and runs of
/// blanks counting; 0 when none does. The spare element is searched too.
std::size_t find_trimmed_prefix(std::string_view prefix, const LineStore& store,
                                std::size_t start = 1);

} // namespace morvane
