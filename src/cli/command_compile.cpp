// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/cli.h"
#include "cli/json_text.h"
#include "upkeep/compile.h"

#include <iostream>

namespace morvane::cli {

namespace {

/// What was typed after `compile`.
struct CompileOptions {
    std::string base;
    bool mdl = false;
    std::string compiler;
};

int run_compiler(Cli& cli, const CompileOptions& options) {
    cli.reporter.print_notes_at_once();
    const auto programs = make_system_programs();
    CompileJob job{options.base, cli.program_folder(), options.mdl};
    job.compiler = command_words(options.compiler).value_or(std::vector<std::string>());
    std::string kept;
    const Outcome outcome = run_compile(cli.services(), *programs, job, [&](std::string_view text) {
        if (cli.json) {
            kept += text;
        } else {
            std::cout << text << std::flush;
        }
    });
    const int status = outcome == Outcome::Done ? done : failed;
    if (cli.json) {
        Json document{{"messages", json_texts(cli.reporter.messages())}};
        if (status == failed) {
            document = failure_document(cli, status);
        }
        document["output"] = json_text(kept); // a compiler that fails has printed why
        print_json(cli, document);
    }
    return status;
}

std::string check_command(const std::string& text) {
    return command_words(text) ? "" : "\"" + text + "\" is not a command";
}

} // namespace

void add_compile_command(CLI::App& app, Cli& cli) {
    auto* command = app.add_subcommand("compile", "Run the compiler bglc on the set");
    const auto options = std::make_shared<CompileOptions>();
    command->add_option("BASE", options->base, "Base path of the set, without an ending")
        ->required();
    command->add_flag("--mdl", options->mdl,
                      "Compile an aircraft (/mdl) instead of scenery (/bgl)");
    command
        ->add_option("--compiler", options->compiler,
                     "The compiler's command; default: MORVANE_COMPILER, else bglc in the set's "
                     "folder, else on the PATH")
        ->type_name("WORDS")
        ->check(check_command);
    add_example(*command, "compile airport");
    on_call(*command, cli, [&cli, options] { return run_compiler(cli, *options); });
}

} // namespace morvane::cli
