// SPDX-License-Identifier: GPL-3.0-or-later
#include "source/chosen_file.h"

namespace morvane {

std::optional<std::string> base_of_chosen_file(std::string_view name) {
    if (name.size() < 5) {
        return std::nullopt;
    }
    return std::string(name.substr(0, name.size() - 4));
}

} // namespace morvane
