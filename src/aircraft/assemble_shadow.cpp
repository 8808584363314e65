// SPDX-License-Identifier: GPL-3.0-or-later
#include "aircraft/assembly.h"
#include "base/reporter.h"
#include "source/find_line.h"
#include "source/source_set.h"
#include "source/text_files.h"
#include "system/replace_files.h"
#include "system/text_writer.h"

namespace morvane {

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

} // namespace morvane
