// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/library_objects_toml.h"

#include "base/encodings.h"
#include "base/errors.h"
#include "base/numbers.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "base/text.h"
#include "library/design.h"
#include "source/source_set.h"
#include "system/disk.h"
#include "system/file_bytes.h"
#include "toml/nearest_key.h"

#include <algorithm>
#include <limits>

namespace morvane {

namespace {

const std::vector<std::string_view> object_keys{"design", "guid",        "scale", "size",
                                                "name",   "image_power", "type"};
constexpr int default_image_power = 100;
constexpr int most_image_power = 100;

/// One object while it is read.
struct Reading {
    const Services& services;
    const std::string& file;
    const std::vector<TomlEntry>& entries;
    ListedObject& object;
    DocumentErrors& errors;

    const TomlEntry* find(std::string_view key) const { return find_entry(entries, key); }
    void refuse(const TomlEntry& entry, const std::string& problem) const {
        errors.add(entry.value_place, "\"" + std::string(entry.key) + "\" " + problem);
    }
};

void refuse_unknown_keys(const Reading& reading) {
    for (const TomlEntry& entry : reading.entries) {
        if (std::find(object_keys.begin(), object_keys.end(), entry.key) == object_keys.end()) {
            reading.errors.add(entry.key_place, "unknown key \"" + std::string(entry.key) + "\"" +
                                                    suggestion(entry.key, object_keys));
        }
    }
}

// False when there is no design to read from.
bool read_design_key(const Reading& reading) {
    const TomlEntry* entry = reading.find("design");
    if (entry == nullptr) {
        reading.errors.add(reading.object.element.place, "\"design\" is missing");
        return false;
    }
    const std::optional<std::string> design = text_value(*entry, reading.errors);
    if (!design) {
        return false;
    }
    LibraryLine& line = reading.object.line;
    line.base = to_utf8(*design);
    line.location = path_beside(reading.file, line.base);
    if (design->empty() || !reading.services.disk.is_file(frame_file_name(line.location))) {
        const bool ending = has_ending(*design, ".asm");
        reading.refuse(*entry, "names no design: there is no file " +
                                   frame_file_name(line.location) +
                                   (ending ? " (the path is written without its ending)" : ""));
        return false;
    }
    return true;
}

void read_guid(const Reading& reading) {
    const TomlEntry* entry = reading.find("guid");
    reading.object.has_guid = entry != nullptr;
    const std::optional<std::string> text =
        entry == nullptr ? std::nullopt : text_value(*entry, reading.errors);
    if (!text) {
        return;
    }
    if (const std::optional<Guid128> guid = parse_identifier(*text)) {
        reading.object.entry.guid = *guid;
    } else {
        reading.refuse(*entry, "must be four hexadecimal words parted by commas, as in "
                               "\"0AAAAAAAA, 0AAAAAAAA, 0AAAAAAAA, 000000001\"");
    }
}

void set_scale(const Reading& reading, const TomlEntry& entry, double scale) {
    if (scale == 0) {
        reading.refuse(entry, "must not be 0");
        return;
    }
    try {
        reading.object.entry.stored_scale = to_stored_scale(scale);
    } catch (const RuntimeError&) {
        reading.refuse(entry, "is too small a scale");
    }
}

void set_size(const Reading& reading, const TomlEntry& entry, double size) {
    try {
        reading.object.entry.object_size = round_to_int32(size);
    } catch (const RuntimeError&) {
        reading.refuse(entry, "is too large a size");
    }
}

// What the design says of itself; nothing when it cannot be read, which is then an error of the
// key "design".
std::optional<DesignDescription> design_of(const Reading& reading, const TomlEntry& design) {
    const std::string path = frame_file_name(reading.object.line.location);
    try {
        const DesignReading described = read_design(
            LineStore(read_bytes(reading.services.disk, path)), reading.object.line.location);
        if (!described.description) {
            reading.refuse(design, "names a design that says no scale and size: " +
                                       described.problem + " Give both here to do without.");
        }
        return described.description;
    } catch (const RuntimeError& error) {
        reading.refuse(design,
                       "names a file that cannot be read: " + path + ": " + error.description());
        return std::nullopt;
    }
}

void set_from_design(const Reading& reading, const TomlEntry& design, bool scale, bool size) {
    const std::optional<DesignDescription> description = design_of(reading, design);
    if (!description) {
        return;
    }
    try {
        if (scale) {
            set_scale(reading, design, val(description->scale));
        }
        if (size) {
            set_size(reading, design, size_value(description->size));
        }
    } catch (const RuntimeError&) {
        reading.refuse(design, "names a design whose size is no number: \"" +
                                   to_utf8(description->size) + "\". Give \"size\" here.");
    }
}

void read_measures(const Reading& reading, bool design_found) {
    const TomlEntry* scale = reading.find("scale");
    const TomlEntry* size = reading.find("size");
    if (scale != nullptr) {
        if (const auto number = number_value(*scale, reading.errors)) {
            set_scale(reading, *scale, *number);
        }
    }
    if (size != nullptr) {
        if (const auto number = number_value(*size, reading.errors)) {
            set_size(reading, *size, *number);
        }
    }
    if (design_found && (scale == nullptr || size == nullptr)) {
        set_from_design(reading, *reading.find("design"), scale == nullptr, size == nullptr);
    }
}

void read_name(const Reading& reading) {
    const TomlEntry* const given = reading.find("name");
    const TomlEntry* const entry = given != nullptr ? given : reading.find("design");
    // A design that is not text has been reported, and left no base.
    const std::optional<std::string> text =
        given != nullptr ? text_value(*given, reading.errors)
                         : source_text(file_name_part(reading.object.line.base));
    if (entry == nullptr || !text) {
        return;
    }
    const std::string& name = *text;
    if (!object_name_problem(name).empty()) {
        reading.refuse(*entry, "must not hold a double quote, which would end the name");
    }
    if (name.size() > max_object_name) {
        reading.services.reporter.note({"the name '" + to_utf8(name) + "' is cut to " +
                                        to_text(max_object_name) + " characters."});
    }
    reading.object.entry.name = name.substr(0, max_object_name);
}

void read_numbers(const Reading& reading) {
    LibraryEntry& entry = reading.object.entry;
    entry.image_power = default_image_power;
    if (const TomlEntry* power = reading.find("image_power")) {
        if (const auto number = whole_value(*power, 0, most_image_power, reading.errors)) {
            entry.image_power = static_cast<std::uint8_t>(*number);
        }
    }
    if (const TomlEntry* type = reading.find("type")) {
        using Limits = std::numeric_limits<std::int32_t>;
        if (const auto number = whole_value(*type, Limits::min(), Limits::max(), reading.errors)) {
            entry.object_type = static_cast<std::int32_t>(*number);
        }
    }
}

// `object = []`, which is how an empty list is written.
bool is_empty_list(const toml::table& table) {
    const toml::array* objects = table["object"].as_array();
    return table.size() == 1 && objects != nullptr && objects->empty();
}

} // namespace

std::vector<ListedObject> read_listed_objects(const Services& services,
                                              const TomlDocument& document,
                                              DocumentErrors& errors) {
    std::vector<ListedObject> objects;
    if (is_empty_list(document.table)) {
        return objects;
    }
    for (const TomlElement& element : elements_of(document, "object", errors)) {
        const std::vector<TomlEntry> entries = entries_of(element.table);
        ListedObject object{element, {}, {}};
        const Reading reading{services, document.file, entries, object, errors};
        refuse_unknown_keys(reading);
        const bool design_found = read_design_key(reading);
        read_guid(reading);
        read_measures(reading, design_found);
        read_name(reading);
        read_numbers(reading);
        objects.push_back(object);
        if (objects.size() == max_library_entries + 1) {
            errors.add(element.place, "a library takes 100 objects, this is one too many");
        }
    }
    return objects;
}

} // namespace morvane
