#include "objects/trace.h"

#include "base/paths.h"
#include "source/text_files.h"
#include "system/replace_files.h"
#include "system/text_writer.h"

namespace morvane {

void write_code_traces(Disk& disk, const OpenSet& set, const std::optional<std::string>& folder) {
    if (!folder) {
        return;
    }
    save_array2file(disk, join_path(*folder, "bgl_code.txt"), set.model);
    replace_file(disk, join_path(*folder, "bgl_new_code.txt"), [&](TextWriter& out) {
        for (std::size_t i = 1; i <= set.new_code.base; ++i) {
            out.line(set.new_code.lines[i]);
        }
    });
}

void write_frame_trace(Disk& disk, const LineStore& frame,
                       const std::optional<std::string>& folder) {
    if (folder) {
        save_array2file(disk, join_path(*folder, "new_azm.txt"), frame);
    }
}

} // namespace morvane
