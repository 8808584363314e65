// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

#include <optional>
#include <string_view>

namespace morvane {

/// A text read as hexadecimal and used as a colour value as it stands: the low byte is red, then
/// green, then blue. Nothing for a text that is not wholly hexadecimal digits.
std::optional<QColor> platform_color(std::string_view hexadecimal);

/// The colour of RRGGBB digits; black for other text.
QColor rgb_color(std::string_view digits);

} // namespace morvane
