#pragma once

#include "bgl/library_objects.h"

#include <string>

namespace morvane {

/// An identifier in the form that a placement takes: four words of nine hexadecimal digits and
/// "h", joined by ",".
std::string guid_text(const Guid128& guid);

/// An object's name without the blanks it is padded with.
std::string object_name(const LibraryObject& object);

/// The line of an object in the report of one file.
std::string analysis_line(const LibraryObject& object);

/// The line of an object in the report of a search: no blanks, no image power.
std::string search_line(const LibraryObject& object);

} // namespace morvane
