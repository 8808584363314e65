// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/json_text.h"

#include "base/encodings.h"

namespace morvane::cli {

Json json_text(std::string_view bytes) {
    return to_utf8(bytes);
}

Json json_texts(const std::vector<std::string>& lines) {
    Json result = Json::array();
    for (const std::string& line : lines) {
        result.push_back(readable_text(line));
    }
    return result;
}

Json json_path(std::string_view path) {
    return readable_text(path);
}

} // namespace morvane::cli
