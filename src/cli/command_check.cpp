// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/paths.h"
#include "base/reporter.h"
#include "base/text.h"
#include "cli/cli.h"
#include "cli/json_text.h"
#include "problems/find_problems.h"
#include "recipe/apply_recipe.h"
#include "recipe/recipe.h"

#include <algorithm>
#include <iostream>

namespace morvane::cli {

namespace {

struct CheckOptions {
    std::string base; // or a recipe alone
    std::string recipe;
    bool strict = false;
};

const char* severity_word(Severity severity) {
    switch (severity) {
    case Severity::Error:
        return "error";
    case Severity::Warning:
        return "warning";
    case Severity::Note:
        break;
    }
    return "note";
}

Json problem_json(const Problem& problem) {
    return {{"code", problem.code},
            {"severity", severity_word(problem.severity)},
            {"text", json_text(problem.text)},
            {"path", json_path(problem.path)},
            {"line", problem.line},
            {"row", problem.row ? Json(*problem.row) : Json(nullptr)}};
}

void print_problems(Cli& cli, const std::vector<Problem>& problems) {
    if (cli.json) {
        Json rows = Json::array();
        for (const Problem& problem : problems) {
            rows.push_back(problem_json(problem));
        }
        print_json(cli, {{"problems", rows}, {"messages", json_texts(cli.reporter.messages())}});
        return;
    }
    for (const Problem& problem : problems) {
        std::cout << problem.path << ':' << problem.line << ": " << severity_word(problem.severity)
                  << ": " << problem.text << " [" << problem.code << "]\n";
    }
}

int status_of(const std::vector<Problem>& problems, bool strict) {
    const bool bad = std::any_of(problems.begin(), problems.end(), [&](const Problem& problem) {
        return problem.severity == Severity::Error ||
               (strict && problem.severity == Severity::Warning);
    });
    return bad ? failed : done;
}

int finish(Cli& cli, const std::vector<Problem>& problems, bool strict) {
    print_problems(cli, problems);
    return status_of(problems, strict);
}

PlannedObject planned_object(const Recipe& recipe, const Assignment& assignment, std::size_t row) {
    return {row, assignment.kind, assignment.parameters, file_of(recipe, assignment),
            assignment.source_line};
}

std::vector<PlannedObject> planned_objects(const Recipe& recipe, const RecipePlan& plan) {
    std::vector<PlannedObject> objects;
    for (const PlannedStep& step : plan.steps) {
        objects.push_back(planned_object(recipe, recipe.assignments[step.assignment], step.row));
    }
    return objects;
}

// The set as the recipe makes it; as it is when the recipe cannot be carried out, which the
// problems will say.
OpenSet applied(Cli& cli, const OpenSet& set, const Recipe& recipe, const RecipePlan& plan) {
    OpenSet result = set;
    QuietReporter quiet;
    return apply_recipe({*cli.disk, quiet}, result, recipe, plan).ok ? result : set;
}

int check_set(Cli& cli, const CheckOptions& options, const Recipe* recipe) {
    const CheckedSet checked = open_for_check(*cli.disk, options.base);
    if (!checked.loaded) {
        cli.reporter.message_box(checked.refusal, Icon::Critical);
        return failed;
    }
    RecipePlan plan;
    OpenSet set = checked.set;
    if (recipe != nullptr && set.opened) {
        plan = plan_recipe(set, *recipe);
        if (!plan.errors.empty()) {
            return report_wrong(cli, plan.errors, plan.problems);
        }
        set = applied(cli, set, *recipe, plan);
    }
    ProblemRequest request{set};
    request.effects = cli.effects();
    request.objects = cli.searched_objects();
    request.opened_frame = &checked.set.frame;
    if (recipe != nullptr) {
        request.allowed = recipe->allow;
        request.planned = planned_objects(*recipe, plan);
    }
    return finish(cli, find_problems(*cli.disk, request), options.strict);
}

int check_recipe_alone(Cli& cli, const CheckOptions& options, const Recipe& recipe) {
    std::vector<Problem> problems;
    const std::vector<std::string> effects = cli.effects();
    const std::vector<KnownObject> objects = cli.searched_objects();
    for (const Assignment& assignment : recipe.assignments) {
        PlannedObject object = planned_object(recipe, assignment, 0);
        check_parameters_of(object, problems);
        check_effect_name(object, effects, problems);
        check_identifier(object, objects, problems);
    }
    for (Problem& problem : problems) {
        problem.row.reset();
    }
    std::erase_if(problems, [&](const Problem& problem) {
        return std::find(recipe.allow.begin(), recipe.allow.end(), problem.code) !=
               recipe.allow.end();
    });
    sort_worst_first(problems);
    return finish(cli, problems, options.strict);
}

int run_check(Cli& cli, const CheckOptions& options) {
    const bool alone = options.recipe.empty() && has_ending(options.base, ".toml");
    const std::string& file = alone ? options.base : options.recipe;
    if (file.empty()) {
        return check_set(cli, options, nullptr);
    }
    const RecipeReading reading = read_recipe(*cli.disk, file, cli.default_effect());
    if (!reading.recipe) {
        return report_wrong(cli, reading.errors, reading.problems);
    }
    return alone ? check_recipe_alone(cli, options, *reading.recipe)
                 : check_set(cli, options, &*reading.recipe);
}

} // namespace

void add_check_command(CLI::App& app, Cli& cli) {
    auto* command = app.add_subcommand(
        "check", "Report what is wrong with a set and with what a recipe would make of it");
    const auto options = std::make_shared<CheckOptions>();
    command
        ->add_option("BASE", options->base,
                     "Base path of the set, without an ending; or a recipe alone")
        ->required();
    command->add_option("RECIPE", options->recipe, "Recipe file (TOML)");
    command->add_flag("--strict", options->strict, "Warnings end with status 1 too");
    add_example(*command, "check airport airport.toml");
    on_call(*command, cli, [&cli, options] { return run_check(cli, *options); });
}

} // namespace morvane::cli
