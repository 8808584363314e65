// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/content_hash.h"

#include "system/disk.h"
#include "system/file_bytes.h"

#include <array>
#include <cstddef>

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace morvane {

std::string content_hash(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    XXH128_canonical_t canonical{};
    XXH128_canonicalFromHash(&canonical, XXH3_128bits(bytes.data(), bytes.size()));
    std::string text;
    for (const unsigned char byte : canonical.digest) {
        text += digits[byte >> 4U];
        text += digits[byte & 15U];
    }
    return text;
}

std::string file_hash(Disk& disk, const std::string& path) {
    return content_hash(read_bytes(disk, path).view());
}

} // namespace morvane
