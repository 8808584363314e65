#include "base/text.h"
#include "recipe/apply_recipe.h"
#include "source/materials.h"

namespace morvane {

namespace {

bool matches(const Assignment& assignment, const Translation& material, std::size_t row) {
    return (!assignment.material || *assignment.material == row) &&
           (!assignment.color || *assignment.color == material.color) &&
           (!assignment.highlight ||
            *assignment.highlight == highlight_color_name(material.highlight));
}

std::string selector_text(const Assignment& assignment) {
    std::string text;
    const auto add = [&](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
    if (assignment.highlight) {
        add("highlight " + *assignment.highlight);
    }
    if (assignment.color) {
        add("color " + *assignment.color);
    }
    if (assignment.material) {
        add("material " + to_text(*assignment.material));
    }
    return text.empty() ? text : " (" + text + ")";
}

// Why an assignment got no material; `matching` counts those that match but were not to be had.
std::string no_match(const Recipe& recipe, const Assignment& assignment, std::size_t materials,
                     std::size_t matching) {
    const std::string where = recipe.file + ", line " + to_text(assignment.source_line) + ": ";
    if (assignment.material && *assignment.material > materials) {
        return where + "there is no material " + to_text(*assignment.material) + ": the list has " +
               to_text(materials) + (materials == 1 ? " entry." : " entries.");
    }
    const std::string reason =
        matching == 0 ? "."
        : matching == 1
            ? ": the one that matches is processed already or named by an assignment before."
            : ": the " + to_text(matching) +
                  " that match are processed already or named by assignments before.";
    return where + "this assignment" + selector_text(assignment) +
           " matches no unprocessed material" + reason;
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
        if (plan.steps.size() == steps_before) {
            plan.errors.push_back(no_match(recipe, assignment, taken.size(), matching));
        }
    }
    plan.left = set.unprocessed() - plan.steps.size();
    return plan;
}

} // namespace morvane
