// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/object_code.h"

namespace morvane {

/// One effect a triangle, placed on the globe at its first vertex.
ObjectCode effects_code(const Placement& placement, const EffectParameters& parameters);

/// One library object a triangle, placed in the same way.
ObjectCode library_code(const Placement& placement, const LibraryParameters& parameters);

/// One library object a triangle, placed inside the model's own frame, so that neither its rotation
/// nor the ground counts.
ObjectCode library_new_code(const LibraryParameters& parameters);

/// 65536 / scale, cut to a whole number: what the placement of a library object carries. Throws
/// DivisionByZero for a scale whose number is 0.
double scale_word(std::string_view scale);

} // namespace morvane
