// SPDX-License-Identifier: GPL-3.0-or-later
#include "aircraft/assembly.h"
#include "base/reporter.h"
#include "base/windows1252.h"
#include "objects/model_header.h"
#include "source/find_line.h"
#include "source/source_set.h"
#include "source/text_files.h"
#include "system/disk.h"
#include "system/replace_files.h"
#include "system/text_writer.h"

namespace morvane {

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

} // namespace morvane
