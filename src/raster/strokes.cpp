// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/strokes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <stb/stb_easy_font.h>
#include <string>
#include <utility>

namespace morvane::raster {

namespace {

// Lines lie in faces, on edges they belong to: they win over what is this much nearer.
float advantage(double depth, bool perspective) {
    return static_cast<float>((perspective ? depth : std::fabs(depth) + 1) * 5e-4);
}

struct Ink {
    const Stroke& stroke;
    bool perspective = false;
};

void put(Picture& picture, int x, int y, double depth, const Ink& ink) {
    if (!picture.inside(x, y)) {
        return;
    }
    const std::size_t at = picture.at(x, y);
    const auto nearness = static_cast<float>(depth);
    if (ink.stroke.depth_tested) {
        if (nearness + advantage(depth, ink.perspective) < picture.depths[at]) {
            return;
        }
        picture.depths[at] = std::max(picture.depths[at], nearness);
    }
    const Colour colour = ink.stroke.colour;
    picture.pixels[at] =
        colour >> 24 == 255 ? colour : mixed(colour, picture.pixels[at], (colour >> 24) + 1);
    if (ink.stroke.id != no_id) {
        picture.ids[at] = ink.stroke.id;
    }
}

// Cuts the line's parameter to where a + t * d is within 0 .. size. False: nowhere.
bool cut(double a, double d, double size, double& first, double& last) {
    if (d == 0) {
        return a >= 0 && a <= size;
    }
    double enter = (0 - a) / d;
    double leave = (size - a) / d;
    if (enter > leave) {
        std::swap(enter, leave);
    }
    first = std::fmax(first, enter);
    last = std::fmin(last, leave);
    return first <= last;
}

Seen between(const Seen& a, const Seen& b, double part) {
    return {a.x + (b.x - a.x) * part, a.y + (b.y - a.y) * part,
            a.depth + (b.depth - a.depth) * part};
}

// One pixel for each step along the longer axis, widened across it.
void walk(Picture& picture, const Seen& from, const Seen& to, const Ink& ink) {
    const bool flat = std::fabs(to.x - from.x) >= std::fabs(to.y - from.y);
    const double length = std::fmax(std::fabs(to.x - from.x), std::fabs(to.y - from.y));
    const int steps = static_cast<int>(length) + 1;
    for (int i = 0; i <= steps; ++i) {
        if (ink.stroke.dashed && i % 10 >= 6) {
            continue;
        }
        const Seen seen = between(from, to, static_cast<double>(i) / steps);
        const int x = static_cast<int>(std::floor(seen.x));
        const int y = static_cast<int>(std::floor(seen.y));
        const int first = -(ink.stroke.width - 1) / 2;
        for (int k = first; k < first + ink.stroke.width; ++k) {
            put(picture, flat ? x : x + k, flat ? y + k : y, seen.depth, ink);
        }
    }
}

void draw_seen(Picture& picture, const Seen& from, const Seen& to, const Ink& ink) {
    double first = 0;
    double last = 1;
    if (cut(from.x, to.x - from.x, picture.size.width, first, last) &&
        cut(from.y, to.y - from.y, picture.size.height, first, last)) {
        walk(picture, between(from, to, first), between(from, to, last), ink);
    }
}

} // namespace

void draw_line(Picture& picture, const Projection& projection, const Vec3& from, const Vec3& to,
               const Stroke& stroke) {
    Vec3 a = projection.view(from);
    Vec3 b = projection.view(to);
    if (!is_finite(a) || !is_finite(b)) {
        return;
    }
    const double near = projection.near_plane();
    if (a.z < near && b.z < near) {
        return;
    }
    const Vec3 crossing = a.z < near || b.z < near ? a + (b - a) * ((near - a.z) / (b.z - a.z)) : a;
    a = a.z < near ? crossing : a;
    b = b.z < near ? crossing : b;
    draw_seen(picture, projection.seen(a), projection.seen(b), {stroke, projection.distance > 0});
}

void draw_flat_line(Picture& picture, double x0, double y0, double x1, double y1,
                    const Stroke& stroke) {
    Stroke flat = stroke;
    flat.depth_tested = false;
    draw_seen(picture, {x0, y0, 0}, {x1, y1, 0}, {flat, false});
}

void draw_disc(Picture& picture, const Projection& projection, const Vec3& place, int radius,
               const Stroke& stroke) {
    const auto seen = project(projection, place);
    if (!seen || std::fabs(seen->x) > 1e6 || std::fabs(seen->y) > 1e6) {
        return;
    }
    const int x = static_cast<int>(std::floor(seen->x));
    const int y = static_cast<int>(std::floor(seen->y));
    for (int dy = -radius; dy <= radius; ++dy) {
        for (int dx = -radius; dx <= radius; ++dx) {
            if (dx * dx + dy * dy <= radius * radius + radius) {
                put(picture, x + dx, y + dy, seen->depth, {stroke, projection.distance > 0});
            }
        }
    }
}

void fill_rectangle(Picture& picture, int x, int y, int width, int height, Colour colour) {
    for (int row = std::max(y, 0); row < std::min(y + height, picture.size.height); ++row) {
        for (int column = std::max(x, 0); column < std::min(x + width, picture.size.width);
             ++column) {
            Colour& pixel = picture.pixels[picture.at(column, row)];
            pixel = colour >> 24 == 255 ? colour : mixed(colour, pixel, (colour >> 24) + 1);
        }
    }
}

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
