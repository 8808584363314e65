#include "bgl/library_objects.h"

#include "base/errors.h"
#include "bgl/little_endian.h"
#include "system/disk.h"

#include <algorithm>
#include <string_view>

namespace morvane {

namespace {

/// The place up to which a file was read. It may be outside the file, where all bytes are zero.
struct ReadPosition {
    ReadableFile& file;
    std::int64_t offset;
};

// Fills `buffer` with the next `count` bytes.
void read_bytes_at(ReadPosition& at, char* buffer, std::size_t count) {
    std::fill_n(buffer, count, '\0');
    const auto size = static_cast<std::int64_t>(at.file.size());
    const auto length = static_cast<std::int64_t>(count);
    const std::int64_t first = std::max<std::int64_t>(at.offset, 0);
    const std::int64_t last = std::min(at.offset + length, size);
    if (first < last) {
        at.file.read_at(static_cast<std::uint64_t>(first), buffer + (first - at.offset),
                        static_cast<std::size_t>(last - first));
    }
    at.offset += length;
}

// Goes forward only: a count of zero or less stays in place.
void skip_bytes(ReadPosition& at, std::int64_t count) {
    at.offset += std::max<std::int64_t>(count, 0);
}

// How many index entries to read at once: all that come before the first object record, so that
// nothing after the index is read for nothing, but never more than the buffer holds.
std::size_t entries_at_once(const std::vector<std::int32_t>& offsets, std::size_t buffered) {
    const auto known = static_cast<std::int64_t>(offsets.size());
    const std::int64_t before_records =
        offsets.empty() ? 0 : offsets[0] / static_cast<std::int64_t>(index_entry_size) - known;
    return static_cast<std::size_t>(
        std::clamp<std::int64_t>(before_records, 1, static_cast<std::int64_t>(buffered)));
}

// The offsets of the objects' records, up to the first that is zero.
std::vector<std::int32_t> read_index(ReadPosition at) {
    constexpr std::size_t buffered = 64;
    std::array<char, buffered * index_entry_size> buffer;
    std::vector<std::int32_t> offsets;
    while (offsets.size() < max_index_entries) {
        const std::size_t count =
            std::min(entries_at_once(offsets, buffered), max_index_entries - offsets.size());
        read_bytes_at(at, buffer.data(), count * index_entry_size);
        const std::string_view bytes(buffer.data(), count * index_entry_size);
        for (std::size_t i = 0; i < count; ++i) {
            const auto offset = little_endian<std::int32_t>(bytes, i * index_entry_size);
            if (offset == 0) {
                return offsets;
            }
            offsets.push_back(offset);
        }
    }
    return offsets;
}

LibraryObject decode_object(std::string_view record) {
    LibraryObject object;
    for (std::size_t i = 0; i < object.guid.size(); ++i) {
        object.guid[i] = little_endian<std::int32_t>(record, 4 * i);
    }
    object.image_power = static_cast<std::uint8_t>(record[16]);
    object.record_length = little_endian<std::int32_t>(record, 17);
    object.unused_21 = little_endian<std::int32_t>(record, 21);
    object.unused_25 = little_endian<std::int32_t>(record, 25);
    object.stored_scale = little_endian<std::int32_t>(record, 29);
    object.type = little_endian<std::int32_t>(record, 33);
    object.unused_37 = little_endian<std::int32_t>(record, 37);
    return object;
}

// Reads a name of `length` bytes and keeps what fits; the position is then after the whole name.
std::string read_name(ReadPosition& at, std::int64_t length) {
    std::string name(object_name_size, '\0');
    const auto kept = static_cast<std::size_t>(
        std::clamp<std::int64_t>(length, 0, static_cast<std::int64_t>(object_name_size)));
    read_bytes_at(at, name.data(), kept);
    skip_bytes(at, length - static_cast<std::int64_t>(kept));
    const std::size_t end = std::min(name.find('\0'), kept);
    name.resize(end);
    name.resize(object_name_size, ' ');
    return name;
}

LibraryObject read_object(ReadPosition& at) {
    std::array<char, object_record_size> record;
    read_bytes_at(at, record.data(), record.size());
    LibraryObject object = decode_object({record.data(), record.size()});
    object.name = read_name(at, std::int64_t{object.record_length} -
                                    static_cast<std::int64_t>(object_record_size));
    return object;
}

} // namespace

Listing read_library_objects(ReadableFile& file, const BglHeader& header) {
    if (header.FL_library_ptr == 0) {
        return {Listing::State::NoLibrary};
    }
    if (header.FL_spare2 != 0) {
        return {Listing::State::Compressed};
    }
    const std::vector<std::int32_t> offsets = read_index({file, header.FL_library_ptr});
    if (offsets.size() > max_library_objects) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange,
                           "more than " + std::to_string(max_library_objects) + " library objects");
    }
    Listing listing{Listing::State::Listed};
    if (offsets.empty()) {
        return listing;
    }
    // Records are read one after another: an index offset says how far it is to the next one, and
    // one that leads back is not followed.
    ReadPosition at{file, std::int64_t{header.FL_library_ptr} + offsets[0]};
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        listing.objects.push_back(read_object(at));
        if (i + 1 < offsets.size()) {
            skip_bytes(at, std::int64_t{offsets[i + 1]} - offsets[i] -
                               listing.objects.back().record_length);
        }
    }
    return listing;
}

Listing list_objects(const std::string& path, const OpenedBgl& bgl) {
    try {
        return read_library_objects(*bgl.file, bgl.header);
    } catch (const RuntimeError& error) {
        if (error.code() != ErrorNumber::SubscriptOutOfRange) {
            throw;
        }
        throw RuntimeError(error.code(), path + " holds " + error.about());
    }
}

Listing list_library(Disk& disk, const std::string& path, InvalidFileList& invalid_files) {
    const OpenedBgl bgl = open_bgl(disk, path, invalid_files);
    switch (bgl.state) {
    case BglState::Valid:
        return list_objects(path, bgl);
    case BglState::Invalid:
        return {Listing::State::Invalid};
    default:
        return {Listing::State::NotABgl};
    }
}

} // namespace morvane
