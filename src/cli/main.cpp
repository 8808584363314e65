#include "base/errors.h"
#include "base/version.h"
#include "cli/cli.h"
#include "cli/completions.h"
#include "cli/console.h"
#include "toml/nearest_key.h"

#include <algorithm>
#include <iostream>
#include <new>
#include <utility>

namespace {

using namespace morvane;
using namespace morvane::cli;

void add_common_options(CLI::App& app, Cli& cli) {
    app.set_version_flag("--version", "morvane-cli " + std::string(version_caption),
                         "Print the version and leave");
    app.set_help_flag("-h,--help", "Print this help and leave");
    app.add_option("--program-folder", cli.program_folder_option,
                   "Folder of settings, scratch and report files")
        ->type_name("DIR");
    app.add_flag("--json", cli.json, "Print one JSON document instead of text");
    auto* yes = app.add_flag_callback(
        "--yes", [&cli] { cli.reporter.set_answer(Answer::Yes); }, "Answer all questions with Yes");
    app.add_flag_callback(
           "--no", [&cli] { cli.reporter.set_answer(Answer::No); }, "Answer all questions with No")
        ->excludes(yes);
}

void add_commands(CLI::App& app, Cli& cli) {
    add_inspect_command(app, cli);
    add_process_command(app, cli);
    add_check_command(app, cli);
    add_tool_commands(app, cli);
    add_assemble_command(app, cli);
    add_library_commands(app, cli);
    add_bgl_commands(app, cli);
    add_render_command(app, cli);
}

int report_failure(const std::string& text) {
    std::cerr << "[message] " << text << '\n';
    return failed;
}

// The command whose own command is missing.
const CLI::App& innermost(const CLI::App& app) {
    const auto chosen = app.get_subcommands();
    return chosen.empty() ? app : innermost(*chosen.front());
}

// The parser only says that a command is missing, not that a word in its place is none.
int report_parse_error(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> left = app.remaining(true);
    std::vector<std::string_view> names;
    for (const CLI::App* command : innermost(app).get_subcommands({})) {
        names.emplace_back(command->get_name());
    }
    if (dynamic_cast<const CLI::RequiredError*>(&error) == nullptr || left.empty() ||
        names.empty()) {
        return app.exit(error) == 0 ? done : wrong;
    }
    const std::string& word = left.front();
    const bool option = word.starts_with('-');
    std::cerr << "There is no " << (option ? "option" : "command") << " \"" << word << '"'
              << (option ? "" : suggestion(word, names))
              << "\nRun with --help for more information.\n";
    return wrong;
}

int run(std::vector<std::string> arguments) {
    Cli cli;
    CLI::App app("Turns marked triangles of gmax exports into lights, effects, windsocks and "
                 "library objects",
                 "morvane-cli");
    app.require_subcommand(1);
    app.fallthrough();
    add_common_options(app, cli);
    add_commands(app, cli);
    add_completions_option(app);
    try {
        std::reverse(arguments.begin(), arguments.end()); // as the parser takes them
        app.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
        return report_parse_error(app, error);
    }
    return cli.status;
}

int run_and_report(int argc, char** argv) {
    const Console console;
    int status = failed;
    try {
        std::ios::sync_with_stdio(false);
        status = run(console_arguments(argc, argv));
    } catch (const RuntimeError& error) {
        status = report_failure(error.what());
    } catch (const std::bad_alloc&) {
        status = report_failure("7 : Out of memory");
    }
    std::cout.flush();
    if (!std::cout && status == done) {
        status = report_failure("The output could not be written.");
    }
    return status;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run_and_report(argc, argv);
    } catch (...) {
        return failed; // what failed is the reporting itself
    }
}
