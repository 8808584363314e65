// SPDX-License-Identifier: GPL-3.0-or-later
#include "bgl/library_objects.h"

#include "base/errors.h"
#include "bgl/bgl_file.h"
#include "system/disk.h"

#include <algorithm>
#include <string_view>

namespace morvane {

namespace {

/// Reads a file forward from a place, which may be outside the file, where all bytes are zero.
/// Reads a little ahead: an index and the records near it take one call of the system, not one for
/// each.
class Reader {
  public:
    Reader(ReadableFile& file, std::int64_t offset) : file_(file), offset_(offset) {}

    void go_to(std::int64_t offset) { offset_ = offset; }
    // Forward only: a count of zero or less stays in place.
    void skip(std::int64_t count) { offset_ += std::max<std::int64_t>(count, 0); }

    /// The next bytes, at most `read_ahead_size`; they are valid until the next call.
    std::string_view next(std::size_t count) {
        if (offset_ < window_offset_ || offset_ + length(count) > window_offset_ + filled_) {
            fill();
        }
        const std::string_view bytes(&window_[static_cast<std::size_t>(offset_ - window_offset_)],
                                     count);
        offset_ += length(count);
        return bytes;
    }

  private:
    static std::int64_t length(std::size_t count) { return static_cast<std::int64_t>(count); }

    void fill() {
        window_.fill('\0');
        window_offset_ = offset_;
        filled_ = length(window_.size());
        const std::int64_t first = std::max<std::int64_t>(offset_, 0);
        const std::int64_t last =
            std::min(offset_ + filled_, static_cast<std::int64_t>(file_.size()));
        if (first < last) {
            file_.read_at(static_cast<std::uint64_t>(first),
                          &window_[static_cast<std::size_t>(first - offset_)],
                          static_cast<std::size_t>(last - first));
        }
    }

    ReadableFile& file_;
    std::int64_t offset_;
    std::int64_t window_offset_ = 0;
    std::int64_t filled_ = 0;
    std::array<char, read_ahead_size> window_;
};

// The offsets of the objects' records, up to the first that is zero.
std::vector<std::int32_t> read_index(Reader& reader) {
    std::vector<std::int32_t> offsets;
    while (offsets.size() < max_index_entries) {
        const auto offset = little_endian<std::int32_t>(reader.next(index_entry_size), 0);
        if (offset == 0) {
            break;
        }
        offsets.push_back(offset);
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

// Reads a name of `length` bytes and keeps what fits; the reader is then after the whole name.
std::string read_name(Reader& reader, std::int64_t length) {
    const auto kept = static_cast<std::size_t>(
        std::clamp<std::int64_t>(length, 0, static_cast<std::int64_t>(object_name_size)));
    const std::string_view bytes = reader.next(kept);
    std::string name(bytes.substr(0, bytes.find('\0')));
    name.resize(object_name_size, ' ');
    reader.skip(length - static_cast<std::int64_t>(kept));
    return name;
}

LibraryObject read_object(Reader& reader) {
    LibraryObject object = decode_object(reader.next(object_record_size));
    object.name = read_name(reader, std::int64_t{object.record_length} -
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
    Reader reader(file, header.FL_library_ptr);
    const std::vector<std::int32_t> offsets = read_index(reader);
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
    reader.go_to(std::int64_t{header.FL_library_ptr} + offsets[0]);
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        listing.objects.push_back(read_object(reader));
        if (i + 1 < offsets.size()) {
            reader.skip(std::int64_t{offsets[i + 1]} - offsets[i] -
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
