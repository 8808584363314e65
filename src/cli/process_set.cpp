// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/process_set.h"

#include "base/paths.h"
#include "base/text.h"
#include "cli/console.h"
#include "objects/include_lines.h"
#include "objects/save.h"
#include "objects/unified_diff.h"
#include "problems/find_problems.h"
#include "recipe/apply_recipe.h"
#include "source/materials.h"
#include "source/open_set.h"
#include "source/source_set.h"
#include "upkeep/backup.h"

#include <algorithm>
#include <iostream>
#include <optional>

namespace morvane::cli {

namespace {

SetResult failure() {
    return {failed, false, nullptr};
}

SetResult refusal() {
    return {failed, true, nullptr};
}

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

// Added lines green, removed ones red, places blue; the line ends stay outside the colours.
std::string colored(const std::string& diff) {
    std::string result;
    for (std::size_t at = 0; at < diff.size();) {
        const std::size_t end = std::min(diff.find('\n', at), diff.size() - 1) + 1;
        const std::string_view line = std::string_view(diff).substr(at, end - at);
        const std::string_view text = line.substr(0, line.find_last_not_of("\r\n") + 1);
        const char* color = line[0] == '+'   ? "\x1b[32m"
                            : line[0] == '-' ? "\x1b[31m"
                            : line[0] == '@' ? "\x1b[36m"
                                             : "";
        result += color + std::string(text) + (*color != '\0' ? "\x1b[m" : "") +
                  std::string(line.substr(text.size()));
        at = end;
    }
    return result;
}

// One set on its way from Open to Save.
struct SetRun {
    Cli& cli;
    const ProcessOptions& options;
    const Recipe& recipe;
    OpenSet set{};
    RecipePlan plan{};
    ApplyResult applied{};
    SaveResult saved{};
    std::string diff{}; // of a dry run

    std::string output() const { return options.output.empty() ? set.base : options.output; }
    bool other_base() const { return output() != set.base; }
};

SetResult stop(const SetRun& run, const SetResult& result, const std::string& text) {
    run.cli.reporter.message_box(text, Icon::Critical);
    run.cli.reporter.print_notes();
    return result;
}

// The plan of the recipe; its errors have been printed when it cannot be carried out.
bool make_plan(SetRun& run) {
    run.plan = plan_recipe(run.set, run.recipe);
    if (run.options.strict && run.plan.left > 0) {
        run.plan.errors.push_back(run.recipe.file + ": " + to_text(run.plan.left) +
                                  " marked materials are named by no assignment (--strict)");
    }
    if (!run.plan.errors.empty()) {
        report_wrong(run.cli, run.plan.errors, run.plan.problems);
        for (const Note& hint : run.plan.hints) {
            std::cerr << "Note: " << place_and_text(hint) << '\n';
        }
    }
    return run.plan.errors.empty();
}

// A line for each planned material that Process would not take as a whole.
std::string unfit_text(const SetRun& run) {
    std::string text;
    for (const Note& note : unfit_materials(run.set, run.recipe, run.plan)) {
        text += place_and_text(note) + "\n";
    }
    return text;
}

bool is_serious(const SetRun& run, const Note& note) {
    const std::vector<std::string>& allow = run.recipe.allow;
    return note.severity != Severity::Note &&
           std::find(allow.begin(), allow.end(), note.code) == allow.end();
}

// The frame of the new base includes the model file of the new base.
void take_frame_along(SetRun& run) {
    const std::string old_name = file_name_part(model_file_name(run.set.base));
    const std::string new_name = file_name_part(model_file_name(run.output()));
    for (std::size_t i = 1; i <= run.set.frame.count(); ++i) {
        const std::string included = included_file(run.set.frame.line(i));
        if (equal_ignoring_case(file_name_part(included), old_name)) {
            std::string line(run.set.frame.line(i));
            line.replace(line.find(included), included.size(), new_name);
            run.set.frame.set_line(i, line);
        }
    }
    run.set.frame_changed = true;
}

void place_frame(SetRun& run) {
    if (!run.other_base()) {
        return;
    }
    if (run.options.with_frame) {
        take_frame_along(run);
    } else if (!run.set.frame_changed && !run.cli.disk->is_file(frame_file_name(run.output()))) {
        run.cli.reporter.note({run.output() + " has no frame file; --with-frame writes one."});
    }
}

// False when there is no backup afterwards although one was asked for.
bool back_up(const SetRun& run) {
    const Services services = run.cli.services();
    return !run.options.backup ||
           backup_without_asking(services, run.output()).outcome == Outcome::Done;
}

bool loses_export(const SetRun& run) {
    return run.options.backup && !run.options.force &&
           would_lose_export(run.cli.services(), {run.output()});
}

SetResult save(SetRun& run) {
    if (loses_export(run)) {
        run.cli.reporter.print_notes();
        return refusal();
    }
    if (!back_up(run)) {
        run.cli.reporter.print_notes();
        return failure();
    }
    run.saved = save_set(run.cli.services(), run.set, run.output());
    if (!run.saved.saved) {
        run.cli.reporter.print_notes();
        return failure();
    }
    return {};
}

SetResult finish(SetRun& run) {
    Json document{{"processed", processed_json(run.applied.processed)},
                  {"unprocessed", run.set.unprocessed()},
                  {"saved", paths_json(run.saved.paths)},
                  {"messages", json_texts(run.cli.reporter.messages())}};
    if (!run.diff.empty()) {
        document["diff"] = json_text(run.diff);
    }
    if (!run.cli.json) {
        run.cli.reporter.print_log();
        std::cout << (output_takes_colors() ? colored(run.diff) : run.diff);
    }
    return {done, false, std::move(document)};
}

SetResult apply_and_save(SetRun& run) {
    ConsoleReporter& reporter = run.cli.reporter;
    if (const std::string unfit = unfit_text(run); !unfit.empty() && !run.options.force) {
        return stop(run, refusal(), unfit + "Nothing was changed. --force skips this check.");
    }
    const bool trace = run.options.trace && !run.options.dry_run;
    run.applied = apply_recipe(run.cli.services(), run.set, run.recipe, run.plan,
                               trace ? std::optional<std::string>("") : std::nullopt);
    if (!run.applied.ok) {
        reporter.print_notes();
        return failure();
    }
    place_frame(run);
    note_problems(reporter, find_set_assembly_problems(*run.cli.disk, run.set, run.output()),
                  run.recipe.allow);
    const bool serious = std::any_of(reporter.notes().begin(), reporter.notes().end(),
                                     [&](const Note& note) { return is_serious(run, note); });
    if (run.options.strict && serious) {
        return stop(run, refusal(), "The result has problems, so nothing was saved (--strict).");
    }
    if (run.options.dry_run) {
        run.diff = model_diff(run.set, model_file_name(run.output())) +
                   frame_diff(run.set, frame_file_name(run.output()));
        return finish(run);
    }
    if (run.plan.steps.empty()) {
        reporter.note({"no assignment matches a material, so nothing was saved."});
        return finish(run);
    }
    const SetResult result = save(run);
    return result.status == done ? finish(run) : result;
}

} // namespace

SetResult process_set(Cli& cli, const ProcessOptions& options, const std::string& base,
                      const std::string& recipe_file) {
    const RecipeReading reading = read_recipe(*cli.disk, recipe_file, cli.default_effect());
    if (!reading.recipe) {
        return {report_wrong(cli, reading.errors, reading.problems), false, nullptr};
    }
    SetRun run{cli, options, *reading.recipe};
    if (!open_source_set(cli.services(), run.set, base)) {
        cli.reporter.print_notes();
        // A set that was read is refused; one that could not be read has failed.
        return run.set.model.count() > 0 ? refusal() : failure();
    }
    return make_plan(run) ? apply_and_save(run) : SetResult{wrong, false, nullptr};
}

} // namespace morvane::cli
