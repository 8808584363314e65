// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/manifest.h"

#include "base/errors.h"
#include "base/paths.h"
#include "system/file_bytes.h"
#include "system/replace_files.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstddef>

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace morvane {

std::string content_hash(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    XXH128_canonical_t canonical{};
    XXH128_canonicalFromHash(&canonical, XXH3_128bits(bytes.data(), bytes.size()));
    std::string text;
    for (const unsigned char byte : canonical.digest) {
        text += digits[byte >> 4U];
        text += digits[byte & 15U];
    }
    return text;
}

std::string file_hash(Disk& disk, const std::string& path) {
    return content_hash(read_bytes(disk, path).view());
}

FileRecord record_file(Disk& disk, const std::string& path) {
    const FileStamp stamp = disk.stamp(path);
    return {{}, path, stamp, file_hash(disk, path)};
}

bool is_as_recorded(Disk& disk, const std::string& path, FileRecord& record) {
    try {
        if (!disk.is_file(path)) {
            return false;
        }
        const FileStamp stamp = disk.stamp(path);
        if (stamp == record.stamp) {
            return true;
        }
        if (stamp.size != record.stamp.size || file_hash(disk, path) != record.hash) {
            return false;
        }
        record.stamp = stamp;
        return true;
    } catch (const RuntimeError&) {
        return false; // it vanished or cannot be read: making the step says so
    }
}

namespace {

using Json = nlohmann::ordered_json;

constexpr int format = 1;

Json to_json(const FileRecord& file) {
    Json json;
    if (!file.role.empty()) {
        json["role"] = file.role;
    }
    json["path"] = file.path;
    json["size"] = file.stamp.size;
    json["modified"] = file.stamp.modified_ns;
    json["changed"] = file.stamp.changed_ns;
    json["device"] = file.stamp.device;
    json["file"] = file.stamp.file;
    json["hash"] = file.hash;
    return json;
}

FileRecord file_from(const Json& json) {
    FileRecord file;
    file.role = json.value("role", "");
    file.path = json.at("path").get<std::string>();
    json.at("size").get_to(file.stamp.size);
    json.at("modified").get_to(file.stamp.modified_ns);
    json.at("changed").get_to(file.stamp.changed_ns);
    json.at("device").get_to(file.stamp.device);
    json.at("file").get_to(file.stamp.file);
    json.at("hash").get_to(file.hash);
    return file;
}

Json to_json(const std::vector<FileRecord>& files) {
    Json list = Json::array();
    for (const FileRecord& file : files) {
        list.push_back(to_json(file));
    }
    return list;
}

std::vector<FileRecord> files_from(const Json& json) {
    std::vector<FileRecord> files;
    for (const Json& file : json) {
        files.push_back(file_from(file));
    }
    return files;
}

Json to_json(const StepRecord& step) {
    return {{"made", step.made},
            {"settings", step.settings},
            {"compiler", step.compiler},
            {"morvane", step.version},
            {"inputs", to_json(step.inputs)},
            {"outputs", to_json(step.outputs)}};
}

StepRecord step_from(const Json& json) {
    StepRecord step;
    json.at("made").get_to(step.made);
    json.at("settings").get_to(step.settings);
    json.at("compiler").get_to(step.compiler);
    json.at("morvane").get_to(step.version);
    step.inputs = files_from(json.at("inputs"));
    step.outputs = files_from(json.at("outputs"));
    return step;
}

Manifest manifest_from(const Json& json) {
    Manifest manifest;
    for (const auto& [name, step] : json.at("steps").items()) {
        manifest.steps.emplace(name, step_from(step));
    }
    json.at("files").get_to(manifest.files);
    return manifest;
}

std::string text_of(const Manifest& manifest) {
    Json json{{"format", format}, {"files", manifest.files}, {"steps", Json::object()}};
    for (const auto& [name, step] : manifest.steps) {
        json["steps"][name] = to_json(step);
    }
    return json.dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace

ManifestReading read_manifest(Disk& disk, const std::string& folder) {
    const std::string path = join_path(folder, manifest_name);
    if (!disk.is_file(path)) {
        return {};
    }
    const FileBytes bytes = read_bytes(disk, path);
    try {
        const Json json = Json::parse(bytes.view());
        if (json.at("format").get<int>() > format) {
            return {{},
                    path + " was written by a later version of Morvane; delete it to make "
                           "everything again",
                    false};
        }
        return {manifest_from(json), {}, false};
    } catch (const Json::exception&) {
        return {{}, {}, true};
    }
}

void write_manifest(Disk& disk, const std::string& folder, const Manifest& manifest) {
    const std::string text = text_of(manifest);
    replace_file(disk, join_path(folder, manifest_name), [&](TextWriter& out) { out.write(text); });
}

} // namespace morvane
