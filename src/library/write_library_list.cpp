// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "base/paths.h"
#include "library/library_list_file.h"
#include "system/absolute_path.h"
#include "toml/toml_document.h"

namespace morvane {

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

} // namespace morvane
