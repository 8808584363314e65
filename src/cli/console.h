#pragma once

#include <string>
#include <vector>

namespace morvane::cli {

/// Makes the console and the streams take the program's text as it is, for as long as this lives.
class Console {
  public:
    Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    ~Console(); // NOLINT(performance-trivially-destructible): it has work to do on Windows

  private:
    [[maybe_unused]] unsigned code_page_before_ = 0; // only Windows has it
};

/// The words of the command line behind the program's name, in UTF-8 on every system.
std::vector<std::string> console_arguments(int argc, char** argv);

bool input_is_terminal();
bool errors_go_to_terminal();
bool output_is_terminal();

} // namespace morvane::cli
