// SPDX-License-Identifier: GPL-3.0-or-later
#include "recipe/apply_recipe.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "base/text.h"
#include "objects/block_checks.h"
#include "objects/include_lines.h"
#include "objects/parameter_checks.h"
#include "objects/process.h"
#include "objects/save.h"
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

namespace {

// One step of a plan. False, after its message box, when the material was not processed.
bool carry_out(const Services& services, OpenSet& set, const Recipe& recipe,
               const PlannedStep& step, ApplyResult& result) {
    const Assignment& assignment = recipe.assignments.at(step.assignment);
    const Translation& material = set.translation(step.row);
    const std::size_t triangles = triangles_to_rewrite(set, material);
    ProcessResult processed =
        process_material(services, set, step.row, assignment.kind, assignment.parameters);
    if (!processed.processed) {
        services.reporter.note(
            about_assignment(recipe, assignment, full_name(material) + " was not processed."));
        result.given_up = std::move(processed.change);
        return false;
    }
    if (recipe.unique_labels) {
        number_repeated_label(set, step.row);
    }
    services.reporter.note(about_assignment(
        recipe, assignment,
        full_name(material) + " becomes " + std::string(kind_text(assignment.kind)) + ": " +
            to_text(triangles) + (triangles == 1 ? " triangle." : " triangles.")));
    result.processed.push_back({step.row, assignment.kind, processed.lines, assignment.parameters,
                                std::move(*processed.change)});
    return true;
}

bool carry_out_all(const Services& services, OpenSet& set, const Recipe& recipe,
                   const RecipePlan& plan, ApplyResult& result) {
    for (const PlannedStep& step : plan.steps) {
        const std::size_t done = result.processed.size();
        if (!services.reporter.progress("Applying the recipe", done, plan.steps.size())) {
            services.reporter.note({"the recipe was stopped: " + to_text(done) + " of " +
                                    to_text(plan.steps.size()) + " materials are processed."});
            return false;
        }
        if (!carry_out(services, set, recipe, step, result)) {
            return false;
        }
    }
    return true;
}

// Each material's traces would replace those of the one before: they are written once. False, after
// a message box, when they cannot be.
bool write_last_traces(const Services& services, const OpenSet& set,
                       const std::optional<std::string>& folder, bool frame_written) {
    try {
        write_traces(services.disk, set, folder, frame_written);
        return true;
    } catch (const RuntimeError& error) {
        report_error(services.reporter, error, "Error : ", " :");
        return false;
    }
}

} // namespace

std::vector<Note> unfit_materials(const OpenSet& set, const Recipe& recipe,
                                  const RecipePlan& plan) {
    std::vector<Note> notes;
    for (const PlannedStep& step : plan.steps) {
        const Assignment& assignment = recipe.assignments.at(step.assignment);
        const Translation& material = set.translation(step.row);
        const BlockFinding finding = check_block(set, material);
        if (finding.state != BlockState::Fit) {
            notes.push_back(about_assignment(recipe, assignment,
                                             full_name(material) + " " + finding.text + " (" +
                                                 model_file_name(set.base) + ":" +
                                                 to_text(finding.line) + ")"));
            notes.back().severity = Severity::Error;
            notes.back().code = block_note(set, material)->code;
        }
    }
    return notes;
}

ApplyResult apply_recipe(const Services& services, OpenSet& set, const Recipe& recipe,
                         const RecipePlan& plan, const std::optional<std::string>& trace_folder) {
    ApplyResult result;
    note_parameters(services, recipe, plan);
    const bool frame_was_changed = set.frame_changed;
    const bool all_done = carry_out_all(services, set, recipe, plan, result);
    if (!result.processed.empty() &&
        !write_last_traces(services, set, trace_folder, set.frame_changed && !frame_was_changed)) {
        return result;
    }
    if (!all_done) {
        return result;
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
