// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/text.h"
#include "recipe/parameter_keys.h"
#include "recipe/recipe.h"
#include "toml/toml_document.h"

#include <algorithm>
#include <iterator>

namespace morvane {

namespace {

constexpr std::size_t name_width = 15; // of the longest key, so that the values form a column

std::string entry(std::string_view name, const std::string& value) {
    std::string line(name);
    line.resize(std::max(name_width, line.size()), ' ');
    return line + " = " + value + "\n";
}

// What a reader would take for the parameters that are omitted. The effect's own default is the
// program folder's business, so that the effect is always written.
Parameters defaults_for(const Assignment& assignment) {
    Parameters defaults;
    defaults.lights.FlashMask = flash_mask_of(assignment.parameters.lights.LightVariable);
    return defaults;
}

// A key with one value, or with a list of several; nothing without any.
std::string selector(std::string_view name, const std::vector<std::string>& values) {
    if (values.empty()) {
        return {};
    }
    return entry(name, values.size() == 1 ? values.front() : toml_list(values));
}

std::vector<std::string> all_quoted(const std::vector<std::string>& texts) {
    std::vector<std::string> result;
    std::transform(texts.begin(), texts.end(), std::back_inserter(result), toml_quoted);
    return result;
}

std::string selectors(const Assignment& assignment) {
    std::vector<std::string> rows;
    std::transform(assignment.material.begin(), assignment.material.end(), std::back_inserter(rows),
                   to_text);
    return selector("highlight", all_quoted(assignment.highlight)) +
           selector("color", all_quoted(assignment.color)) + selector("material", rows) +
           (assignment.optional ? entry("optional", "true") : std::string());
}

std::string top_keys(const Recipe& recipe) {
    std::string text;
    if (!recipe.macros.empty()) {
        text += entry("macros", toml_quoted(recipe.macros));
    }
    if (recipe.unique_labels) {
        text += entry("unique_labels", "true");
    }
    if (!recipe.allow.empty()) {
        std::vector<std::string> codes;
        std::transform(recipe.allow.begin(), recipe.allow.end(), std::back_inserter(codes),
                       toml_quoted_utf8);
        text += entry("allow", toml_list(codes));
    }
    return text.empty() ? text : "\n" + text;
}

std::string parameters_text(const Assignment& assignment) {
    Parameters parameters = assignment.parameters;
    Parameters defaults = defaults_for(assignment);
    std::string text;
    for (const ParameterKey& key : parameter_keys(assignment.kind)) {
        if (key.flag != nullptr) {
            if (key.flag(parameters) != key.flag(defaults)) {
                text += entry(key.name, key.flag(parameters) ? "true" : "false");
            }
        } else if (key.text(parameters) != key.text(defaults) || key.name == "lstEffectType") {
            text += entry(key.name, toml_quoted(key.text(parameters)));
        }
    }
    return text;
}

} // namespace

std::string write_recipe(const Recipe& recipe) {
    std::string text = "# What becomes of each marked material. Apply it again with\n"
                       "#     morvane-cli process BASE RECIPE\n" +
                       top_keys(recipe);
    for (const Assignment& assignment : recipe.assignments) {
        text += "\n[[assign]]\n" + selectors(assignment) +
                entry("kind", toml_quoted(kind_text(assignment.kind))) +
                parameters_text(assignment);
    }
    return text;
}

} // namespace morvane
