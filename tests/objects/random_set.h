// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/line_store.h"

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace morvane::test {

/// A random source set in the shapes of real exports: marked and plain materials, blocks in any
/// order, materials drawn more than once, odd lines between the blocks and inside them.
class RandomSet {
  public:
    enum class Shape {
        Whole,
        WithoutEnd,   // no BGL_END but those inside blocks
        WithoutPlace, // a frame without placement lines
    };

    /// The same seed gives the same set.
    explicit RandomSet(unsigned seed, Shape shape = Shape::Whole);

    const std::vector<std::string>& model() const { return model_; }
    const std::vector<std::string>& frame() const { return frame_; }
    std::size_t marked() const { return marked_; }
    /// Number of triangles of a marked material (row from 1) where it is first drawn.
    std::size_t triangles(std::size_t row) const { return triangles_.at(row - 1); }
    /// Whether model line `index` (from 1) belongs to the block of that row: its opening line to
    /// the line behind the last triangle.
    bool in_block(std::size_t row, std::size_t index) const;

    /// A whole number from `low` to `high`.
    int pick(int low, int high);
    bool chance(int percent) { return pick(1, 100) <= percent; }

  private:
    struct Block {
        std::size_t first = 0;
        std::size_t last = 0;
    };

    void add_materials();
    void add_vertices();
    void add_draw_code();
    void add_block(std::size_t material, std::size_t row);
    void add_triangle(int number);
    void add_odd_line();
    void add_frame(Shape shape);
    void add(const std::string& text);
    std::string number();

    std::mt19937 random_;
    std::vector<std::string> model_;
    std::vector<std::string> frame_;
    std::vector<std::size_t> row_of_material_; // 0 for a material without a mark
    std::vector<std::size_t> triangles_;
    std::vector<Block> blocks_;
    std::size_t marked_ = 0;
};

/// The lines of a store up to its highest index.
std::vector<std::string> all_lines(const LineStore& store);

} // namespace morvane::test
