// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bgl/header.h"
#include "bgl/library_objects.h"
#include "bgl/output_box.h"

#include <cstdint>
#include <string>

namespace morvane {

/// Writes what a header says, line by line. The extension counts only when `FL_magic` is not 0.
/// An invalid header gives one line that says so.
void report_header(OutputBox& box, const BglHeader& header, const HeaderExtension& extension,
                   bool show_raw);

/// Writes every field of a header, and of the extension when `FL_magic` is not 0, in hexadecimal.
void dump_raw_header(OutputBox& box, const BglHeader& header, const HeaderExtension& extension);

/// Raw latitude as degrees, north positive.
double lat_degrees(std::int32_t raw);
/// Raw longitude as degrees, east positive.
double lon_degrees(std::int32_t raw);
/// Degrees as "d* m": whole degrees rounded down and positive minutes, so that -1.5 is "-2* 30.0".
std::string deg_min_text(double degrees);

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
