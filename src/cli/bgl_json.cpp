// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/bgl_json.h"

#include "bgl/bgl_file.h"
#include "bgl/report.h"

namespace morvane::cli {

namespace {

Json header_json(const BglHeader& header) {
    Json fields = Json::object();
    for_each_field(header,
                   [&](std::size_t, const char* name, auto field) { fields[name] = field; });
    return fields;
}

Json extension_json(const Analysis& analysis) {
    if (analysis.header.FL_magic == 0) {
        return nullptr;
    }
    Json fields = Json::object();
    for_each_field(analysis.extension, [&](std::size_t, std::string_view name, auto field) {
        if (!name.empty()) {
            fields[std::string(name)] = field;
        }
    });
    return fields;
}

Json bounds_json(const BglHeader& header) {
    return {{"north", lat_degrees(header.FL_north_bounds)},
            {"south", lat_degrees(header.FL_south_bounds)},
            {"east", lon_degrees(header.FL_east_bounds)},
            {"west", lon_degrees(header.FL_west_bounds)}};
}

} // namespace

Json object_json(const std::string& path, const LibraryObject& object) {
    Json guid = Json::array();
    for (const std::int32_t word : object.guid) {
        guid.push_back(static_cast<std::uint32_t>(word));
    }
    return {{"guid", guid},
            {"guid_text", guid_text(object.guid)},
            {"scale", object.stored_scale != 0 ? Json(65536.0 / object.stored_scale) : Json()},
            {"type", object.type},
            {"power", object.image_power},
            {"name", json_text(object_name(object))},
            {"file", json_path(path)}};
}

Json analysis_json(const std::string& path, const Analysis& analysis) {
    Json document{{"file", json_path(path)}, {"valid", is_valid_bgl(analysis.header)}};
    if (analysis.state == BglState::NotABgl) {
        return document;
    }
    document["header"] = header_json(analysis.header);
    document["extension"] = extension_json(analysis);
    document["bounds"] = bounds_json(analysis.header);
    document["compressed"] = analysis.header.FL_spare2 != 0;
    document["objects"] = Json::array();
    for (const LibraryObject& object : analysis.objects) {
        document["objects"].push_back(object_json(path, object));
    }
    return document;
}

Json search_json(const std::string& folder, const SearchResult& result, Json objects) {
    const SearchStatistics& counted = result.statistics;
    return {{"folder", json_path(folder)},
            {"complete", result.done},
            {"objects", std::move(objects)},
            {"counters",
             {{"folders", counted.folders},
              {"total_files", counted.total_files},
              {"bgl_files", counted.bgl_files},
              {"invalid_files", counted.invalid_files},
              {"compressed_files", counted.compressed_files},
              {"object_files", counted.object_files},
              {"library_files", counted.library_files},
              {"library_objects", counted.library_objects}}}};
}

} // namespace morvane::cli
