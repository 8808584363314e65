#include "base/paths.h"
#include "base/text.h"
#include "cli/cli.h"
#include "cli/json_text.h"
#include "problems/find_problems.h"
#include "recipe/apply_recipe.h"
#include "recipe/recipe.h"
#include "upkeep/settings.h"

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

void print_problems(const Cli& cli, const std::vector<Problem>& problems) {
    if (cli.json) {
        Json rows = Json::array();
        for (const Problem& problem : problems) {
            rows.push_back(problem_json(problem));
        }
        print_json({{"problems", rows}, {"messages", json_texts(cli.reporter.messages())}});
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

int finish(const Cli& cli, const std::vector<Problem>& problems, bool strict) {
    print_problems(cli, problems);
    return status_of(problems, strict);
}

PlannedObject planned_object(const Recipe& recipe, const Assignment& assignment, std::size_t row) {
    return {row, assignment.kind, assignment.parameters, recipe.file, assignment.source_line};
}

// What the recipe does with the set; nothing when that is wrong, which was reported.
std::optional<std::vector<PlannedObject>> plan(const OpenSet& set, const Recipe& recipe) {
    const RecipePlan steps = plan_recipe(set, recipe);
    if (!steps.errors.empty()) {
        report_wrong(steps.errors);
        return std::nullopt;
    }
    std::vector<PlannedObject> objects;
    for (const PlannedStep& step : steps.steps) {
        objects.push_back(planned_object(recipe, recipe.assignments[step.assignment], step.row));
    }
    return objects;
}

int check_set(Cli& cli, const CheckOptions& options, const Recipe* recipe) {
    const CheckedSet checked = open_for_check(*cli.disk, options.base);
    if (!checked.loaded) {
        cli.reporter.message_box(checked.refusal, Icon::Critical);
        return failed;
    }
    ProblemRequest request{checked.set};
    request.effects = read_effect_names(cli.services(), cli.program_folder());
    if (recipe != nullptr && checked.set.opened) {
        auto planned = plan(checked.set, *recipe);
        if (!planned) {
            return wrong;
        }
        request.planned = std::move(*planned);
    }
    return finish(cli, find_problems(*cli.disk, request), options.strict);
}

int check_recipe_alone(Cli& cli, const CheckOptions& options, const Recipe& recipe) {
    std::vector<Problem> problems;
    const std::vector<std::string> effects =
        read_effect_names(cli.services(), cli.program_folder());
    for (const Assignment& assignment : recipe.assignments) {
        PlannedObject object = planned_object(recipe, assignment, 0);
        check_effect_name(object, effects, problems);
    }
    for (Problem& problem : problems) {
        problem.row.reset();
    }
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
        return report_wrong(reading.errors);
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
    on_call(*command, cli, [&cli, options] { return run_check(cli, *options); });
}

} // namespace morvane::cli
