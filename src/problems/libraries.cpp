// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/libraries.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "base/paths.h"
#include "base/text.h"
#include "library/design.h"
#include "problems/literals.h"
#include "source/source_set.h"
#include "system/file_bytes.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

namespace morvane {

namespace {

// As the design's frame file says it; nothing for one that cannot be read.
std::optional<DesignDescription> described(Disk& disk, const std::string& base) {
    try {
        const LineStore frame(read_bytes(disk, frame_file_name(base)));
        return read_design(frame, base).description;
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
}

bool has_scale(const LibraryEntry& entry, const std::string& scale) {
    try {
        return to_stored_scale(val(scale)) == entry.stored_scale;
    } catch (const RuntimeError&) {
        return true; // a design without a scale says nothing
    }
}

} // namespace

std::vector<Problem> find_library_list_problems(Disk& disk, const LibraryList& list,
                                                const std::string& list_file) {
    std::vector<Problem> problems;
    for (const LibraryLine& line : list.lines) {
        const LibraryEntry& entry = list.entry_of(line);
        const auto design = described(disk, line.location);
        if (design && !has_scale(entry, design->scale)) {
            problems.push_back({"library-scale", Severity::Warning,
                                "the object of the design " + line.base +
                                    " gets another scale than the " + design->scale +
                                    " that it was designed at; use that, or omit it.",
                                list_file});
        }
        if (!disk.is_file(model_file_name(line.location))) {
            problems.push_back({"library-model-missing", Severity::Error,
                                "the design " + line.base + " has no file " +
                                    model_file_name(line.base) + "; export it.",
                                list_file});
        }
    }
    return problems;
}

namespace {

constexpr std::size_t guid_words = 4;

std::string_view next_part(std::string_view& text, char end) {
    const std::size_t length = std::min(text.find(end), text.size());
    const std::string_view part = text.substr(0, length);
    text.remove_prefix(std::min(length + 1, text.size()));
    return part;
}

// "PATH :COUNT" begins the list of a library.
std::optional<std::string> library_path(std::string_view line) {
    const std::size_t mark = line.rfind(" :");
    if (mark == std::string_view::npos || mark == 0) {
        return std::nullopt;
    }
    const std::string_view count = line.substr(mark + 2);
    const bool digits = !count.empty() && count.find_first_not_of("0123456789") == count.npos;
    return digits ? std::optional(std::string(line.substr(0, mark))) : std::nullopt;
}

// "WORDh,WORDh,WORDh,WORDh,SCALE,TYPE,NAME"
std::optional<KnownObject> listed_object(std::string_view line) {
    KnownObject object;
    for (std::size_t word = 0; word < guid_words; ++word) {
        const std::string_view text = next_part(line, ',');
        const auto value = text.ends_with('h') ? whole_number(text) : std::nullopt;
        if (!value) {
            return std::nullopt;
        }
        object.guid[word] = static_cast<Guid128::value_type>(*value);
    }
    const auto scale = real_number(trim(next_part(line, ',')));
    if (!scale || line.empty()) {
        return std::nullopt;
    }
    object.scale = *scale == 0 ? std::nullopt : scale;
    return object;
}

} // namespace

std::vector<KnownObject> listed_objects(std::string_view results) {
    std::vector<KnownObject> objects;
    std::set<std::pair<std::string, Guid128>> seen;
    std::string library;
    while (!results.empty()) {
        std::string_view line = next_part(results, '\n');
        line.remove_suffix(line.ends_with('\r') ? 1 : 0);
        if (auto object = listed_object(line)) { // first: a name may end like a library's line
            object->file = library;
            if (!library.empty() && seen.insert({library, object->guid}).second) {
                objects.push_back(std::move(*object));
            }
        } else if (auto path = library_path(line)) {
            library = std::move(*path);
        }
    }
    return objects;
}

std::vector<KnownObject> searched_objects(Disk& disk, const std::string& program_folder) {
    const std::string path = join_path(program_folder, "out.txt");
    try {
        return disk.is_file(path) ? listed_objects(read_bytes(disk, path).view())
                                  : std::vector<KnownObject>();
    } catch (const RuntimeError&) {
        return {};
    }
}

} // namespace morvane
