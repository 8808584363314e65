// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/line_store.h"

namespace morvane {

/// Turns the instance calls of the lines (VINSTANCE_CALL, SHADOW_VICALL) into their 32-bit form,
/// which reaches further. Lines that have that form already stay as they are.
void convert_calls32(LineStore& store);

} // namespace morvane
