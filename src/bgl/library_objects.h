#pragma once

#include "base/guid128.h"
#include "bgl/open_bgl.h"

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

/// Reads the objects of an open file in the order of its index, replacing `entries`, of which
/// number 1 is the first element. Gives their number, `no_library_data` or `compressed_library`.
///
/// Nothing the file says is trusted: what lies outside it reads as zeros, and no more is read than
/// index, records and what is kept of the names. Throws SubscriptOutOfRange for more than
/// `max_library_objects`, saying how many.
int read_library_objects(ReadableFile& file, const BglHeader& header,
                         std::vector<LibraryObject>& entries);

/// read_library_objects for a file that open_bgl opened; the range error names the file.
int list_objects(const std::string& path, const OpenedBgl& bgl,
                 std::vector<LibraryObject>& entries);

/// open_bgl and list_objects; gives also `not_a_bgl_name` and `invalid_bgl`. Throws
/// RuntimeError when a file that is there cannot be read.
int list_library(Disk& disk, const std::string& path, InvalidFileList& invalid_files,
                 std::vector<LibraryObject>& entries);

} // namespace morvane
