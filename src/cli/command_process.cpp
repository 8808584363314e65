#include "base/text.h"
#include "cli/cli.h"
#include "cli/json_text.h"
#include "objects/save.h"
#include "objects/unified_diff.h"
#include "problems/find_problems.h"
#include "recipe/apply_recipe.h"
#include "recipe/recipe.h"
#include "source/open_source_set.h"
#include "source/source_set.h"

#include <iostream>

namespace morvane::cli {

namespace {

struct ProcessOptions {
    std::string base;
    std::string recipe;
    std::string output;
    bool dry_run = false;
    bool trace = false;
    bool strict = false;
};

Json processed_json(const std::vector<ProcessedMaterial>& processed) {
    Json rows = Json::array();
    for (const ProcessedMaterial& material : processed) {
        rows.push_back(
            {{"row", material.row}, {"kind", kind_text(material.kind)}, {"lines", material.lines}});
    }
    return rows;
}

Json paths_json(const std::vector<std::string>& paths) {
    Json result = Json::array();
    for (const std::string& path : paths) {
        result.push_back(json_path(path));
    }
    return result;
}

struct Processed {
    ApplyResult applied;
    SaveResult saved;
    std::string diff; // of a dry run
};

void print_outcome(const Cli& cli, const OpenSet& set, const Processed& outcome) {
    if (!cli.json) {
        cli.reporter.print_log();
        std::cout << outcome.diff;
        return;
    }
    Json document{{"processed", processed_json(outcome.applied.processed)},
                  {"unprocessed", set.unprocessed()},
                  {"saved", paths_json(outcome.saved.paths)},
                  {"messages", json_texts(cli.reporter.messages())}};
    if (!outcome.diff.empty()) {
        document["diff"] = json_text(outcome.diff);
    }
    print_json(document);
}

std::string diff_of(const OpenSet& set, const std::string& output) {
    return model_diff(set, model_file_name(output)) + frame_diff(set, frame_file_name(output));
}

// The plan of a recipe for an open set; errors in it have been printed when there is none.
std::optional<RecipePlan> make_plan(const OpenSet& set, const Recipe& recipe, bool strict) {
    RecipePlan plan = plan_recipe(set, recipe);
    if (strict && plan.left > 0) {
        plan.errors.push_back(recipe.file + ": " + to_text(plan.left) +
                              " marked materials are named by no assignment (--strict)");
    }
    if (!plan.errors.empty()) {
        report_wrong(plan.errors);
        for (const Note& hint : plan.hints) {
            std::cerr << "Note: " << place_and_text(hint) << '\n';
        }
        return std::nullopt;
    }
    return plan;
}

int process_and_save(Cli& cli, OpenSet& set, const Recipe& recipe, const RecipePlan& plan,
                     const ProcessOptions& options) {
    const std::string output = options.output.empty() ? options.base : options.output;
    const std::optional<std::string> trace =
        options.trace && !options.dry_run ? std::optional<std::string>("") : std::nullopt;
    Processed outcome;
    outcome.applied = apply_recipe(cli.services(), set, recipe, plan, trace);
    if (!outcome.applied.ok) {
        cli.reporter.print_notes();
        return failed;
    }
    const bool problems = note_problems(
        cli.reporter, find_set_assembly_problems(*cli.disk, set, output), recipe.allow);
    if (problems && options.strict) {
        cli.reporter.message_box("The result has problems, so nothing was saved (--strict).",
                                 Icon::Critical);
        cli.reporter.print_notes();
        return failed;
    }
    if (options.dry_run) {
        outcome.diff = diff_of(set, output);
    } else if (plan.steps.empty()) {
        cli.reporter.note({"no assignment matches a material, so nothing was saved."});
    } else {
        outcome.saved = save_set(cli.services(), set, output);
        if (!outcome.saved.saved) {
            cli.reporter.print_notes();
            return failed;
        }
    }
    print_outcome(cli, set, outcome);
    return done;
}

int run_process(Cli& cli, const ProcessOptions& options) {
    const RecipeReading reading = read_recipe(*cli.disk, options.recipe, cli.default_effect());
    if (!reading.recipe) {
        return report_wrong(reading.errors);
    }
    OpenSet set;
    if (!open_source_set(cli.services(), set, options.base)) {
        cli.reporter.print_notes();
        return failed;
    }
    const auto plan = make_plan(set, *reading.recipe, options.strict);
    return plan ? process_and_save(cli, set, *reading.recipe, *plan, options) : wrong;
}

} // namespace

void add_process_command(CLI::App& app, Cli& cli) {
    auto* command =
        app.add_subcommand("process", "Rewrite the marked materials of a set by a recipe and save");
    const auto options = std::make_shared<ProcessOptions>();
    command->add_option("BASE", options->base, "Base path of the set, without an ending")
        ->required();
    command->add_option("RECIPE", options->recipe, "Recipe file (TOML)")->required();
    command->add_option("--output", options->output, "Save under another base path")
        ->type_name("BASE");
    command->add_flag("--dry-run", options->dry_run,
                      "Write no file; print the change as a unified diff");
    command->add_flag("--trace", options->trace, "Write the trace files to the current folder");
    command->add_flag("--strict", options->strict,
                      "Materials that no assignment names, and problems of the result, are errors");
    on_call(*command, cli, [&cli, options] { return run_process(cli, *options); });
}

} // namespace morvane::cli
