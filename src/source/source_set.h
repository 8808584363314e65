#pragma once

#include "source/line_store.h"
#include "system/services.h"

#include <string>
#include <string_view>

namespace morvane {

/// The two files of a source set, named by plain concatenation: a base path typed with its
/// extension names files that do not exist.
std::string model_file_name(std::string_view base); // base & "_0.asm"
std::string frame_file_name(std::string_view base); // base & ".asm"

/// Loads both files of a set. Gives the sum of the two loads' results, at most 32767; a missing
/// file shows its message and adds 0.
int load_source_set(const Services& services, const std::string& base, LineStore& model,
                    LineStore& frame);

} // namespace morvane
