// SPDX-License-Identifier: GPL-3.0-or-later
#include "aircraft/assembly.h"

#include "base/errors.h"
#include "base/paths.h"
#include "source/find_line.h"
#include "source/source_set.h"
#include "source/text_files.h"
#include "system/disk.h"
#include "system/file_bytes.h"
#include "upkeep/label_suffix.h"

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

} // namespace morvane
