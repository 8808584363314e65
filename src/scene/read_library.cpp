// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/read_library.h"

#include "base/text.h"
#include "bgl/bgl_file.h"
#include "bgl/library_objects.h"
#include "scene/read_object.h"

#include <algorithm>
#include <optional>

namespace morvane::scene {

namespace {

constexpr std::uint64_t old_record_size = 19;
constexpr std::uint64_t largest_code = 1 << 24; // of one object; 20,000 commands are far less
constexpr std::size_t largest_name = 4096;

// Fewer bytes at the end of the file.
std::string bytes_at(ReadableFile& file, std::uint64_t offset, std::uint64_t count) {
    const std::uint64_t size = file.size();
    std::string bytes(static_cast<std::size_t>(offset < size ? std::min(count, size - offset) : 0),
                      '\0');
    bytes.resize(file.read_at(offset, bytes.data(), bytes.size()));
    return bytes;
}

std::optional<BglHeader> read_header(ReadableFile& file) {
    const std::string bytes = bytes_at(file, 0, header_size);
    if (bytes.size() < header_size) {
        return std::nullopt;
    }
    const BglHeader header = decode_header(bytes);
    return is_valid_bgl(header) ? std::optional(header) : std::nullopt;
}

// The library section's offset; std::nullopt when there is none that can be read.
std::optional<std::uint64_t> library_start(ReadableFile& file) {
    const auto header = read_header(file);
    if (!header || header->FL_library_ptr <= 0 || header->FL_spare2 != 0) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(header->FL_library_ptr);
}

std::vector<std::uint64_t> record_offsets(ReadableFile& file, std::uint64_t start) {
    const std::string index = bytes_at(file, start, max_index_entries * index_entry_size);
    std::vector<std::uint64_t> result;
    for (std::size_t at = 0; at + index_entry_size <= index.size(); at += index_entry_size) {
        const auto offset = little_endian<std::int32_t>(index, at);
        if (offset == 0 || result.size() == max_library_objects) {
            break;
        }
        if (offset > 0) {
            result.push_back(start + static_cast<std::uint64_t>(offset));
        }
    }
    return result;
}

// The older form has identifiers of small numbers and no name; the code goes on to the next record.
bool is_old(const Guid128& guid) {
    return guid == Guid128{1, 2, 3, 4};
}

ObjectPlace read_place(ReadableFile& file, std::uint64_t offset, std::uint64_t next) {
    const std::string record = bytes_at(file, offset, object_record_size + largest_name);
    ObjectPlace place;
    if (record.size() < object_record_size) {
        return place;
    }
    for (std::size_t i = 0; i < place.guid.size(); ++i) {
        place.guid[i] = little_endian<std::int32_t>(record, 4 * i);
    }
    if (is_old(place.guid)) {
        place.code = offset + old_record_size;
        place.code_length = next > place.code ? next - place.code : 0;
        return place;
    }
    const auto length = little_endian<std::int32_t>(record, 17);
    const auto code_length = little_endian<std::int32_t>(record, 21);
    const auto stored_scale = little_endian<std::int32_t>(record, 29);
    place.size = little_endian<std::int32_t>(record, 25);
    place.metres_per_unit = stored_scale > 0 ? 65536.0 / stored_scale : 1;
    if (length < static_cast<std::int32_t>(object_record_size) || code_length < 0) {
        return place;
    }
    const std::string_view name(record);
    place.name = trim(
        name.substr(object_record_size, static_cast<std::size_t>(length) - object_record_size));
    place.name = place.name.substr(0, place.name.find('\0'));
    place.code = offset + static_cast<std::uint64_t>(length);
    place.code_length = static_cast<std::uint64_t>(code_length);
    return place;
}

} // namespace

std::vector<ObjectPlace> list_object_places(ReadableFile& file) {
    const auto start = library_start(file);
    if (!start) {
        return {};
    }
    const std::vector<std::uint64_t> offsets = record_offsets(file, *start);
    std::vector<std::uint64_t> sorted = offsets;
    sorted.push_back(file.size());
    std::sort(sorted.begin(), sorted.end());
    std::vector<ObjectPlace> result;
    for (const std::uint64_t offset : offsets) {
        const auto next = std::upper_bound(sorted.begin(), sorted.end(), offset);
        const ObjectPlace place = read_place(file, offset, next == sorted.end() ? offset : *next);
        if (place.code != 0) {
            result.push_back(place);
        }
    }
    return result;
}

bool is_compressed(ReadableFile& file) {
    const auto header = read_header(file);
    return header && header->FL_spare2 != 0;
}

Shape read_shape(ReadableFile& file, const ObjectPlace& place) {
    Shape shape;
    shape.name = place.name;
    shape.guid = place.guid;
    shape.metres_per_unit = place.metres_per_unit;
    shape.size = place.size;
    const std::string code = bytes_at(file, place.code, std::min(place.code_length, largest_code));
    read_object(code, shape);
    if (shape.trouble.empty() && code.size() < place.code_length) {
        shape.trouble = "the file ends in the object's code";
    }
    return shape;
}

void add_to_catalogue(Catalogue& catalogue, ReadableFile& file) {
    for (const ObjectPlace& place : list_object_places(file)) {
        if (!catalogue.contains(place.guid)) {
            catalogue.emplace(place.guid, read_shape(file, place));
        }
    }
}

} // namespace morvane::scene
