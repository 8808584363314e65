// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/project_table.h"

#include "base/errors.h"
#include "base/text.h"
#include "project/step_reporter.h"
#include "recipe/apply_recipe.h"
#include "source/open_set.h"

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

std::string result_text(const StepResult& step) {
    if (step.state != StepState::Failed) {
        return std::string(step_state_text(step.state));
    }
    const auto error =
        std::find_if(step.problems.begin(), step.problems.end(),
                     [](const Problem& problem) { return problem.severity == Severity::Error; });
    return error == step.problems.end() ? "failed" : "failed: " + error->text;
}

std::size_t serious_problems(const StepResult& step) {
    return static_cast<std::size_t>(
        std::count_if(step.problems.begin(), step.problems.end(),
                      [](const Problem& problem) { return problem.severity != Severity::Note; }));
}

// A step that failed says so as long as nothing of it has changed; the manifest knows no more.
std::string state_text(const StepResult& step) {
    if (step.state == StepState::UpToDate) {
        return std::string(step_state_text(step.state));
    }
    return step.reason == "failed before" ? "failed" : step.reason;
}

std::string export_of(const ProjectStep& step) {
    if (step.kind == StepKind::Set) {
        return step.base;
    }
    const auto part = std::find_if(step.parts.begin(), step.parts.end(),
                                   [](const std::string& base) { return !base.empty(); });
    return part == step.parts.end() ? std::string() : *part;
}

} // namespace

void ProjectTable::refresh() {
    rows_.clear();
    ProjectReading reading = read_project(services_.disk, file_);
    errors_ = reading.errors;
    if (reading.project) {
        look(*reading.project);
    }
}

void ProjectTable::look(const Project& project) {
    BuildOptions options;
    options.dry_run = true;
    try {
        const BuildResult found = build_project(services_, project, surroundings_, options);
        errors_.insert(errors_.end(), found.errors.begin(), found.errors.end());
        for (const StepResult& step : found.steps) {
            rows_.push_back(row_of(project, step));
        }
    } catch (const RuntimeError& error) {
        errors_.emplace_back(error.what());
    }
}

ProjectRow ProjectTable::row_of(const Project& project, const StepResult& found) {
    const auto step =
        std::find_if(project.steps.begin(), project.steps.end(),
                     [&](const ProjectStep& other) { return other.name == found.name; });
    ProjectRow row;
    row.name = found.name;
    row.kind = step_kind_text(found.kind);
    row.state = state_text(found);
    row.base = export_of(*step);
    const auto result = std::find_if(results_.begin(), results_.end(),
                                     [&](const auto& known) { return known.first == found.name; });
    if (result != results_.end()) {
        row.result = result->second.text;
        row.problems = result->second.problems;
    } else if (found.state == StepState::UpToDate) {
        row.result = step_state_text(StepState::Made);
    }
    if (step->kind == StepKind::Set) {
        count_materials(*step, row);
    }
    return row;
}

// A set that cannot be opened has no counts: its build says what is wrong.
void ProjectTable::count_materials(const ProjectStep& step, ProjectRow& row) {
    StepReporter reporter;
    OpenSet set;
    const RecipeReading recipe =
        read_recipe(services_.disk, step.recipe, surroundings_.default_effect);
    if (!open_source_set({services_.disk, reporter}, set, step.base)) {
        return;
    }
    row.marked = set.translations.size();
    if (recipe.recipe) {
        row.done = *row.marked - plan_recipe(set, *recipe.recipe).left;
    }
}

void ProjectTable::build(const std::vector<std::string>& names, std::size_t jobs,
                         const decltype(BuildOptions::compile)& compile) {
    const ProjectReading reading = read_project(services_.disk, file_);
    if (!reading.project) {
        refresh();
        return;
    }
    BuildOptions options;
    options.names = names;
    options.jobs = jobs;
    options.keep_going = true;
    options.compile = compile;
    std::vector<std::string> refused;
    try {
        const BuildResult result =
            build_project(services_, *reading.project, surroundings_, options);
        keep_results(result);
        refused =
            result.how == BuildResult::How::Refused ? result.errors : std::vector<std::string>();
    } catch (const RuntimeError& error) {
        refused.emplace_back(error.what());
    }
    refresh();
    errors_.insert(errors_.end(), refused.begin(), refused.end());
}

void ProjectTable::take(const BuildResult& result) {
    keep_results(result);
    refresh();
}

void ProjectTable::keep_results(const BuildResult& result) {
    for (const StepResult& step : result.steps) {
        if (step.state != StepState::Made && step.state != StepState::Failed) {
            continue;
        }
        std::erase_if(results_, [&](const auto& known) { return known.first == step.name; });
        results_.push_back({step.name, {result_text(step), serious_problems(step)}});
    }
}

} // namespace morvane
