// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/program_folder.h"

#include <string>

namespace morvane {

/// Where the program folder may be on this machine. `option` is what the user asked for when
/// starting the program, empty when nothing.
ProgramFolderChoices program_places(const std::string& option);

/// The folder of the running program; empty when the system does not tell.
std::string executable_folder();

/// A variable of the environment, in UTF-8; empty when it is not set.
std::string environment_variable(const std::string& name);

} // namespace morvane
