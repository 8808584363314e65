// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bgl/bgl_file.h"
#include "scene/shape.h"
#include "system/disk.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace morvane::scene {

/// Where an object of a library is in its file. Small, so that a library of thousands can be listed
/// at once and its objects drawn one by one as they come into view.
struct ObjectPlace {
    std::string name; // without the blanks around; empty in the older form of record
    Guid128 guid{};
    double metres_per_unit = 1;
    double size = 0;        // metres, as the record says
    std::uint64_t code = 0; // offset of the drawing code in the file
    std::uint64_t code_length = 0;
};

/// The objects of a library file in the order of its index, at most `max_library_objects`. Records
/// that are outside the file are omitted. Empty for a file that is no library, is compressed, or is
/// not a BGL file at all. Throws RuntimeError when the file cannot be read.
std::vector<ObjectPlace> list_object_places(ReadableFile& file);

/// Whether it is a BGL file that has to be unpacked before its objects can be read.
bool is_compressed(ReadableFile& file);

/// Reads and draws the code of one object.
Shape read_shape(ReadableFile& file, const ObjectPlace& place);

/// All objects of a library file, for the calls in a scene. Of two with one identifier the first
/// counts.
void add_to_catalogue(Catalogue& catalogue, ReadableFile& file);

} // namespace morvane::scene
