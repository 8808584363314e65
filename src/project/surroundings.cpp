// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/surroundings.h"

#include "base/paths.h"
#include "base/version.h"
#include "system/program_folder.h"
#include "system/program_places.h"

namespace morvane {

BuildSurroundings build_surroundings(Disk& disk, const std::string& program_folder,
                                     const std::string& default_effect) {
    const std::string effects = join_path(program_folder, "fx_list.txt");
    return {default_effect, disk.is_file(effects) ? effects : std::string(),
            macro_folders(executable_folder()), std::string(version_caption)};
}

} // namespace morvane
