// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace morvane::cli {

/// JSON that keeps its keys in the order in which they were put in.
using Json = nlohmann::ordered_json;

/// Bytes of the users' files, which are Windows-1252, as a JSON text.
Json json_text(std::string_view bytes);
/// Messages, which quote files and name paths: what is not UTF-8 is taken for Windows-1252.
Json json_texts(const std::vector<std::string>& lines);
/// A path, likewise.
Json json_path(std::string_view path);

} // namespace morvane::cli
