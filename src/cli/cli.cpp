#include "cli/cli.h"

#include "system/program_places.h"
#include "upkeep/settings.h"

#include <iostream>
#include <utility>

namespace morvane::cli {

std::string Cli::program_folder() {
    return resolve_program_folder(*disk, program_places(program_folder_option));
}

std::string Cli::default_effect() {
    const std::vector<std::string> names = read_effect_names(services(), program_folder());
    return names.empty() ? std::string() : names.front();
}

void on_call(CLI::App& command, Cli& cli, std::function<int()> run) {
    command.callback([&cli, run = std::move(run)] {
        cli.status = run();
        cli.reporter.end_progress();
    });
}

int report_wrong(const std::vector<std::string>& errors) {
    for (const std::string& error : errors) {
        std::cerr << error << '\n';
    }
    return wrong;
}

} // namespace morvane::cli
