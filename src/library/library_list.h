// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/guid128.h"
#include "system/services.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace morvane {

/// The stored scale of an object in its own size.
constexpr double unit_scale = 65536;

inline constexpr std::size_t max_library_entries = 100;
inline constexpr std::size_t max_object_name = 47; // bytes

/// An object as it will be in the library.
struct LibraryEntry {
    Guid128 guid{};
    std::uint8_t image_power = 0;  // up to 100: from how far the object is seen
    std::int32_t object_size = 0;  // maximum diameter in scale units
    std::int32_t stored_scale = 0; // unit_scale / scale
    std::int32_t object_type = 0;
    std::int32_t fourth_dword = 0; // stays 0
    std::string name;              // at most 47 bytes, Windows-1252

    bool operator==(const LibraryEntry&) const = default;
};

/// A line of the visible list.
struct LibraryLine {
    std::string base;      // the design's path without an ending, for the include line; UTF-8
    std::string location;  // where its files are found from here; mostly the same
    std::size_t entry = 0; // number of its entry, from 0
};

/// The objects of a library. Entries are numbered in the order of adding; removing a line leaves
/// its entry behind, which is no longer referenced but still counts against the bound.
struct LibraryList {
    std::vector<LibraryEntry> entries;
    std::vector<LibraryLine> lines;

    const LibraryEntry& entry_of(const LibraryLine& line) const { return entries.at(line.entry); }
};

/// The texts of the frame "New Object Details".
struct LibraryFields {
    std::string libFileAdd;
    std::string libGUID = "0AAAAAAAA, 0AAAAAAAA, 0AAAAAAAA, 000000001";
    std::string libScale;
    std::string libObjSize;
    std::string libObjName = "NewObject";
    std::string libImgPwr;
    std::string libObjType;
};

/// "Add to List": appends a line and its entry. False after a message box; then the list is as it
/// was.
bool add_library_object(const Services& services, LibraryList& list, const LibraryFields& fields);

/// "Modify": fills the entry of line `selected` (from 0; any other when none is selected) anew;
/// its file stays. False after a message box.
bool modify_library_object(const Services& services, LibraryList& list, std::size_t selected,
                           const LibraryFields& fields);

/// "Remove File". Nothing happens when no line is selected.
void remove_library_object(LibraryList& list, std::size_t selected);

/// The fields that show the entry of a line. Putting them into the entry again leaves it as it is.
/// Throws SubscriptOutOfRange for a line that is not there.
LibraryFields fields_of(const LibraryList& list, std::size_t selected);

/// 65536 / scale, rounded. Throws DivisionByZero and Overflow.
std::int32_t to_stored_scale(double scale);

/// What is wrong with a name, as the text of a message; empty when nothing is.
std::string object_name_problem(std::string_view name);

} // namespace morvane
