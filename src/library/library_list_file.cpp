// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/library_list_file.h"

#include "base/numbers.h"
#include "base/paths.h"
#include "library/library_objects_toml.h"
#include "system/replace_files.h"
#include "toml/toml_document.h"

#include <algorithm>
#include <map>
#include <random>
#include <set>

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

namespace {

bool is_absolute(const std::string& path) {
    return path.starts_with('/') || path.starts_with('\\') || path.substr(1, 1) == ":";
}

std::string design_path(const LibraryLine& line, const std::string& folder) {
    if (is_absolute(line.base)) {
        return line.base;
    }
    const std::string as_listed = folder.empty() ? line.base : join_path(folder, line.base);
    return line.location == as_listed ? line.base : absolute_path(line.location);
}

// Paths are UTF-8, as the file is.
std::string quoted_path(const std::string& path) {
    std::string text = "\"";
    for (const char c : path) {
        if (c == '"' || c == '\\') {
            text += '\\';
        }
        text += c;
    }
    return text + "\"";
}

std::string scale_line(const LibraryEntry& entry) {
    return entry.stored_scale == 0 ? std::string()
                                   : "scale = " + plain_text(65536.0 / entry.stored_scale) + "\n";
}

} // namespace

std::string library_list_text(const LibraryList& list, const std::string& folder) {
    std::string text = list.lines.empty() ? "object = []\n" : "";
    for (const LibraryLine& line : list.lines) {
        const LibraryEntry& entry = list.entry_of(line);
        text += text.empty() ? "" : "\n";
        text += "[[object]]\n";
        text += "design = " + quoted_path(design_path(line, folder)) + "\n";
        text += "guid = \"" + identifier_text(entry.guid, false) + "\"\n";
        text += scale_line(entry);
        text += "size = " + std::to_string(entry.object_size) + "\n";
        text += "name = " + toml_quoted(entry.name) + "\n";
        text += "image_power = " + std::to_string(entry.image_power) + "\n";
        text += "type = " + std::to_string(entry.object_type) + "\n";
    }
    return text;
}

namespace {

struct Insertion {
    std::size_t offset = 0; // in the list file's text
    std::string text;
};

// `guid = "..."` written like the line of the design: with its blanks in front of the key and in
// front of the equals sign.
std::string guid_line(std::string_view design_line, const std::string& guid) {
    const std::size_t key = std::min(design_line.find_first_not_of(" \t"), design_line.size());
    const std::size_t equals = design_line.find('=');
    std::string text(design_line.substr(0, key));
    text += "guid";
    const std::size_t width = equals == std::string_view::npos ? 0 : equals - key;
    text.resize(std::max(text.size() + 1, key + width), ' ');
    return text + "= \"" + guid + "\"";
}

// Behind the line of the design, with the line end that the file uses.
Insertion insertion_below(std::string_view text, const TomlEntry& design, const std::string& guid) {
    const std::size_t begin = byte_of(text, {design.key_place.line, 1});
    const std::size_t last = byte_of(text, {design.value.source().end.line, 1});
    const std::size_t end = text.find('\n', last);
    const std::string_view line = text.substr(begin, text.find_first_of("\r\n", begin) - begin);
    const std::string_view line_end = text.find("\r\n") != std::string_view::npos ? "\r\n" : "\n";
    if (end == std::string_view::npos) {
        return {text.size(), std::string(line_end) + guid_line(line, guid)};
    }
    return {end + 1, guid_line(line, guid) + std::string(line_end)};
}

// Behind the brace that opens an object written on one line.
Insertion insertion_inside(std::size_t brace, const std::string& guid) {
    return {brace + 1, " guid = \"" + guid + "\","};
}

Insertion insertion_for(std::string_view text, const ListedObject& object,
                        const std::string& guid) {
    const std::size_t begin = byte_of(text, object.element.place);
    if (text.substr(begin, 1) == "{") {
        return insertion_inside(begin, guid);
    }
    const std::vector<TomlEntry> entries = entries_of(object.element.table);
    return insertion_below(text, *find_entry(entries, "design"), guid);
}

Guid128 unused_guid(std::set<Guid128>& used, const std::function<Guid128()>& source) {
    while (true) {
        const Guid128 guid = source();
        if (used.insert(guid).second) {
            return guid;
        }
    }
}

std::vector<Insertion> new_guids(const TomlDocument& document,
                                 const std::vector<ListedObject>& objects,
                                 const std::function<Guid128()>& source) {
    std::set<Guid128> used{Guid128{}};
    for (const ListedObject& object : objects) {
        used.insert(object.entry.guid);
    }
    std::vector<Insertion> insertions;
    for (const ListedObject& object : objects) {
        if (!object.has_guid) {
            const std::string guid = identifier_text(unused_guid(used, source), false);
            insertions.push_back(insertion_for(document.text, object, guid));
        }
    }
    std::stable_sort(insertions.begin(), insertions.end(),
                     [](const Insertion& a, const Insertion& b) { return a.offset < b.offset; });
    return insertions;
}

void write_with(Disk& disk, const TomlDocument& document,
                const std::vector<Insertion>& insertions) {
    const std::string_view text = document.text;
    replace_file(disk, document.file, [&](TextWriter& out) {
        std::size_t written = 0;
        for (const Insertion& insertion : insertions) {
            out.write(text.substr(written, insertion.offset - written));
            out.write(insertion.text);
            written = insertion.offset;
        }
        out.write(text.substr(written));
    });
}

} // namespace

GuidFilling generate_guids(const Services& services, const std::string& path,
                           const std::function<Guid128()>& source) {
    const TomlReading reading = read_toml(services.disk, path, "library list");
    if (!reading.document) {
        return {0, reading.errors, reading.problems};
    }
    DocumentErrors errors(path, reading.document->text);
    const std::vector<ListedObject> objects =
        read_listed_objects(services, *reading.document, errors);
    if (!errors.empty()) {
        return {0, errors.texts(), errors.problems()};
    }
    const std::vector<Insertion> insertions = new_guids(*reading.document, objects, source);
    if (!insertions.empty()) {
        write_with(services.disk, *reading.document, insertions);
    }
    return {insertions.size(), {}, {}};
}

Guid128 random_guid() {
    std::random_device device;
    Guid128 guid{};
    for (std::int32_t& word : guid) {
        word = static_cast<std::int32_t>(device());
    }
    return guid;
}

} // namespace morvane
