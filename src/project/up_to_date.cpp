// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/up_to_date.h"

#include "base/errors.h"
#include "base/paths.h"
#include "project/content_hash.h"
#include "system/disk.h"

#include <algorithm>

namespace morvane {

namespace {

std::string changed_input_reason(const std::string& role) {
    if (role == "export") {
        return "exported again";
    }
    return role == "effects" ? "effect list changed" : role + " changed";
}

// The first role, in the order of the plan's own importance, whose files changed; empty if none.
std::string input_reason(Disk& disk, const Project& project, const PlannedBuildStep& planned,
                         StepRecord& record) {
    for (const std::string role : {"export", "recipe", "list", "macros", "effects"}) {
        std::size_t count = 0;
        for (const StepInput& input : planned.inputs) {
            if (input.role != role) {
                continue;
            }
            ++count;
            const std::string path = stored_path(project, input.path);
            const auto known = std::find_if(
                record.inputs.begin(), record.inputs.end(),
                [&](const FileRecord& file) { return file.role == role && file.path == path; });
            if (known == record.inputs.end() || !is_as_recorded(disk, input.path, *known)) {
                return changed_input_reason(role);
            }
        }
        const auto recorded =
            std::count_if(record.inputs.begin(), record.inputs.end(),
                          [&](const FileRecord& file) { return file.role == role; });
        if (static_cast<std::size_t>(recorded) != count) {
            return changed_input_reason(role);
        }
    }
    return {};
}

std::string output_reason(Disk& disk, const Project& project, const PlannedBuildStep& planned,
                          StepRecord& record) {
    for (const std::string& name : planned.outputs) {
        const std::string path = join_path(project.folder, name);
        const auto known = std::find_if(record.outputs.begin(), record.outputs.end(),
                                        [&](const FileRecord& file) { return file.path == name; });
        if (known == record.outputs.end() || !disk.is_file(path)) {
            return "output missing";
        }
        if (!is_as_recorded(disk, path, *known)) {
            return "output changed";
        }
    }
    return {};
}

} // namespace

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

std::string reason_to_make(Disk& disk, const Project& project, const PlannedBuildStep& planned,
                           const BuildSurroundings& surroundings, StepRecord& record) {
    if (!record.made) {
        return "failed before";
    }
    if (std::string reason = input_reason(disk, project, planned, record); !reason.empty()) {
        return reason;
    }
    if (record.compiler != planned.compiler) {
        return "compiler changed";
    }
    if (record.settings != planned.settings) {
        return "project changed";
    }
    if (record.version != surroundings.version) {
        return "Morvane changed";
    }
    return output_reason(disk, project, planned, record);
}

} // namespace morvane
