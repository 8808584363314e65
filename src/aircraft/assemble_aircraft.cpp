// SPDX-License-Identifier: GPL-3.0-or-later
#include "aircraft/assemble_aircraft.h"

#include "aircraft/assembly.h"
#include "base/encodings.h"
#include "base/errors.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "base/text.h"
#include "source/find_line.h"
#include "source/source_set.h"
#include "system/disk.h"
#include "system/file_bytes.h"
#include "upkeep/rename_labels.h"

namespace morvane {

namespace {

constexpr std::string_view banner_anchor = "db \"MakeBGL -";
constexpr const char* banner = "    db  \"MakeBGL - morvane \",0";
constexpr std::string_view marker = ";morvane";

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

// Notes what will stop the run, or surprise, before anything is written.
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

bool carries_marker(const LineStore& store) {
    return trim(store.line(1)).starts_with(marker);
}

// The box of a missing file was shown; without its first line the run cannot go on.
void require_loaded(std::size_t loaded, const std::string& path) {
    if (loaded == 0) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange, path + " has no first line");
    }
}

bool load_main_set(Assembly& assembly) {
    const AircraftJob& job = assembly.job;
    const std::string& main = job.bases[job.flexing_wings ? Fuselage : CompleteModel];
    LineStore model; // loaded with the frame as every set is, but not looked at
    const std::size_t model_loaded =
        load_file2array(assembly.services, model_file_name(main), model);
    const std::size_t frame_loaded =
        load_file2array(assembly.services, frame_file_name(main), assembly.frame);
    if (model_loaded == 0 && frame_loaded == 0) {
        return false;
    }
    require_loaded(frame_loaded, frame_file_name(main));
    return true;
}

bool refuse_processed(Assembly& assembly) {
    const std::string complete = frame_file_name(assembly.job.bases[CompleteModel]);
    require_loaded(load_file2array(assembly.services, complete, assembly.scratch), complete);
    if (!carries_marker(assembly.frame) && !carries_marker(assembly.scratch)) {
        return false;
    }
    assembly.services.reporter.message_box("This appears to be an already processed set.\n"
                                           "Please use restore, or recreate the set from gmax.",
                                           Icon::Critical);
    return true;
}

// A store as it would be loaded from the file that it is saved to: with one more empty line, and
// with texts of several lines taken apart.
LineStore saved_and_loaded(const LineStore& store) {
    std::string text;
    for (std::size_t i = 1; i <= store.upper(); ++i) {
        text.append(store.line(i)).append("\r\n");
    }
    FileBytes bytes;
    bytes.data = std::make_unique_for_overwrite<char[]>(text.size());
    bytes.size = text.size();
    text.copy(bytes.data.get(), text.size());
    return LineStore(std::move(bytes));
}

// The output is written once: were it saved on the way, a run that is killed would leave a file
// that is neither the export nor the result, without the marker that keeps it from a second run.
void write_output(Assembly& assembly, const std::string& output) {
    LineStore& scratch = assembly.scratch;
    scratch = saved_and_loaded(assembly.frame);
    convert_calls32(scratch);
    const std::size_t banner_line = find_line(banner_anchor, scratch, 1);
    scratch.set_line(1, ";morvane - \r\ninclude model.inc\r\n" + std::string(scratch.line(1)));
    if (banner_line != 0) {
        // Kept on purpose: a banner on line 1 takes the marker's place.
        scratch.set_line(banner_line, banner);
    }
    save_user_file(assembly, output, scratch);
}

void report_success(Reporter& reporter, const std::string& complete) {
    reporter.message_box("The modification seems to be successful. Output file is " + complete +
                             ".asm\n\nComplile with 'bglc /mdl " + file_name_part(complete) +
                             ".asm'",
                         Icon::Information);
}

// The steps in their order; false when the run has stopped and its message was shown.
bool run(Assembly& assembly) {
    const AircraftJob& job = assembly.job;
    if (!load_main_set(assembly) || refuse_processed(assembly)) {
        return false;
    }
    foretell(assembly);
    if (job.flexing_wings && !add_flexing_wings(assembly)) {
        return false;
    }
    if (!job.shadow_optimization) {
        add_wing_shadow(assembly);
    } else if (!use_shadow_model(assembly)) {
        return false;
    }
    write_output(assembly, frame_file_name(job.bases[CompleteModel]));
    report_success(assembly.services.reporter, job.bases[CompleteModel]);
    return true;
}

// The parts that include lines name must have names that source files can hold.
bool refuse_names(Reporter& reporter, const AircraftJob& job) {
    for (const AircraftPart part : {WingsLow, WingsHigh, Shadow}) {
        if (job.flexing_wings && !source_text(job.bases[part])) {
            reporter.message_box(cannot_be_written("The path", job.bases[part]), Icon::Critical);
            return true;
        }
    }
    return false;
}

void note_changed(const Assembly& assembly) {
    for (const std::string& path : assembly.changed) {
        assembly.services.reporter.note({path + " was changed by this run."});
    }
}

} // namespace

std::optional<std::string> assemble_aircraft(const Services& services, const AircraftJob& job) {
    if (!job.flexing_wings && !job.shadow_optimization) {
        services.reporter.message_box("Nothing to do !", Icon::Exclamation);
        return std::nullopt;
    }
    if (refuse_names(services.reporter, job)) {
        return std::nullopt;
    }
    Assembly assembly{services, job, {}, {}, {}};
    try {
        if (run(assembly)) {
            return frame_file_name(job.bases[CompleteModel]);
        }
    } catch (const RuntimeError& error) {
        report_error(services.reporter, error, "Run-time error '", "': ");
    }
    note_changed(assembly);
    return std::nullopt;
}

} // namespace morvane
