// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/object_code.h"

namespace morvane {

/// One light a triangle, in a group that can depend on the time of day or an aircraft's switches.
ObjectCode lights_code(const Translation& material, const LightParameters& parameters);

} // namespace morvane
