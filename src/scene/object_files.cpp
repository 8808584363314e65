// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/object_files.h"

#include "base/errors.h"
#include "base/paths.h"
#include "system/disk.h"

#include <cstdint>
#include <set>
#include <utility>

namespace morvane::scene {

namespace {

Shape unknown_shape(const Guid128& guid, const std::string& why) {
    Shape shape;
    shape.guid = guid;
    shape.trouble = why;
    return shape;
}

std::set<Guid128> called_objects(const std::vector<Mark>& marks, const Catalogue& catalogue) {
    std::set<Guid128> result;
    for (const Mark& mark : marks) {
        if (mark.kind == MarkKind::LibraryCall && !catalogue.contains(mark.guid)) {
            result.insert(mark.guid);
        }
    }
    return result;
}

class UnpackedFile final : public ReadableFile {
  public:
    explicit UnpackedFile(std::shared_ptr<const std::string> bytes) : bytes_(std::move(bytes)) {}

    std::uint64_t size() override { return bytes_->size(); }
    std::size_t read_at(std::uint64_t offset, char* buffer, std::size_t count) override {
        return offset < bytes_->size()
                   ? bytes_->copy(buffer, count, static_cast<std::size_t>(offset))
                   : 0;
    }

  private:
    std::shared_ptr<const std::string> bytes_;
};

} // namespace

void ObjectFiles::keep_unpacked(const std::string& path, std::shared_ptr<const std::string> bytes) {
    if (unpacked_bytes_ + bytes->size() > most_unpacked) {
        unpacked_.clear();
        unpacked_bytes_ = 0;
    }
    places_.erase(path);
    if (bytes->size() <= most_unpacked) {
        auto& kept = unpacked_[path];
        unpacked_bytes_ += bytes->size() - (kept ? kept->size() : 0);
        kept = std::move(bytes);
    }
}

std::unique_ptr<ReadableFile> ObjectFiles::open(const std::string& path) {
    auto file = disk_.open_for_reading(path);
    const auto kept = unpacked_.find(path);
    if (kept != unpacked_.end() && is_compressed(*file)) {
        return std::make_unique<UnpackedFile>(kept->second);
    }
    return file;
}

const ObjectFiles::Places& ObjectFiles::places_of(const std::string& path) {
    const auto known = places_.find(path);
    if (known != places_.end()) {
        return known->second;
    }
    Places& places = places_[path];
    for (const ObjectPlace& place : list_object_places(*open(path))) {
        places.emplace(place.guid, place);
    }
    return places;
}

Shape ObjectFiles::read(const std::string& path, const Guid128& guid) {
    try {
        const Places& places = places_of(path);
        const auto place = places.find(guid);
        const auto file = open(path);
        if (place == places.end()) {
            return unknown_shape(guid, is_compressed(*file)
                                           ? "cannot be drawn: " + file_name_part(path) +
                                                 " is compressed; analyse it again to unpack it"
                                           : "cannot be drawn: it is not found in " +
                                                 file_name_part(path));
        }
        return read_shape(*file, place->second);
    } catch (const RuntimeError& error) {
        return unknown_shape(guid, file_name_part(path) + ": " + error.description());
    }
}

void ObjectFiles::add_called(Catalogue& catalogue, const std::vector<Mark>& marks,
                             const std::vector<std::string>& paths) {
    std::set<Guid128> wanted = called_objects(marks, catalogue);
    for (auto path = paths.begin(); path != paths.end() && !wanted.empty(); ++path) {
        try {
            const Places& places = places_of(*path);
            for (auto guid = wanted.begin(); guid != wanted.end();) {
                const auto place = places.find(*guid);
                if (place == places.end()) {
                    ++guid;
                    continue;
                }
                catalogue.emplace(*guid, read_shape(*open(*path), place->second));
                guid = wanted.erase(guid);
            }
        } catch (const RuntimeError&) {
            continue; // moved or deleted since it was searched: its objects are unknown
        }
    }
}

} // namespace morvane::scene
