// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/services.h"

#include <string>

namespace morvane {

/// Whether the file is a valid BGL file with library data. An invalid one is added to "error.txt"
/// in the program folder. Throws RuntimeError when a file that is there cannot be read.
bool is_library_file(Disk& disk, const std::string& path, const std::string& program_folder);

/// Command "Make Universal": after a question, widens the bounds in a library file's header to the
/// whole globe and keeps a copy of the file with ".bck" appended to its name. Gives true when the
/// file was changed; refusals are shown to the user.
/// Throws RuntimeError; the file is then as it was and the copy is not there.
bool make_universal(const Services& services, const std::string& path,
                    const std::string& program_folder);

/// Command "Revert to Original": puts the copy back over the file and removes the copy. `path` is
/// the file or its copy. Gives true when the file was put back; refusals are shown to the user.
/// Throws RuntimeError; the copy is then still there.
bool revert(const Services& services, const std::string& path);

} // namespace morvane
