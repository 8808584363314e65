// SPDX-License-Identifier: GPL-3.0-or-later
#include "recipe/record_recipe.h"

#include "source/materials.h"

#include <algorithm>

namespace morvane {

namespace {

bool is_only_one(const OpenSet& set, const Translation& material) {
    return std::count_if(
               set.translations.begin(), set.translations.end(), [&](const Translation& other) {
                   return other.highlight == material.highlight && other.color == material.color;
               }) == 1;
}

} // namespace

Recipe record_recipe(const OpenSet& set, const std::vector<MadeMaterial>& made) {
    Recipe recipe;
    for (const MadeMaterial& item : made) {
        const Translation& material = set.translation(item.row);
        Assignment assignment;
        assignment.highlight.emplace_back(highlight_color_name(material.highlight));
        assignment.color.push_back(material.color);
        if (!is_only_one(set, material)) {
            assignment.material.push_back(item.row);
        }
        assignment.kind = item.kind;
        assignment.parameters = item.parameters;
        recipe.assignments.push_back(std::move(assignment));
    }
    return recipe;
}

} // namespace morvane
