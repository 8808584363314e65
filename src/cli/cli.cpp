#include "cli/cli.h"

#include <iostream>
#include <utility>

namespace morvane::cli {

std::string Cli::default_effect() {
    return "fx_beacon";
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
