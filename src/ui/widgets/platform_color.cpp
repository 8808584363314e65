// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/widgets/platform_color.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "base/text.h"
#include "source/materials.h"

#include <cstdint>
#include <string>

namespace morvane {

std::optional<QColor> platform_color(std::string_view hexadecimal) {
    const std::string_view digits = trim(hexadecimal);
    if (digits.empty() || digits.find_first_not_of("0123456789ABCDEFabcdef") != digits.npos) {
        return std::nullopt;
    }
    try {
        const auto value = static_cast<std::uint32_t>(hex_value(digits));
        return QColor(static_cast<int>(value & 0xFFU), static_cast<int>((value >> 8) & 0xFFU),
                      static_cast<int>((value >> 16) & 0xFFU));
    } catch (const RuntimeError&) {
        return std::nullopt; // more digits than a colour value has
    }
}

QColor rgb_color(std::string_view digits) {
    if (digits.size() != 6) {
        return Qt::black;
    }
    return platform_color(swap_rgb(digits)).value_or(QColor(Qt::black));
}

} // namespace morvane
