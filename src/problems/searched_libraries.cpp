// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/searched_libraries.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/text.h"
#include "problems/literals.h"
#include "system/file_bytes.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

namespace morvane {

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
