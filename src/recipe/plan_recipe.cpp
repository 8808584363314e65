// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/text.h"
#include "recipe/apply_recipe.h"
#include "recipe/nearest_colors.h"
#include "source/materials.h"

#include <algorithm>
#include <iterator>

namespace morvane {

namespace {

template <typename Value>
bool is_among(const std::vector<Value>& values, const Value& value) {
    return values.empty() || std::find(values.begin(), values.end(), value) != values.end();
}

bool matches(const Assignment& assignment, const Translation& material, std::size_t row) {
    return is_among(assignment.material, row) && is_among(assignment.color, material.color) &&
           is_among(assignment.highlight, std::string(highlight_color_name(material.highlight)));
}

std::string joined(const std::vector<std::string>& values) {
    std::string text;
    for (const std::string& value : values) {
        text += (text.empty() ? "" : " or ") + value;
    }
    return text;
}

std::vector<std::string> row_texts(const std::vector<std::size_t>& rows) {
    std::vector<std::string> texts;
    std::transform(rows.begin(), rows.end(), std::back_inserter(texts), to_text);
    return texts;
}

std::string selector_text(const Assignment& assignment) {
    std::string text;
    const auto add = [&](std::string_view name, const std::vector<std::string>& values) {
        if (!values.empty()) {
            text += (text.empty() ? "" : ", ") + std::string(name) + " " + joined(values);
        }
    };
    add("highlight", assignment.highlight);
    add("color", assignment.color);
    add("material", row_texts(assignment.material));
    return text.empty() ? text : " (" + text + ")";
}

// Why an assignment got no material; `matching` counts those that match but were not to be had.
std::string no_match(const Assignment& assignment, std::size_t materials, std::size_t matching) {
    const std::vector<std::size_t>& rows = assignment.material;
    if (!rows.empty() && *std::min_element(rows.begin(), rows.end()) > materials) {
        return "there is no material " + joined(row_texts(rows)) + ": the list has " +
               to_text(materials) + (materials == 1 ? " entry." : " entries.");
    }
    const std::string reason =
        matching == 0 ? "."
        : matching == 1
            ? ": the one that matches is processed already or named by an assignment before."
            : ": the " + to_text(matching) +
                  " that match are processed already or named by assignments before.";
    return "this assignment" + selector_text(assignment) + " matches no unprocessed material" +
           reason;
}

void refuse(RecipePlan& plan, const Recipe& recipe, const Assignment& assignment,
            const std::string& problem) {
    const std::string& file = file_of(recipe, assignment);
    plan.errors.push_back(file + ":" + to_text(assignment.source_line) + ": " + problem);
    plan.problems.push_back({problem, file, assignment.source_line, Severity::Error});
}

// A colour that is written wrongly is the usual reason; a place in the list is not near another.
void add_hint(RecipePlan& plan, const Recipe& recipe, const Assignment& assignment,
              const std::string& hint) {
    if (!hint.empty() && !(assignment.color.empty() && assignment.highlight.empty())) {
        plan.hints.push_back(
            {hint, file_of(recipe, assignment), assignment.source_line, Severity::Note});
    }
}

// The marked materials that no assignment so far has taken.
std::vector<std::size_t> rows_left(const std::vector<bool>& taken) {
    std::vector<std::size_t> rows;
    for (std::size_t i = 0; i < taken.size(); ++i) {
        if (!taken[i]) {
            rows.push_back(i + 1);
        }
    }
    return rows;
}

} // namespace

RecipePlan plan_recipe(const OpenSet& set, const Recipe& recipe) {
    RecipePlan plan;
    std::vector<bool> taken;
    for (const Translation& material : set.translations) {
        taken.push_back(!material.processed.empty());
    }
    for (std::size_t i = 0; i < recipe.assignments.size(); ++i) {
        const Assignment& assignment = recipe.assignments[i];
        const std::size_t steps_before = plan.steps.size();
        std::size_t matching = 0;
        for (std::size_t row = 1; row <= taken.size(); ++row) {
            if (!matches(assignment, set.translation(row), row)) {
                continue;
            }
            ++matching;
            if (!taken[row - 1]) {
                taken[row - 1] = true;
                plan.steps.push_back({i, row});
            }
        }
        if (plan.steps.size() == steps_before && !assignment.optional) {
            refuse(plan, recipe, assignment, no_match(assignment, taken.size(), matching));
            if (matching == 0) {
                add_hint(plan, recipe, assignment,
                         nearest_colors(set, assignment, rows_left(taken)));
            }
        }
    }
    plan.left = set.unprocessed() - plan.steps.size();
    return plan;
}

} // namespace morvane
