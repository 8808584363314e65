// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/document.h"
#include "document/source_comparison.h"

#include <cstddef>
#include <string>
#include <vector>

namespace morvane {

/// A line of the model file to come.
struct CodeLine {
    std::size_t number = 0; // in that file, from 1
    std::string text;
    LineFate fate = LineFate::Same; // Added: generated; Commented; Same: says where the code is
};

/// What becomes, or would become, of a material.
struct MaterialCode {
    bool planned = false;        // the material is not processed: this is what Process would make
    std::string refusal;         // why Process would make nothing; empty when it would
    std::vector<CodeLine> lines; // in the order of the file
};

/// The generated lines of a material and those of its block that are commented out, each run after
/// the line before it. For a material that is not processed: what Process would make of it with
/// this kind and the parameters in force, which changes nothing. No lines for a row of no material.
MaterialCode material_code(const Document& document, std::size_t row, Kind kind);

} // namespace morvane
