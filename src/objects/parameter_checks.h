// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "objects/parameters.h"

#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// A parameter that makes code which does not compile or does something else than it seems to.
struct ParameterProblem {
    std::string code;    // names the check, e.g. "flash-mask"
    Severity severity{}; // Error: it does not compile; Warning: it means something else
    std::string key;     // of the parameter, as recipes name it
    std::string text;    // a sentence for the user, which names the key
};

/// The problems of the parameters that a kind uses, in the order of its keys. The code is made all
/// the same: it takes parameters as they stand.
std::vector<ParameterProblem> check_parameters(Kind kind, const Parameters& parameters);

/// The same as notes about a place, such as the line of a recipe.
std::vector<Note> parameter_notes(Kind kind, const Parameters& parameters,
                                  const std::string& path = {}, std::size_t line = 0);

} // namespace morvane
