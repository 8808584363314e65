// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/png.h"

#include "base/errors.h"

#include <stb/stb_image_write.h>

namespace morvane::raster {

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
