// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bgl/inspector.h"
#include "bgl/search.h"
#include "cli/json_text.h"

#include <string>

namespace morvane::cli {

/// The documents of `bgl analyse --json` and `bgl search --json` but for the messages;
/// docs/bgl.schema.json describes them.
Json analysis_json(const std::string& path, const Analysis& analysis);
Json search_json(const std::string& folder, const SearchResult& result, Json objects);

/// One library object as it is in both.
Json object_json(const std::string& path, const LibraryObject& object);

} // namespace morvane::cli
