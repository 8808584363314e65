// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace morvane {

/// One source line split up: element 0 is the keyword ("com" for a comment line), elements 1, 2,
/// ... its operands. The elements are views into the line that was split.
class FieldArray {
  public:
    static constexpr std::size_t max_operands = 40;

    /// Element `index` (0 .. 40); empty text for one that the line does not have. Throws
    /// SubscriptOutOfRange beyond 40.
    std::string_view operator[](std::size_t index) const;
    /// Number of operands stored.
    std::size_t count() const { return count_; }

    void set_keyword(std::string_view keyword) { elements_[0] = keyword; }
    /// Throws SubscriptOutOfRange for the 41st operand.
    void add_operand(std::string_view operand);

  private:
    std::array<std::string_view, max_operands + 1> elements_{};
    std::size_t count_ = 0;
};

/// Splits a line into keyword and operands.
///
/// The bounds are deliberate: the last operand of a line loses its last character, a last operand
/// of one character is not stored at all, an operand ended by ";" keeps a blank before it, and the
/// text after a ";" is taken up as a further operand. Every consumer counts on them.
///
/// Throws SubscriptOutOfRange when the line has more than 40 operands.
FieldArray split_fields(std::string_view line);

/// split_fields and one element (0 .. 40) of it.
std::string_view get_field(std::string_view line, std::size_t index);

/// Whether split_fields would refuse the line for its number of operands.
bool has_too_many_operands(std::string_view line);

} // namespace morvane
