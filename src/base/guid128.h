// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace morvane {

/// A library object's 128-bit identifier: four words.
using Guid128 = std::array<std::int32_t, 4>;

/// A word of an identifier with nine hexadecimal digits, as the assembler wants it but for the "h"
/// behind.
std::string guid_word(std::int32_t word);

} // namespace morvane
