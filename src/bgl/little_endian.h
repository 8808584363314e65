// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

namespace morvane {

/// The whole number that `bytes` holds at `offset`, lowest byte first, on any machine. All its
/// bytes must be there.
template <typename Number>
Number little_endian(std::string_view bytes, std::size_t offset) {
    using Unsigned = std::make_unsigned_t<Number>;
    Unsigned value = 0;
    for (std::size_t i = sizeof(Number); i-- > 0;) {
        const auto byte = static_cast<unsigned char>(bytes[offset + i]);
        value = static_cast<Unsigned>(static_cast<Unsigned>(value << 8) | byte);
    }
    return static_cast<Number>(value);
}

/// Appends a whole number, lowest byte first.
template <typename Number>
void append_little_endian(std::string& bytes, Number number) {
    auto value = static_cast<std::make_unsigned_t<Number>>(number);
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        bytes += static_cast<char>(value & 0xFF);
        value = static_cast<std::make_unsigned_t<Number>>(value >> 8);
    }
}

} // namespace morvane
