// SPDX-License-Identifier: GPL-3.0-or-later
#include "drawing_code.h"

#include <cstring>

namespace morvane::test {

DrawingCode& DrawingCode::number(std::int64_t value, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
        bytes_ += static_cast<char>(value >> (8 * i) & 0xFF);
    }
    return *this;
}

DrawingCode& DrawingCode::real(float value) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    return dword(bits);
}

DrawingCode& DrawingCode::vector(const std::array<float, 3>& v) {
    return real(v[0]).real(v[1]).real(v[2]);
}

DrawingCode& DrawingCode::text(std::string_view text, std::size_t size) {
    std::string padded(text);
    padded.resize(size);
    bytes_ += padded;
    return *this;
}

DrawingCode& DrawingCode::vertices(const std::vector<std::array<float, 3>>& places) {
    word(0xB5).word(static_cast<int>(places.size())).dword(0);
    for (const auto& place : places) {
        vector(place).vector({0, 1, 0}).real(0).real(0);
    }
    return *this;
}

DrawingCode& DrawingCode::materials(const std::vector<CodeMaterial>& materials) {
    word(0xB6).word(static_cast<int>(materials.size())).dword(0);
    for (const CodeMaterial& m : materials) {
        vector({m.diffuse[0], m.diffuse[1], m.diffuse[2]}).real(m.diffuse[3]);
        vector(m.ambient).real(1);
        vector({0, 0, 0}).real(1);
        vector({0, 0, 0}).real(1).real(0);
    }
    return *this;
}

DrawingCode& DrawingCode::textures(const std::vector<std::string>& names) {
    word(0xB7).word(static_cast<int>(names.size())).dword(0);
    for (const std::string& name : names) {
        dword(6).dword(-1).dword(0).real(10).text(name, 64);
    }
    return *this;
}

DrawingCode& DrawingCode::material(int number, int texture) {
    return word(0xB8).word(number).word(texture);
}

DrawingCode& DrawingCode::triangles(const std::vector<int>& numbers, int base, int count) {
    word(0xB9).word(base).word(count).word(static_cast<int>(numbers.size()));
    for (const int n : numbers) {
        word(n);
    }
    return *this;
}

DrawingCode& DrawingCode::box(float width, float height, float depth, float x, float y, float z) {
    std::vector<std::array<float, 3>> corners;
    for (unsigned i = 0; i < 8; ++i) {
        corners.push_back({x + ((i & 1) != 0 ? width : -width) / 2, y + ((i & 2) != 0 ? height : 0),
                           z + ((i & 4) != 0 ? depth : -depth) / 2});
    }
    vertices(corners);
    return triangles({0, 2, 3, 0, 3, 1, 4, 5, 7, 4, 7, 6, 0, 1, 5, 0, 5, 4,
                      2, 6, 7, 2, 7, 3, 0, 4, 6, 0, 6, 2, 1, 3, 7, 1, 7, 5});
}

DrawingCode& DrawingCode::matrix(const std::array<float, 3>& by, const std::array<float, 9>& rows) {
    word(0xAF).vector(by);
    for (const float r : rows) {
        real(r);
    }
    return *this;
}

} // namespace morvane::test
