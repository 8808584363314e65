#include "recipe/apply_recipe.h"

#include "base/reporter.h"
#include "base/text.h"
#include "objects/block_checks.h"
#include "objects/macro_include.h"
#include "objects/parameter_checks.h"
#include "objects/unique_labels.h"
#include "source/materials.h"
#include "source/source_set.h"

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

Note about_assignment(const Recipe& recipe, const Assignment& assignment, std::string text) {
    return {std::move(text), file_of(recipe, assignment), assignment.source_line};
}

bool is_allowed(const Recipe& recipe, const Note& note) {
    return std::find(recipe.allow.begin(), recipe.allow.end(), note.code) != recipe.allow.end();
}

// What is wrong with an assignment's parameters is said once, however many materials it makes.
void note_parameters(const Services& services, const Recipe& recipe, const RecipePlan& plan) {
    for (std::size_t i = 0; i < recipe.assignments.size(); ++i) {
        const Assignment& assignment = recipe.assignments[i];
        const bool used =
            std::any_of(plan.steps.begin(), plan.steps.end(),
                        [&](const PlannedStep& step) { return step.assignment == i; });
        if (!used) {
            continue;
        }
        for (const Note& note :
             parameter_notes(assignment.kind, assignment.parameters, file_of(recipe, assignment),
                             assignment.source_line)) {
            if (!is_allowed(recipe, note)) {
                services.reporter.note(note);
            }
        }
    }
}

void note_left(const Services& services, const OpenSet& set) {
    for (const Translation& material : set.translations) {
        if (material.processed.empty()) {
            services.reporter.note({full_name(material) + " is left as it is.",
                                    model_file_name(set.base), material.block.selecting_line});
        }
    }
}

} // namespace

ApplyResult apply_recipe(const Services& services, OpenSet& set, const Recipe& recipe,
                         const RecipePlan& plan, const std::optional<std::string>& trace_folder) {
    ApplyResult result;
    note_parameters(services, recipe, plan);
    for (const PlannedStep& step : plan.steps) {
        const Assignment& assignment = recipe.assignments.at(step.assignment);
        const Translation& material = set.translation(step.row);
        const std::size_t triangles = triangles_to_rewrite(set, material);
        ProcessResult processed = process_material(services, set, step.row, assignment.kind,
                                                   assignment.parameters, trace_folder);
        if (!processed.processed) {
            services.reporter.note(
                about_assignment(recipe, assignment, full_name(material) + " was not processed."));
            result.given_up = std::move(processed.change);
            return result;
        }
        if (recipe.unique_labels) {
            number_repeated_label(set, step.row);
        }
        services.reporter.note(about_assignment(
            recipe, assignment,
            full_name(material) + " becomes " + std::string(kind_text(assignment.kind)) + ": " +
                to_text(triangles) + (triangles == 1 ? " triangle." : " triangles.")));
        result.processed.push_back({step.row, assignment.kind, processed.lines,
                                    assignment.parameters, std::move(*processed.change)});
    }
    if (!recipe.macros.empty()) {
        FrameChange frame(set);
        if (include_macros(set, recipe.macros)) {
            result.frame = std::move(frame);
        }
    }
    note_left(services, set);
    services.reporter.add_message("Materials left as they are : " + to_text(set.unprocessed()));
    result.ok = true;
    return result;
}

} // namespace morvane
