// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/picture.h"

#include "base/errors.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stb/stb_image_write.h>

namespace morvane::raster {

namespace {

unsigned channel(Colour colour, unsigned shift) {
    return colour >> shift & 0xFF;
}

unsigned channel_of(double part) {
    return std::isfinite(part)
               ? static_cast<unsigned>(std::floor(std::clamp(part, 0.0, 1.0) * 255 + 0.5))
               : 0;
}

} // namespace

Colour colour_of_parts(double red, double green, double blue, double alpha) {
    return colour_of(channel_of(red), channel_of(green), channel_of(blue), channel_of(alpha));
}

Colour mixed(Colour a, Colour b, unsigned part) {
    const auto mix = [&](unsigned shift) {
        return (channel(a, shift) * part + channel(b, shift) * (256 - part)) >> 8;
    };
    return colour_of(mix(16), mix(8), mix(0));
}

Colour darkened(Colour colour, unsigned part) {
    const auto scaled = [&](unsigned shift) { return channel(colour, shift) * part >> 8; };
    return colour_of(scaled(16), scaled(8), scaled(0), channel(colour, 24));
}

void clear(Picture& picture, const PictureSize& size, Colour colour) {
    picture.size = {std::clamp(size.width, 1, max_picture_side),
                    std::clamp(size.height, 1, max_picture_side)};
    const std::size_t count = picture.at(0, picture.size.height);
    picture.pixels.assign(count, colour);
    picture.depths.assign(count, -std::numeric_limits<float>::max());
    picture.ids.assign(count, no_id);
}

std::uint32_t id_at(const Picture& picture, int x, int y, int reach) {
    for (int ring = 0; ring <= reach; ++ring) {
        for (int dy = -ring; dy <= ring; ++dy) {
            // Only the rim of the square: what is inside was looked at before.
            const int step = dy == -ring || dy == ring || ring == 0 ? 1 : 2 * ring;
            for (int dx = -ring; dx <= ring; dx += step) {
                if (picture.inside(x + dx, y + dy) &&
                    picture.ids[picture.at(x + dx, y + dy)] != no_id) {
                    return picture.ids[picture.at(x + dx, y + dy)];
                }
            }
        }
    }
    return no_id;
}

Picture halved(const Picture& picture) {
    Picture result;
    clear(result, {picture.size.width / 2, picture.size.height / 2}, 0);
    for (int y = 0; y < result.size.height && 2 * y + 1 < picture.size.height; ++y) {
        for (int x = 0; x < result.size.width && 2 * x + 1 < picture.size.width; ++x) {
            const std::size_t first = picture.at(2 * x, 2 * y);
            const std::size_t below = picture.at(2 * x, 2 * y + 1);
            const auto mean = [&](unsigned shift) {
                return (channel(picture.pixels[first], shift) +
                        channel(picture.pixels[first + 1], shift) +
                        channel(picture.pixels[below], shift) +
                        channel(picture.pixels[below + 1], shift) + 2) /
                       4;
            };
            result.pixels[result.at(x, y)] = colour_of(mean(16), mean(8), mean(0));
        }
    }
    return result;
}

namespace {

void append(void* context, void* data, int size) {
    static_cast<std::string*>(context)->append(static_cast<const char*>(data),
                                               static_cast<std::size_t>(size));
}

} // namespace

std::string png_bytes(const Picture& picture) {
    std::string channels;
    channels.reserve(picture.pixels.size() * 3);
    for (const Colour pixel : picture.pixels) {
        for (const unsigned shift : {16U, 8U, 0U}) {
            channels += static_cast<char>(pixel >> shift & 0xFF);
        }
    }
    std::string bytes;
    if (stbi_write_png_to_func(append, &bytes, picture.size.width, picture.size.height, 3,
                               channels.data(), picture.size.width * 3) == 0) {
        throw RuntimeError(ErrorNumber::OutOfMemory, "a picture");
    }
    return bytes;
}

} // namespace morvane::raster
