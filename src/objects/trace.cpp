// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/trace.h"

#include "base/paths.h"
#include "source/text_files.h"
#include "system/replace_files.h"
#include "system/text_writer.h"

namespace morvane {

void write_traces(Disk& disk, const OpenSet& set, const std::optional<std::string>& folder,
                  bool frame_written) {
    if (!folder) {
        return;
    }
    save_array2file(disk, join_path(*folder, "bgl_code.txt"), set.model);
    replace_file(disk, join_path(*folder, "bgl_new_code.txt"), [&](TextWriter& out) {
        for (const Replacement& replacement : set.replacements) {
            for (const std::string& line : replacement.code) {
                out.line(line);
            }
        }
    });
    if (frame_written) {
        write_frame_trace(disk, set.frame, folder);
    }
}

void write_frame_trace(Disk& disk, const LineStore& frame,
                       const std::optional<std::string>& folder) {
    if (folder) {
        save_array2file(disk, join_path(*folder, "new_azm.txt"), frame);
    }
}

} // namespace morvane
