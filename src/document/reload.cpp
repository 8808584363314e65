// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/reload.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "base/text.h"
#include "document/document.h"
#include "document/kept_reports.h"
#include "objects/block_checks.h"
#include "source/materials.h"
#include "source/open_set.h"
#include "source/source_set.h"

#include <algorithm>
#include <map>
#include <utility>

namespace morvane {

namespace {

std::string colors_of(const Translation& material) {
    return "marked " + std::string(highlight_color_name(material.highlight)) + ", colour " +
           material.color;
}

// The materials that cannot be taken as a whole are left, with the reason as a note.
void leave_unfit(const OpenSet& set, RecipePlan& plan, Reporter& reporter) {
    std::erase_if(plan.steps, [&](const PlannedStep& step) {
        const std::optional<Note> note = block_note(set, set.translation(step.row));
        if (note) {
            reporter.note(*note);
        }
        return note.has_value();
    });
}

std::vector<Assignment> idle_assignments(const Recipe& recipe, const RecipePlan& plan) {
    std::vector<Assignment> idle;
    for (std::size_t i = 0; i < recipe.assignments.size(); ++i) {
        if (std::none_of(plan.steps.begin(), plan.steps.end(),
                         [i](const PlannedStep& step) { return step.assignment == i; })) {
            idle.push_back(recipe.assignments[i]);
        }
    }
    return idle;
}

// Some materials may have vanished since the recipe was made: that is no mistake of the recipe's.
void make_optional(Recipe& recipe) {
    for (Assignment& assignment : recipe.assignments) {
        assignment.optional = true;
    }
}

} // namespace

std::vector<std::size_t> same_rows(const std::vector<Translation>& before,
                                   const std::vector<Translation>& after) {
    std::map<std::pair<std::string, std::string>, std::vector<std::size_t>> left;
    for (std::size_t row = after.size(); row > 0; --row) { // the first of a kind comes last
        left[{after[row - 1].highlight, after[row - 1].color}].push_back(row);
    }
    std::vector<std::size_t> rows;
    for (const Translation& material : before) {
        std::vector<std::size_t>& same = left[{material.highlight, material.color}];
        rows.push_back(same.empty() ? 0 : same.back());
        if (!same.empty()) {
            same.pop_back();
        }
    }
    return rows;
}

std::vector<Note> changed_materials(const std::vector<Translation>& before,
                                    const std::vector<Translation>& after,
                                    const std::string& model) {
    std::vector<Note> notes;
    const std::vector<std::size_t> rows = same_rows(before, after);
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (rows[i] == 0) {
            const std::string was =
                before[i].processed.empty() ? "" : "; it had become " + before[i].processed;
            notes.push_back({"row " + to_text(i + 1) + " of the export before (" +
                                 colors_of(before[i]) + ") is gone" + was,
                             model, 0, Severity::Warning, "material-gone"});
        }
    }
    for (std::size_t row = 1; row <= after.size(); ++row) {
        if (std::find(rows.begin(), rows.end(), row) == rows.end()) {
            notes.push_back({full_name(after[row - 1]) + " is new in this export", model,
                             after[row - 1].block.selecting_line, Severity::Warning,
                             "material-new"});
        }
    }
    return notes;
}

Reload Document::reload(Recipe recipe, const std::function<bool()>& is_current) {
    KeptReports kept;
    OpenSet read;
    const bool opened = open_source_set({services_.disk, kept}, read, set_.base);
    if (!is_current()) {
        return {Reload::How::Outdated, {}, {}, {}};
    }
    if (!opened) {
        return {Reload::How::Failed,
                kept.boxes().empty() ? "the export cannot be opened" : kept.boxes().front(),
                {},
                {}};
    }
    const std::vector<Translation> before = set_.translations;
    replace_set(std::move(read));
    kept.say_to(services().reporter);
    listener_.reloaded();
    listener_.history_changed();
    Reload result{Reload::How::Done, {}, {}, same_rows(before, set_.translations)};
    for (const Note& note :
         changed_materials(before, set_.translations, model_file_name(set_.base))) {
        services().reporter.note(note);
    }
    result.idle = apply_again(std::move(recipe));
    return result;
}

std::vector<Assignment> Document::apply_again(Recipe recipe) {
    make_optional(recipe);
    RecipePlan plan = plan_recipe(set_, recipe);
    std::vector<Assignment> idle = idle_assignments(recipe, plan);
    const std::size_t steps = done_.size();
    with_boxes(Boxes::None, [&] {
        leave_unfit(set_, plan, services().reporter);
        if (!plan.steps.empty() || !recipe.macros.empty()) {
            apply(recipe, plan);
        }
    });
    if (done_.size() > steps) {
        done_.back().name = "assignments applied again";
        listener_.history_changed();
    }
    return idle;
}

} // namespace morvane
