// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/fields.h"
#include "source/open_set.h"

#include <cstddef>
#include <string_view>

namespace morvane {

/// A triangle of a block.
struct BlockTriangle {
    FieldArray fields;         // of its DRAW_TRI line: fields 1 to 3 are vertex numbers
    FieldArray vertex;         // of its first vertex: x, y, z, then the normal's x, y, z
    std::size_t next_line = 0; // the model store's index of the line after it
};

/// The lines of a marked material's block as Process walks them: the line after the selecting line
/// opens the block, whatever it holds, and triangles follow. Lines that a windsock has commented
/// out before it was given up count as they were. Views stay valid as long as the model store.
class DrawBlock {
  public:
    /// Stands on the opening line. Throws SubscriptOutOfRange when there is none.
    DrawBlock(const LineStore& model, std::size_t vertex_list, const Translation& material);

    /// Index of the opening line.
    std::size_t first_line() const { return first_line_; }
    /// Index of the line that the walk has come to.
    std::size_t line() const { return line_; }
    void next_line() { ++line_; }

    /// A line of the block as it was before a windsock was given up. Throws SubscriptOutOfRange
    /// beyond the model store.
    std::string_view text(std::size_t index) const;
    /// Whether the walk has come to a DRAW_TRI line. Throws like `text`.
    bool at_triangle() const;
    /// The triangle that the walk has come to. Throws like `vertex`.
    BlockTriangle triangle() const;
    /// Fields of the vertex with a number that a triangle's field gives. Throws
    /// SubscriptOutOfRange when it is no line of the model file, Overflow for a number too large.
    FieldArray vertex(std::string_view number) const;
    /// Index of the line that holds that vertex; it need not be in the model store.
    double vertex_line(std::string_view number) const;

  private:
    const LineStore& model_;
    std::size_t first_line_;
    std::size_t line_;
    std::size_t given_up_;
    double first_vertex_;
};

} // namespace morvane
