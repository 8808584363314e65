// SPDX-License-Identifier: GPL-3.0-or-later
#include "aircraft/assembly.h"
#include "base/errors.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "source/source_set.h"
#include "source/text_files.h"
#include "system/disk.h"
#include "system/file_bytes.h"
#include "upkeep/label_suffix.h"

namespace morvane {

namespace {

void note_model_file(const Services& services, const std::string& path) {
    if (!services.disk.is_file(path)) {
        services.reporter.note({path + " is missing; the run will stop there."});
        return;
    }
    try {
        collect_labels(LineStore(read_bytes(services.disk, path)));
    } catch (const RuntimeError& error) {
        services.reporter.note(
            {path + " cannot be used (" + error.description() + "); the run will stop there."});
    }
}

void note_folder(const Services& services, const std::string& folder) {
    if (!services.disk.is_writable_folder(folder.empty() ? "." : folder)) {
        services.reporter.note(
            {"the folder " + folder + " cannot be written to; the run will stop there."});
    }
}

std::vector<AircraftPart> renamed_parts(const AircraftJob& job) {
    std::vector<AircraftPart> parts;
    if (job.flexing_wings) {
        parts = {WingsHigh, WingsLow};
    }
    if (job.shadow_optimization) {
        parts.push_back(Shadow);
    }
    return parts;
}

void note_shared_models(const Services& services, const AircraftJob& job,
                        const std::vector<AircraftPart>& parts) {
    for (std::size_t i = 0; i + 1 < parts.size(); ++i) {
        if (job.bases[parts[i]] == job.bases[parts[i + 1]]) {
            services.reporter.note({job.bases[parts[i]] +
                                    " is given for two parts; its labels will be renamed twice."});
        }
    }
}

} // namespace

void foretell(const Assembly& assembly) {
    const Services& services = assembly.services;
    const AircraftJob& job = assembly.job;
    const std::vector<AircraftPart> parts = renamed_parts(job);
    for (const AircraftPart part : parts) {
        note_model_file(services, model_file_name(job.bases[part]));
    }
    note_shared_models(services, job, parts);
    if (job.flexing_wings) {
        note_folder(services, job.program_folder);
        if (find_lod_include(assembly.frame) == 0) {
            services.reporter.note({frame_file_name(job.bases[Fuselage]) +
                                    " has no include line; the run will stop there."});
        }
        if (!job.shadow_optimization && job.bases[Shadow].empty()) {
            services.reporter.note({"no shadow model is given; the aircraft will include "
                                    "\"_0.asm\" for it."});
        }
    }
    note_folder(services, folder_part(frame_file_name(job.bases[CompleteModel])));
}

} // namespace morvane
