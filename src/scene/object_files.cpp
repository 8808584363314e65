// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/object_files.h"

#include "base/errors.h"
#include "base/paths.h"
#include "system/disk.h"

#include <set>

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

} // namespace

const ObjectFiles::Places& ObjectFiles::places_of(const std::string& path) {
    const auto known = places_.find(path);
    if (known != places_.end()) {
        return known->second;
    }
    Places& places = places_[path];
    for (const ObjectPlace& place : list_object_places(*disk_.open_for_reading(path))) {
        places.emplace(place.guid, place);
    }
    return places;
}

Shape ObjectFiles::read(const std::string& path, const Guid128& guid) {
    try {
        const Places& places = places_of(path);
        const auto place = places.find(guid);
        if (place == places.end()) {
            return unknown_shape(guid, "cannot be drawn: it is not found in " +
                                           file_name_part(path) + ", or that file is compressed");
        }
        return read_shape(*disk_.open_for_reading(path), place->second);
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
                catalogue.emplace(*guid, read_shape(*disk_.open_for_reading(*path), place->second));
                guid = wanted.erase(guid);
            }
        } catch (const RuntimeError&) {
            continue; // moved or deleted since it was searched: its objects are unknown
        }
    }
}

} // namespace morvane::scene
