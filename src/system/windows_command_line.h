// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/programs.h"

#include <string>

namespace morvane {

/// The line by which Windows starts a program. The program splits it into the same arguments again,
/// whatever characters they contain. A batch file is run by the command interpreter; the line is
/// then the interpreter's, quoted so that no character of an argument acts on it, and double
/// quotes, which no name on Windows can contain, are dropped.
std::string windows_command_line(const ProgramCall& call);

/// Whether the command interpreter has to run this program (`.bat`, `.cmd`).
bool is_batch_file(const std::string& program);

} // namespace morvane
