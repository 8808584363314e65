#include "cli/cli.h"

#include "tools/program_folder.h"
#include "tools/settings.h"

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <utility>

namespace morvane::cli {

namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

} // namespace

std::string executable_folder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path().string();
}

std::string Cli::program_folder() {
    return resolve_program_folder(
        *disk, {program_folder_option, environment("MORVANE_HOME"), executable_folder(),
                user_data_folder(environment("XDG_DATA_HOME"), environment("HOME"))});
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
