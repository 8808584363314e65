// SPDX-License-Identifier: GPL-3.0-or-later
#include "recipe/plan_recipe.h"

#include "base/text.h"
#include "source/materials.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <limits>

namespace morvane {

namespace {

constexpr std::size_t most_shown = 3;

using Rgb = std::array<int, 3>;

Rgb parts_of(const std::string& color) {
    Rgb parts{};
    for (std::size_t i = 0; i < parts.size() && 2 * i + 2 <= color.size(); ++i) {
        const char* const begin = color.data() + 2 * i;
        std::from_chars(begin, begin + 2, parts[i], 16);
    }
    return parts;
}

int distance(const std::string& a, const std::string& b) {
    const Rgb x = parts_of(a);
    const Rgb y = parts_of(b);
    int sum = 0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        sum += (x[i] - y[i]) * (x[i] - y[i]);
    }
    return sum;
}

// The distance to the nearest of the colours asked for; 0 when none is.
int distance_to(const Assignment& assignment, const std::string& color) {
    int least = assignment.color.empty() ? 0 : std::numeric_limits<int>::max();
    for (const std::string& wanted : assignment.color) {
        least = std::min(least, distance(wanted, color));
    }
    return least;
}

std::string shown(const OpenSet& set, std::size_t row) {
    const Translation& material = set.translation(row);
    return material.color + " (" + std::string(highlight_color_name(material.highlight)) +
           ", material " + to_text(row) + ")";
}

// Whether the list shows `listed` for a colour that gmax shows as `wanted` (RRGGBB both): each part
// the same or one less, since the list cuts off the fraction that gmax rounds.
bool differs_by_rounding(const std::string& listed, const std::string& wanted) {
    const Rgb x = parts_of(listed);
    const Rgb y = parts_of(wanted);
    return listed != wanted && std::equal(x.begin(), x.end(), y.begin(),
                                          [](int a, int b) { return a == b || a == b - 1; });
}

std::string rounding_hint(const Assignment& assignment, const std::string& listed) {
    for (const std::string& wanted : assignment.color) {
        if (differs_by_rounding(listed, wanted)) {
            return "; the list shows " + listed + " for what gmax shows as " + wanted +
                   ", because it cuts off where gmax rounds";
        }
    }
    return {};
}

// A hint for an assignment that matches nothing: which of the materials left (rows of the list,
// from 1) have the colours nearest to the one it asks for, at most three; without a colour, which
// are left. Empty when none are.
std::string nearest_colors(const OpenSet& set, const Assignment& assignment,
                           const std::vector<std::size_t>& rows_left) {
    if (rows_left.empty()) {
        return {};
    }
    std::vector<std::size_t> rows = rows_left;
    std::stable_sort(rows.begin(), rows.end(), [&](std::size_t a, std::size_t b) {
        return distance_to(assignment, set.translation(a).color) <
               distance_to(assignment, set.translation(b).color);
    });
    std::string text;
    for (std::size_t i = 0; i < std::min(rows.size(), most_shown); ++i) {
        text += (text.empty() ? "" : ", ") + shown(set, rows[i]);
    }
    if (rows.size() > most_shown) {
        text += " and " + to_text(rows.size() - most_shown) + " more";
    }
    const bool by_color = !assignment.color.empty();
    return (by_color ? "the nearest colours that are left: " : "materials that are left: ") + text +
           rounding_hint(assignment, set.translation(rows.front()).color);
}

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
