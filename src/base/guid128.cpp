// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/guid128.h"

#include "base/numbers.h"

namespace morvane {

std::string guid_word(std::int32_t word) {
    const std::string digits = "000000000" + hex_text(static_cast<std::uint32_t>(word));
    return digits.substr(digits.size() - 9);
}

} // namespace morvane
