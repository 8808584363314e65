#include "base/text.h"
#include "recipe/parameter_keys.h"
#include "recipe/recipe.h"
#include "toml/toml_document.h"

namespace morvane {

namespace {

constexpr std::size_t name_width = 15; // of the longest key, so that the values stand in a column

std::string entry(std::string_view name, const std::string& value) {
    std::string line(name);
    line.resize(std::max(name_width, line.size()), ' ');
    return line + " = " + value + "\n";
}

// What a reader would take for the parameters that are left out. The effect's own default is the
// program folder's business, so that the effect is always written.
Parameters defaults_for(const Assignment& assignment) {
    Parameters defaults;
    defaults.lights.FlashMask = flash_mask_of(assignment.parameters.lights.LightVariable);
    return defaults;
}

std::string selectors(const Assignment& assignment) {
    std::string text;
    if (assignment.highlight) {
        text += entry("highlight", toml_quoted(*assignment.highlight));
    }
    if (assignment.color) {
        text += entry("color", toml_quoted(*assignment.color));
    }
    if (assignment.material) {
        text += entry("material", to_text(*assignment.material));
    }
    return text;
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
                       "#     morvane-cli process BASE RECIPE\n";
    for (const Assignment& assignment : recipe.assignments) {
        text += "\n[[assign]]\n" + selectors(assignment) +
                entry("kind", toml_quoted(kind_text(assignment.kind))) +
                parameters_text(assignment);
    }
    return text;
}

} // namespace morvane
