// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recipe/parameter_keys.h"
#include "recipe/recipe.h"

namespace morvane::test {

/// Whether two assignments say the same: selectors, kind and the kind's own parameters.
inline bool same_assignment(Assignment a, Assignment b) {
    bool same = a.highlight == b.highlight && a.color == b.color && a.material == b.material &&
                a.kind == b.kind;
    for (const ParameterKey& key : parameter_keys(a.kind)) {
        same = same && (key.flag != nullptr ? key.flag(a.parameters) == key.flag(b.parameters)
                                            : key.text(a.parameters) == key.text(b.parameters));
    }
    return same;
}

} // namespace morvane::test
