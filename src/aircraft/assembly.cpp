// SPDX-License-Identifier: GPL-3.0-or-later
#include "aircraft/assembly.h"

#include "base/encodings.h"
#include "base/errors.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "base/text.h"
#include "objects/model_header.h"
#include "source/find_line.h"
#include "source/source_set.h"
#include "system/disk.h"
#include "system/file_bytes.h"
#include "system/replace_files.h"
#include "upkeep/rename_labels.h"

#include <string>
#include <string_view>

namespace morvane {

std::string scratch_file(const Assembly& assembly) {
    return join_path(assembly.job.program_folder, "temp.masm");
}

std::size_t find_lod_include(const LineStore& frame) {
    return find_line(include_anchor, frame, find_line(lod_anchor, frame, 1));
}

void save_user_file(Assembly& assembly, const std::string& path, const LineStore& store) {
    save_array2file(assembly.services.disk, path, store);
    assembly.changed.push_back(path);
}

void reload(const Assembly& assembly, const std::string& path, LineStore& store) {
    store = LineStore(read_bytes(assembly.services.disk, path));
}

bool suffix_labels_of(Assembly& assembly, AircraftPart part) {
    const std::string path = model_file_name(assembly.job.bases[part]);
    if (load_file2array(assembly.services, path, assembly.scratch) == 0) {
        return false;
    }
    append_label_suffix(assembly.scratch, "G" + std::to_string(part));
    save_user_file(assembly, path, assembly.scratch);
    return true;
}

namespace {

constexpr std::string_view dictionary_anchor = "param_extension_dictionary label dword";
constexpr std::string_view outside_call_anchor =
    "VINSTANCE_CALL  model_outside,AIRCRAFT_PARAMS.llapbh.pbh";

void inherit_dictionary(Assembly& assembly) {
    const std::string& complete = assembly.job.bases[CompleteModel];
    reload(assembly, frame_file_name(complete), assembly.scratch);
    if (find_line(dictionary_anchor, assembly.scratch, 1) != 0) {
        insert_model_header(assembly.services.disk, assembly.frame,
                            load_ext_parameters(assembly.services, complete),
                            assembly.job.trace_folder);
    }
}

bool suffix_wings(Assembly& assembly) {
    for (const AircraftPart part : {WingsHigh, WingsLow}) {
        if (!suffix_labels_of(assembly, part)) {
            assembly.services.reporter.message_box("Error ! File " + assembly.job.bases[part] +
                                                   " could not be opened.");
            return false;
        }
    }
    return true;
}

// Which wings are drawn depends on whether the aircraft is on the ground.
void write_wing_calls(TextWriter& out) {
    out.line("    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL");
    out.line("    IFMSK SKIP_GROUND, ground, -1");
    out.line("    VINSTANCE_CALL32 model_wingsl, AIRCRAFT_PARAMS.llapbh.pbh");
    out.line("    BGL_RETURN");
    out.line("SKIP_GROUND label BGLCODE");
    out.line("    VINSTANCE_CALL32 model_wingsh, AIRCRAFT_PARAMS.llapbh.pbh");
}

// As an include line holds it. The run has been refused if that cannot be.
std::string model_name(const AircraftJob& job, AircraftPart part) {
    return source_text(model_file_name(job.bases[part])).value();
}

void write_wing_models(TextWriter& out, const AircraftJob& job) {
    out.line("model_wingsl label BGLCODE");
    out.line("    include    " + model_name(job, WingsLow));
    out.line("model_wingsh label BGLCODE");
    out.line("    include    " + model_name(job, WingsHigh));
    out.line("model_shadow label BGLCODE");
    // Two blanks here and four above, as it has always been written.
    out.line("    include  " + model_name(job, Shadow));
}

} // namespace

bool add_flexing_wings(Assembly& assembly) {
    Disk& disk = assembly.services.disk;
    LineStore& frame = assembly.frame;
    inherit_dictionary(assembly);
    save_array2file(disk, scratch_file(assembly), frame);
    reload(assembly, scratch_file(assembly), frame);
    if (!suffix_wings(assembly)) {
        return false;
    }
    const std::size_t include = find_lod_include(frame);
    if (include == 0) {
        assembly.services.reporter.message_box(
            "Error ! Code appears not usable; trying to include files.", Icon::Critical);
        return false;
    }
    // Without the call the wings are drawn from the top of the file.
    const std::size_t call = find_line(outside_call_anchor, frame, 1);
    replace_file(disk, scratch_file(assembly), [&](TextWriter& out) {
        write_lines(out, frame, 1, call);
        write_wing_calls(out);
        write_lines(out, frame, call + 1, include);
        write_wing_models(out, assembly.job);
        write_lines(out, frame, include + 1, frame.upper());
    });
    reload(assembly, scratch_file(assembly), frame);
    return true;
}

namespace {

constexpr std::string_view shadow_label_anchor = "model_shadow label BGLCODE";
constexpr std::string_view shadow_position_anchor =
    "SHADOW_VPOSITION    AIRCRAFT_PARAMS.llapbh.lla";

} // namespace

bool use_shadow_model(Assembly& assembly) {
    if (const std::size_t label = find_line(shadow_label_anchor, assembly.frame, 1); label != 0) {
        assembly.frame.comment_out(label);
    }
    if (!suffix_labels_of(assembly, Shadow)) {
        // This message names the model file, the one for the wings the base path: kept on purpose.
        assembly.services.reporter.message_box("Error ! File " +
                                               model_file_name(assembly.job.bases[Shadow]) +
                                               " could not be opened.");
        return false;
    }
    return true;
}

void add_wing_shadow(Assembly& assembly) {
    LineStore& frame = assembly.frame;
    const std::size_t position = find_line(shadow_position_anchor, frame, 1);
    if (position == 0) {
        return;
    }
    replace_file(assembly.services.disk, scratch_file(assembly), [&](TextWriter& out) {
        write_lines(out, frame, 1, position + 2);
        // The position and the line after it are written twice: the added call needs them.
        write_lines(out, frame, position, position + 1);
        out.line("    SHADOW_VICALL32 model_wingsl,AIRCRAFT_PARAMS.llapbh.pbh");
        write_lines(out, frame, position + 3, frame.upper());
    });
    reload(assembly, scratch_file(assembly), frame);
}

namespace {

// Whether the line is a call by `keyword` with a blank after it: then `rest` is what follows the
// keyword, that blank included.
bool is_call(std::string_view line, std::string_view keyword, std::string_view& rest) {
    const std::string_view text = trim(line);
    if (!text.starts_with(keyword) || text.size() == keyword.size() ||
        text[keyword.size()] != ' ') {
        return false;
    }
    rest = text.substr(keyword.size());
    return true;
}

} // namespace

void convert_calls32(LineStore& store) {
    for (std::size_t i = 1; i <= store.upper(); ++i) {
        std::string_view rest;
        // The rest keeps its own blank, so that two or more follow the new keyword.
        if (is_call(store.line(i), "VINSTANCE_CALL", rest)) {
            store.set_line(i, "    VINSTANCE_CALL32 " + std::string(rest));
        } else if (is_call(store.line(i), "SHADOW_VICALL", rest)) {
            store.set_line(i, "    SHADOW_VICALL32 " + std::string(rest));
        }
    }
}

} // namespace morvane
