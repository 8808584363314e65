// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/parameters.h"

#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// A parameter of a kind as a key of a recipe. It is either text or a flag; the function of the
/// other sort is null.
struct ParameterKey {
    std::string_view name;
    std::string& (*text)(Parameters&) = nullptr;
    bool& (*flag)(Parameters&) = nullptr;
    /// What is wrong with a text; empty when nothing is. Null where any text will do.
    std::string (*problem)(std::string_view text) = nullptr;
};

/// The keys of a kind, in the order in which they are written.
const std::vector<ParameterKey>& parameter_keys(Kind kind);

/// Null when the kind has no key of that name.
const ParameterKey* find_parameter_key(Kind kind, std::string_view name);

/// The flash mask that goes with a flash variable; the default one for any other text.
std::string flash_mask_of(std::string_view light_variable);

} // namespace morvane
