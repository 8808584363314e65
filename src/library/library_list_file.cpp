// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/library_list_file.h"

#include "library/library_objects_toml.h"

#include <map>

namespace morvane {

namespace {

Place guid_place(const ListedObject& object) {
    const std::vector<TomlEntry> entries = entries_of(object.element.table);
    const TomlEntry* entry = find_entry(entries, "guid");
    return entry == nullptr ? object.element.place : entry->value_place;
}

void refuse_missing_guids(const std::vector<ListedObject>& objects, DocumentErrors& errors) {
    for (const ListedObject& object : objects) {
        if (!object.has_guid) {
            errors.add(object.element.place,
                       "\"guid\" is missing (library create --generate-guids fills it in)");
        }
    }
}

void refuse_duplicates(const std::vector<ListedObject>& objects, DocumentErrors& errors) {
    std::map<Guid128, std::size_t> first_lines;
    for (const ListedObject& object : objects) {
        const Place place = guid_place(object);
        const auto [first, added] = first_lines.emplace(object.entry.guid, place.line);
        if (!added && object.has_guid) {
            errors.add(place, "Duplicated ID found : " + identifier_text(object.entry.guid, true) +
                                  ", the \"guid\" of line " + std::to_string(first->second));
        }
    }
}

} // namespace

LibraryListReading read_library_list(const Services& services, const std::string& path) {
    const TomlReading reading = read_toml(services.disk, path, "library list");
    if (!reading.document) {
        return {std::nullopt, reading.errors, reading.problems};
    }
    DocumentErrors errors(path, reading.document->text);
    const std::vector<ListedObject> objects =
        read_listed_objects(services, *reading.document, errors);
    refuse_missing_guids(objects, errors);
    if (errors.empty()) {
        refuse_duplicates(objects, errors);
    }
    if (!errors.empty()) {
        return {std::nullopt, errors.texts(), errors.problems()};
    }
    LibraryList list;
    for (const ListedObject& object : objects) {
        list.lines.push_back({object.line.base, object.line.location, list.entries.size()});
        list.entries.push_back(object.entry);
    }
    return {std::move(list), {}, {}};
}

} // namespace morvane
