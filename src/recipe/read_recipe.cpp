#include "base/text.h"
#include "recipe/parameter_keys.h"
#include "recipe/recipe.h"
#include "source/materials.h"
#include "toml/nearest_key.h"
#include "toml/toml_document.h"

#include <algorithm>
#include <iterator>

namespace morvane {

namespace {

constexpr std::array<std::string_view, 4> common_keys{"highlight", "color", "material", "kind"};

std::string quoted(std::string_view key) {
    return "\"" + std::string(key) + "\"";
}

bool is_common(std::string_view key) {
    return std::find(common_keys.begin(), common_keys.end(), key) != common_keys.end();
}

std::optional<Kind> read_kind(const TomlElement& element, DocumentErrors& errors) {
    const std::vector<TomlEntry> entries = entries_of(element.table);
    const auto entry = std::find_if(entries.begin(), entries.end(),
                                    [](const TomlEntry& e) { return e.key == "kind"; });
    std::vector<std::string_view> names;
    std::transform(all_kinds.begin(), all_kinds.end(), std::back_inserter(names), kind_text);
    if (entry == entries.end()) {
        errors.add(element.place, "\"kind\" is missing" + suggestion("", names));
        return std::nullopt;
    }
    const std::optional<std::string> text = text_value(*entry, errors);
    const std::optional<Kind> kind = text ? kind_from_text(*text) : std::nullopt;
    if (text && !kind) {
        errors.add(entry->value_place, "\"kind\" is no kind of object" + suggestion(*text, names));
    }
    return kind;
}

void read_highlight(const TomlEntry& entry, Assignment& assignment, DocumentErrors& errors) {
    const std::optional<std::string> text = text_value(entry, errors);
    if (!text) {
        return;
    }
    std::vector<std::string_view> names;
    for (int index = 1; index <= 7; ++index) {
        names.push_back(highlight_color_name(highlight_digits(index)));
    }
    if (std::find(names.begin(), names.end(), *text) == names.end()) {
        errors.add(entry.value_place,
                   "\"highlight\" is none of the seven colours" + suggestion(*text, names));
        return;
    }
    assignment.highlight = *text;
}

void read_color(const TomlEntry& entry, Assignment& assignment, DocumentErrors& errors) {
    const std::optional<std::string> text = text_value(entry, errors);
    if (!text) {
        return;
    }
    if (text->size() != 6 ||
        text->find_first_not_of("0123456789ABCDEFabcdef") != std::string::npos) {
        errors.add(entry.value_place,
                   "\"color\" must be six hexadecimal digits RRGGBB, as in \"FF7F00\"");
        return;
    }
    assignment.color = upper_case(*text);
}

void read_selector(const TomlEntry& entry, Assignment& assignment, DocumentErrors& errors) {
    if (entry.key == "highlight") {
        read_highlight(entry, assignment, errors);
    } else if (entry.key == "color") {
        read_color(entry, assignment, errors);
    } else if (entry.key == "material") {
        constexpr long long most = OpenSet::max_translations;
        if (const auto number = whole_value(entry, 1, most, errors)) {
            assignment.material = static_cast<std::size_t>(*number);
        }
    }
}

std::string unknown_key(std::string_view key, Kind kind) {
    for (const Kind other : all_kinds) {
        if (find_parameter_key(other, key) != nullptr) {
            return quoted(key) + " belongs to the kind " + quoted(kind_text(other)) + ", not to " +
                   quoted(kind_text(kind));
        }
    }
    std::vector<std::string_view> valid(common_keys.begin(), common_keys.end());
    for (const ParameterKey& parameter : parameter_keys(kind)) {
        valid.push_back(parameter.name);
    }
    return "unknown key " + quoted(key) + suggestion(key, valid);
}

void read_parameter(const TomlEntry& entry, Assignment& assignment, DocumentErrors& errors) {
    const ParameterKey* key = find_parameter_key(assignment.kind, entry.key);
    if (key == nullptr) {
        errors.add(entry.key_place, unknown_key(entry.key, assignment.kind));
        return;
    }
    if (key->flag != nullptr) {
        if (const std::optional<bool> flag = flag_value(entry, errors)) {
            key->flag(assignment.parameters) = *flag;
        }
        return;
    }
    const std::optional<std::string> text = text_value(entry, errors);
    if (!text) {
        return;
    }
    if (const std::string problem = key->problem ? key->problem(*text) : ""; !problem.empty()) {
        errors.add(entry.value_place, quoted(entry.key) + " " + problem);
        return;
    }
    key->text(assignment.parameters) = *text;
}

Assignment read_assignment(const TomlElement& element, const std::string& default_effect,
                           DocumentErrors& errors) {
    Assignment assignment;
    assignment.source_line = element.place.line;
    assignment.parameters.effects.lstEffectType = default_effect;
    const std::optional<Kind> kind = read_kind(element, errors);
    if (kind) {
        assignment.kind = *kind;
    }
    for (const TomlEntry& entry : entries_of(element.table)) {
        if (is_common(entry.key)) {
            read_selector(entry, assignment, errors);
        } else if (kind) {
            read_parameter(entry, assignment, errors);
        }
    }
    // Choosing a flash variable in the dialog sets its mask; so it does here.
    if (!element.table.contains("FlashMask")) {
        LightParameters& lights = assignment.parameters.lights;
        lights.FlashMask = flash_mask_of(lights.LightVariable);
    }
    return assignment;
}

} // namespace

RecipeReading read_recipe(Disk& disk, const std::string& path, const std::string& default_effect) {
    const TomlReading reading = read_toml(disk, path, "recipe");
    if (!reading.document) {
        return {std::nullopt, reading.errors};
    }
    DocumentErrors errors(path, reading.document->text);
    Recipe recipe{{}, path};
    for (const TomlElement& element : elements_of(*reading.document, "assign", errors)) {
        recipe.assignments.push_back(read_assignment(element, default_effect, errors));
    }
    if (!errors.empty()) {
        return {std::nullopt, errors.texts()};
    }
    return {std::move(recipe), {}};
}

} // namespace morvane
