// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/open_set.h"

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace morvane::scene {

struct ModelLine {
    std::string_view text;
    std::uint32_t number = 0; // of the line in the model file; 0: generated and not saved yet
};

/// The model file's lines with what was generated so far in its place: what Save would write. The
/// texts are views into the store that it was made of.
struct ModelText {
    std::vector<ModelLine> lines;
    std::deque<std::string> generated; // owns the generated lines; a deque does not move them
};

ModelText model_text(const LineStore& model);
/// Throws SubscriptOutOfRange for a material without code.
ModelText model_text(const OpenSet& set);

} // namespace morvane::scene
