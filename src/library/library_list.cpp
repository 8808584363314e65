// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/library_list.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "base/reporter.h"
#include "base/text.h"
#include "library/design.h"
#include "system/disk.h"

#include <cmath>
#include <limits>
#include <optional>

namespace morvane {

namespace {

std::uint8_t byte_field(std::string_view text) {
    const std::int32_t value = round_to_int32(number_field(text));
    if (value < 0 || value > std::numeric_limits<std::uint8_t>::max()) {
        throw RuntimeError(ErrorNumber::Overflow, "the image power");
    }
    return static_cast<std::uint8_t>(value);
}

bool refuse(Reporter& reporter, std::string_view message) {
    reporter.message_box(message, Icon::Exclamation);
    return false;
}

LibraryEntry make_entry(const Guid128& guid, const LibraryFields& fields) {
    LibraryEntry entry;
    entry.guid = guid;
    entry.name = fields.libObjName.substr(0, max_object_name);
    entry.image_power = byte_field(fields.libImgPwr);
    entry.stored_scale = to_stored_scale(number_field(fields.libScale));
    entry.object_type = round_to_int32(number_field(fields.libObjType));
    entry.object_size = round_to_int32(size_value(fields.libObjSize));
    return entry;
}

// The entry that the fields describe; nothing after a message box.
std::optional<LibraryEntry> entry_from(Reporter& reporter, const LibraryFields& fields) {
    const std::optional<Guid128> guid = parse_identifier(fields.libGUID);
    if (!guid) {
        refuse(reporter, "Invalid GUID.");
        return std::nullopt;
    }
    if (const std::string problem = object_name_problem(fields.libObjName); !problem.empty()) {
        refuse(reporter, problem);
        return std::nullopt;
    }
    try {
        return make_entry(*guid, fields);
    } catch (const RuntimeError& error) {
        report_error(reporter, error, "Error : ", " : ", Icon::Exclamation);
        return std::nullopt;
    }
}

// The shortest scale that is stored as this value. A stored 0 comes from a scale so large that
// nothing was left of it.
std::string scale_text(std::int32_t stored) {
    if (stored == 0) {
        return "131072";
    }
    const double scale = unit_scale / stored;
    for (int places = 0; places <= 15; ++places) {
        std::string text = format_decimal(scale, 0, places);
        const double shown = val(text);
        if (shown != 0 && std::abs(unit_scale / shown) < std::numeric_limits<std::int32_t>::max() &&
            to_stored_scale(shown) == stored) {
            return text;
        }
    }
    return plain_text(scale);
}

} // namespace

std::int32_t to_stored_scale(double scale) {
    if (scale == 0) {
        throw RuntimeError(ErrorNumber::DivisionByZero, "a scale of 0");
    }
    return round_to_int32(unit_scale / scale);
}

std::string object_name_problem(std::string_view name) {
    if (name.find('"') != std::string_view::npos) {
        return "The object name must not hold a double quote.";
    }
    if (name.find_first_of("\r\n") != std::string_view::npos) {
        return "The object name must not hold a line break.";
    }
    return {};
}

bool add_library_object(const Services& services, LibraryList& list, const LibraryFields& fields) {
    if (!services.disk.is_file(fields.libFileAdd + ".asm")) {
        return refuse(services.reporter, "Invalid Filename.");
    }
    const std::optional<LibraryEntry> entry = entry_from(services.reporter, fields);
    if (!entry) {
        return false;
    }
    if (list.entries.size() == max_library_entries) {
        const RuntimeError error(ErrorNumber::SubscriptOutOfRange,
                                 "a library list takes 100 entries, removed ones included");
        report_error(services.reporter, error, "Error : ", " : ", Icon::Exclamation);
        return false;
    }
    list.lines.push_back({fields.libFileAdd, fields.libFileAdd, list.entries.size()});
    list.entries.push_back(*entry);
    return true;
}

bool modify_library_object(const Services& services, LibraryList& list, std::size_t selected,
                           const LibraryFields& fields) {
    if (selected >= list.lines.size()) {
        return refuse(services.reporter, "Select an object first.");
    }
    const std::optional<LibraryEntry> entry = entry_from(services.reporter, fields);
    if (entry) {
        list.entries.at(list.lines[selected].entry) = *entry;
    }
    return entry.has_value();
}

void remove_library_object(LibraryList& list, std::size_t selected) {
    if (selected < list.lines.size()) {
        list.lines.erase(list.lines.begin() + static_cast<std::ptrdiff_t>(selected));
    }
}

LibraryFields fields_of(const LibraryList& list, std::size_t selected) {
    if (selected >= list.lines.size()) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange, "the library list");
    }
    const LibraryLine& line = list.lines[selected];
    const LibraryEntry& entry = list.entry_of(line);
    return {line.base,
            identifier_text(entry.guid, false),
            scale_text(entry.stored_scale),
            std::to_string(entry.object_size),
            entry.name,
            std::to_string(entry.image_power),
            std::to_string(entry.object_type)};
}

} // namespace morvane
