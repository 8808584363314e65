// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/disk.h"

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// A content as 32 hexadecimal digits (XXH3, 128 bits): equal for equal bytes only, as far as any
/// two files of a project are concerned.
std::string content_hash(std::string_view bytes);

/// The same for a file. Throws RuntimeError.
std::string file_hash(Disk& disk, const std::string& path);

/// A file as it was when a step was made.
struct FileRecord {
    std::string role; // of an input: "export", "recipe", "list", "effects" or "macros"
    std::string path; // seen from the project's folder; of an output its name
    FileStamp stamp;
    std::string hash; // of the content

    bool operator==(const FileRecord&) const = default;
};

/// Stamp and hash of a file as it is. Throws RuntimeError.
FileRecord record_file(Disk& disk, const std::string& path);

/// Whether a file still is as recorded; `record` takes over a new stamp of the same content.
bool is_as_recorded(Disk& disk, const std::string& path, FileRecord& record);

/// What a step was made from, and what it made.
struct StepRecord {
    bool made = false; // false: it failed, and what follows is empty
    std::string settings;
    std::string compiler;
    std::string version; // of Morvane
    std::vector<FileRecord> inputs;
    std::vector<FileRecord> outputs;

    bool operator==(const StepRecord&) const = default;
};

/// What is known of an output folder.
struct Manifest {
    std::map<std::string, StepRecord> steps; // by name
    std::set<std::string> files;             // that builds made or were about to make

    bool operator==(const Manifest&) const = default;
};

inline constexpr const char* manifest_name = ".morvane-build.json";

struct ManifestReading {
    Manifest manifest;   // empty when there is none, or it is damaged
    std::string problem; // why it is refused: it was written by a later version
    bool damaged = false;
};

/// Reads the manifest of an output folder. Throws RuntimeError when the file cannot be read.
ManifestReading read_manifest(Disk& disk, const std::string& folder);

/// Replaces it whole. Throws RuntimeError.
void write_manifest(Disk& disk, const std::string& folder, const Manifest& manifest);

} // namespace morvane
