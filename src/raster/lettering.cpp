// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/lettering.h"

#include "raster/lines.h"

#include <array>
#include <cstring>
#include <stb/stb_easy_font.h>
#include <string>

namespace morvane::raster {

namespace {

// What the font knows.
std::string printable(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        if (c < ' ' || c > '~') {
            c = '?';
        }
    }
    return result;
}

// A letter is made of rectangles, each of four of these.
struct Vertex {
    float x = 0;
    float y = 0;
    float z = 0;
    std::array<unsigned char, 4> colour{};
};

} // namespace

int text_width(std::string_view text, int size) {
    std::string letters = printable(text);
    return stb_easy_font_width(letters.data()) * size;
}

void draw_text(Picture& picture, int x, int y, std::string_view text, Colour colour, int size) {
    std::string letters = printable(text);
    std::vector<Vertex> vertices(letters.size() * 80 + 80);
    const int count = stb_easy_font_print(0, 0, letters.data(), nullptr, vertices.data(),
                                          static_cast<int>(vertices.size() * sizeof(Vertex)));
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        const Vertex& first = vertices[4 * i];
        const Vertex& last = vertices[4 * i + 2];
        fill_rectangle(picture, x + static_cast<int>(first.x) * size,
                       y + static_cast<int>(first.y) * size,
                       static_cast<int>(last.x - first.x) * size,
                       static_cast<int>(last.y - first.y) * size, colour);
    }
}

} // namespace morvane::raster
