#pragma once

#include "system/launch.h"

#include <string>
#include <string_view>

namespace morvane {

/// The line by which the command interpreter of Windows runs a program with its output in a file:
/// `PROGRAM ARGUMENTS > FILE`. Whatever is no plain name is quoted, so that blanks stay inside and
/// no character of a path acts on the interpreter.
std::string windows_command_line(const ProgramCall& call, std::string_view output_file);

/// The same without a file: the output goes where the interpreter's goes.
std::string windows_words_line(const ProgramCall& call);

/// The line by which a program is started without the interpreter: the program takes it apart again
/// into these arguments, whatever characters they hold.
std::string windows_program_line(const ProgramCall& call);

/// The interpreter's own command line around such a line.
std::string windows_interpreter_line(std::string_view command_line);

} // namespace morvane
