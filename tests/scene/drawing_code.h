// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace morvane::test {

struct CodeMaterial {
    std::array<float, 4> diffuse{1, 1, 1, 1};
    std::array<float, 3> ambient{1, 1, 1};
};

/// Drawing code of a library object, put together command by command. The tests' own way to write
/// numbers, so that they do not go by the code they test.
class DrawingCode {
  public:
    DrawingCode& word(std::int64_t value) { return number(value, 2); }
    DrawingCode& dword(std::int64_t value) { return number(value, 4); }
    DrawingCode& real(float value);
    DrawingCode& vector(const std::array<float, 3>& v);
    DrawingCode& text(std::string_view text, std::size_t size);

    /// Places only: normals up, no texture coordinates.
    DrawingCode& vertices(const std::vector<std::array<float, 3>>& places);
    DrawingCode& materials(const std::vector<CodeMaterial>& materials);
    DrawingCode& textures(const std::vector<std::string>& names);
    DrawingCode& material(int number, int texture = -1);
    /// Numbers of vertices, three to a triangle.
    DrawingCode& triangles(const std::vector<int>& numbers, int base = 0, int count = 1000);
    /// A box that stands on the ground, with its own vertex list and 12 triangles.
    DrawingCode& box(float width, float height, float depth, float x = 0, float y = 0, float z = 0);
    DrawingCode& matrix(const std::array<float, 3>& by, const std::array<float, 9>& rows);
    DrawingCode& end_matrix() { return word(0xAE); }
    DrawingCode& jump(int distance) { return word(0x0D).word(distance); }
    DrawingCode& call(int distance) { return word(0x23).word(distance); }
    DrawingCode& end() { return word(0x22); } // BGL_RETURN

    std::size_t size() const { return bytes_.size(); }
    const std::string& bytes() const { return bytes_; }

  private:
    DrawingCode& number(std::int64_t value, std::size_t size);

    std::string bytes_;
};

} // namespace morvane::test
