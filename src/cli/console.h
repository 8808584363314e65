// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/readable_output.h"

#include <memory>
#include <streambuf>
#include <string>
#include <vector>

namespace morvane::cli {

/// While alive: UTF-8 console, binary streams, and a terminal that gets nothing but UTF-8.
class Console {
  public:
    Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    ~Console();

  private:
    void show_readable_output();
    void restore_output();

    std::unique_ptr<ReadableOutput> output_;
    std::streambuf* output_before_ = nullptr;
    [[maybe_unused]] unsigned code_page_before_ = 0; // only Windows has it
};

/// The words of the command line after the program's name, in UTF-8 on every system.
std::vector<std::string> console_arguments(int argc, char** argv);

bool input_is_terminal();
bool output_is_terminal();
bool errors_go_to_terminal();
/// Whether colours are shown: at a terminal, but not with TERM=dumb.
bool output_takes_colors();
/// Whether what was written to the errors' terminal can be written over: not with TERM=dumb.
bool errors_can_be_overwritten();

} // namespace morvane::cli
