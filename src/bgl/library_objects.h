// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/guid128.h"
#include "bgl/bgl_file.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace morvane {

inline constexpr std::size_t max_index_entries = 20000;
inline constexpr std::size_t max_library_objects = 2000;
inline constexpr std::size_t index_entry_size = 20;
inline constexpr std::size_t object_record_size = 41; // without the name
inline constexpr std::size_t object_name_size = 47;
inline constexpr std::size_t read_ahead_size = 8192;

/// One object as its library lists it.
struct LibraryObject {
    Guid128 guid{};
    std::uint8_t image_power = 0;
    std::int32_t record_length = 0; // bytes, fixed part and name together
    // Length of the drawing code in bytes, size of the object in metres, properties: not used here.
    std::int32_t unused_21 = 0;
    std::int32_t unused_25 = 0;
    std::int32_t stored_scale = 0; // 65536 / scale, 0 = no scale
    std::int32_t type = 0;
    std::int32_t unused_37 = 0;
    std::string name; // `object_name_size` bytes, padded with blanks

    bool operator==(const LibraryObject&) const = default;
};

/// What is known of the objects of a file.
struct Listing {
    enum class State { NotABgl, Invalid, NoLibrary, Compressed, Listed };
    State state = State::NotABgl;
    std::vector<LibraryObject> objects{}; // in the order of the file's index
};

/// Reads the objects of an open file.
///
/// Nothing the file says is trusted: what is outside it reads as zeros, and no more is read than
/// index, records, the kept part of each name and at most `read_ahead_size` bytes after any of
/// them. Throws SubscriptOutOfRange for more than
/// `max_library_objects`, saying how many.
Listing read_library_objects(ReadableFile& file, const BglHeader& header);

/// read_library_objects for a file that open_bgl opened; the range error names the file.
Listing list_objects(const std::string& path, const OpenedBgl& bgl);

/// open_bgl and list_objects. Throws RuntimeError when a file that is there cannot be read.
Listing list_library(Disk& disk, const std::string& path, InvalidFileList& invalid_files);

} // namespace morvane
