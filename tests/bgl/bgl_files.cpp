// SPDX-License-Identifier: GPL-3.0-or-later
#include "bgl_files.h"

#include <algorithm>

namespace morvane::test {

namespace {

// The tests' own way to put a number into a file, so that they do not go by the code they test.
template <typename Number>
void put(std::string& bytes, std::size_t offset, Number number) {
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        bytes[offset + i] =
            static_cast<char>((static_cast<std::uint32_t>(number) >> (8 * i)) & 255);
    }
}

std::string record(const ObjectSpec& object) {
    std::string bytes(41, '\0');
    for (std::size_t i = 0; i < 4; ++i) {
        put(bytes, 4 * i, object.guid[i]);
    }
    bytes[16] = static_cast<char>(object.power);
    put(bytes, 17, static_cast<std::int32_t>(41 + object.name.size()));
    put(bytes, 21, static_cast<std::int32_t>(object.code.size()));
    put(bytes, 25, 40);
    put(bytes, 29, object.stored_scale);
    put(bytes, 33, object.type);
    put(bytes, 37, 2);
    return bytes + object.name + object.code;
}

std::string old_record(const ObjectSpec& object) {
    return record(object).substr(0, 17) + "\x01\x02" + object.code;
}

std::string file_of(LibrarySpec spec, std::string (*make_record)(const ObjectSpec&)) {
    spec.header.FL_library_ptr = static_cast<std::int32_t>(spec.library_start);
    std::string file = encode(spec.header);
    if (spec.header.FL_magic != 0) {
        file += encode(spec.extension);
    }
    file.resize(spec.library_start, '\xEE');
    std::string index((spec.objects.size() + 1) * 20, '\0');
    std::string records;
    for (std::size_t i = 0; i < spec.objects.size(); ++i) {
        put(index, 20 * i, static_cast<std::int32_t>(index.size() + records.size()));
        for (std::size_t word = 0; word < 4; ++word) {
            put(index, 20 * i + 4 + 4 * word, spec.objects[i].guid[word]);
        }
        records += make_record(spec.objects[i]);
    }
    return file + index + records;
}

} // namespace

std::string encode(const BglHeader& header) {
    std::string bytes(128, '\0');
    for_each_field(header, [&](std::size_t offset, const char* /*name*/, auto field) {
        put(bytes, offset, field);
    });
    return bytes;
}

std::string encode(const HeaderExtension& extension) {
    std::string bytes(40, '\0');
    for_each_field(extension, [&](std::size_t offset, const char* /*name*/, auto field) {
        put(bytes, offset - 128, field);
    });
    return bytes;
}

std::string library_file(const LibrarySpec& spec) {
    return file_of(spec, record);
}

std::string old_library_file(const LibrarySpec& spec) {
    return file_of(spec, old_record);
}

std::string object_file() {
    return encode(BglHeader{.FL_world_set = 1, .FL_object_ptr = 128}) + "objects";
}

LibraryObject listed(const ObjectSpec& spec) {
    LibraryObject object;
    object.guid = spec.guid;
    object.image_power = spec.power;
    object.record_length = static_cast<std::int32_t>(41 + spec.name.size());
    object.unused_21 = static_cast<std::int32_t>(spec.code.size());
    object.unused_25 = 40;
    object.stored_scale = spec.stored_scale;
    object.type = spec.type;
    object.unused_37 = 2;
    object.name = spec.name.substr(0, std::min<std::size_t>(47, spec.name.find('\0')));
    object.name.resize(47, ' ');
    return object;
}

std::vector<ObjectSpec> random_objects(std::mt19937& random, std::size_t count) {
    std::vector<ObjectSpec> objects(count);
    for (ObjectSpec& object : objects) {
        for (std::int32_t& word : object.guid) {
            word = static_cast<std::int32_t>(random());
        }
        object.power = static_cast<std::uint8_t>(random());
        object.stored_scale = static_cast<std::int32_t>(random());
        object.type = static_cast<std::int32_t>(random());
        object.name.assign(random() % 81, static_cast<char>('A' + random() % 26));
        object.code.assign(random() % 301, static_cast<char>(random()));
    }
    return objects;
}

std::size_t MemoryFile::read_at(std::uint64_t offset, char* buffer, std::size_t count) {
    const auto first = std::min<std::uint64_t>(offset, bytes_.size());
    const std::size_t got = std::min<std::size_t>(count, bytes_.size() - first);
    bytes_.copy(buffer, got, first);
    bytes_read += got;
    ranges.emplace_back(first, first + got);
    return got;
}

Listing list_bytes(const std::string& bytes) {
    std::string start = bytes.substr(0, header_size);
    start.resize(header_size);
    const BglHeader header = decode_header(start);
    if (!is_valid_bgl(header)) {
        return {Listing::State::Invalid};
    }
    MemoryFile file(bytes);
    return read_library_objects(file, header);
}

} // namespace morvane::test
