// SPDX-License-Identifier: GPL-3.0-or-later
#include "aircraft/assemble_aircraft.h"
#include "cli/cli.h"
#include "cli/json_text.h"
#include "problems/find_problems.h"

namespace morvane::cli {

namespace {

int run_assemble(Cli& cli, AircraftJob& job) {
    if (job.shadow_optimization && job.bases[Shadow].empty()) {
        return report_usage(cli, "--shadow-optimization: --shadow BASE is missing");
    }
    cli.reporter.print_notes_at_once();
    if (!job.shadow_optimization && !job.bases[Shadow].empty()) {
        cli.reporter.note({"--shadow is given without --shadow-optimization, which is what makes " +
                           job.bases[Shadow] + " the shadow."});
    }
    job.program_folder = cli.program_folder();
    const auto output = assemble_aircraft(cli.services(), job);
    if (output) {
        note_problems(cli.reporter, find_file_assembly_problems(*cli.disk, *output));
    }
    if (cli.json && output) {
        print_json(cli, {{"output", json_path(*output)},
                         {"messages", json_texts(cli.reporter.messages())}});
    }
    return output ? done : failed;
}

CLI::Option* add_base(CLI::App& command, AircraftJob& job, AircraftPart part, const char* name,
                      const char* what) {
    return command.add_option(name, job.bases[part], what)->type_name("BASE");
}

} // namespace

void add_assemble_command(CLI::App& app, Cli& cli) {
    auto* command = app.add_subcommand(
        "assemble", "Join the exports of an aircraft: flexing wings and a cheap shadow");
    const auto job = std::make_shared<AircraftJob>();
    add_base(*command, *job, CompleteModel, "--complete",
             "The complete model; its frame file becomes the result")
        ->required();
    auto* flexing =
        command->add_flag("--flexing-wings", job->flexing_wings,
                          "Draw the low wings on the ground, the high wings in the air");
    for (auto* option :
         {add_base(*command, *job, Fuselage, "--fuselage", "The fuselage without wings"),
          add_base(*command, *job, WingsHigh, "--wings-high", "The wings in the high position"),
          add_base(*command, *job, WingsLow, "--wings-low", "The wings in the low position")}) {
        option->needs(flexing);
        flexing->needs(option);
    }
    command->add_flag("--shadow-optimization", job->shadow_optimization,
                      "Draw the shadow from the shadow model");
    add_base(*command, *job, Shadow, "--shadow", "The simplest possible model, for the shadow");
    add_example(*command, "assemble --complete glider --shadow-optimization --shadow shadow");
    on_call(*command, cli, [&cli, job] { return run_assemble(cli, *job); });
}

} // namespace morvane::cli
