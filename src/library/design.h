// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/line_store.h"
#include "system/services.h"

#include <optional>
#include <string>

namespace morvane {

/// What a design's files say of it, as the fields of the window show it.
struct DesignDescription {
    std::string scale; // unit_scale / the stored scale
    std::string size;  // maximum diameter in scale units, as it is in the file
    std::string name;  // the file's name
};

/// A description, or what is wrong with the design.
struct DesignReading {
    std::optional<DesignDescription> description;
    std::string problem; // the window's message
    std::string detail;  // more about it; may be empty
};

/// The name of a design's file without its last four characters, which are ".asm".
std::string design_base(const std::string& file_name);

/// Reads a design from the lines of its frame file; `base` is its path without an ending.
DesignReading read_design(const LineStore& frame, const std::string& base);

/// Loads the source set of a design and describes it. Nothing after a message box.
std::optional<DesignDescription> describe_design(const Services& services, const std::string& base);

/// A size as a design or a user writes it: decimal, or hexadecimal with an "h" behind, e.g. 160 for
/// "0A0h". Empty text is 0. Throws TypeMismatch for any other text.
double size_value(std::string_view text);

} // namespace morvane
