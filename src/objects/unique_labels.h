// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/open_set.h"

#include <cstddef>

namespace morvane {

/// The label that ends the code of effects or library calls is the same for every material. Gives
/// the label that the last processed material (a row of the list) has ended with its row's number,
/// as in SKIP_FX7, when an earlier material has ended with the same one: a source with a label
/// twice does not assemble.
void number_repeated_label(OpenSet& set, std::size_t row);

} // namespace morvane
