// SPDX-License-Identifier: GPL-3.0-or-later
#include "recipe/recipe.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/text.h"
#include "recipe/parameter_keys.h"
#include "recipe/recipe_file.h"
#include "source/materials.h"
#include "source/opened_file.h"
#include "system/disk.h"
#include "toml/document_errors.h"
#include "toml/toml_document.h"

#include <algorithm>
#include <iterator>
#include <utility>

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

namespace {

constexpr std::size_t most_files = 100;

// The defaults that hold for a file's assignments, those that win last.
using Defaults = std::vector<RecipeFile>;

/// Reads a recipe and, before what it says itself, the files that it includes.
class RecipeReader {
  public:
    RecipeReader(Disk& disk, const std::string& default_effect)
        : disk_(disk), default_effect_(default_effect) {}

    RecipeReading read(const std::string& path) {
        recipe_.file = path;
        recipe_.files.push_back(path);
        try {
            read_file(path);
        } catch (const RuntimeError& error) { // a file vanished on the way
            errors_.emplace_back(error.what());
            problems_.push_back({error.what(), path, 0, Severity::Error});
        }
        RecipeReading reading{std::nullopt, errors_, problems_, recipe_.files};
        if (errors_.empty()) {
            reading.recipe = std::move(recipe_);
        }
        return reading;
    }

  private:
    // The defaults of the file for files that include it.
    Defaults read_file(const std::string& path) {
        const bool outermost = recipe_.files.size() == 1;
        RecipeFileReading reading = read_recipe_file(disk_, path);
        errors_.insert(errors_.end(), reading.errors.begin(), reading.errors.end());
        problems_.insert(problems_.end(), reading.problems.begin(), reading.problems.end());
        if (!reading.file) {
            return {};
        }
        RecipeFile& file = *reading.file;
        Defaults defaults = read_includes(file);
        defaults.push_back(file);
        for (const WrittenAssignment& written : file.assignments) {
            add_assignment(written, defaults, outermost ? std::string() : path);
        }
        take_top_keys(file);
        if (outermost) {
            std::transform(all_kinds.begin(), all_kinds.end(), recipe_.bases.begin(),
                           [&](Kind kind) { return base_of(kind, defaults); });
        }
        // A file may be there only to say which problems are accepted.
        if (outermost && recipe_.assignments.empty() && recipe_.allow.empty() && errors_.empty()) {
            DocumentErrors errors(path, file.text);
            errors.add({}, "there is no [[assign]] in this file");
            keep(errors);
        }
        return defaults;
    }

    Defaults read_includes(const RecipeFile& file) {
        Defaults defaults;
        for (const IncludedFile& included : file.includes) {
            const std::string path = path_beside(file.path, included.path);
            if (const std::string problem = include_problem(path); !problem.empty()) {
                DocumentErrors errors(file.path, file.text);
                errors.add({included.line, included.column}, "\"include\" " + problem);
                keep(errors);
                continue;
            }
            recipe_.files.push_back(path);
            Defaults more = read_file(path);
            std::move(more.begin(), more.end(), std::back_inserter(defaults));
        }
        return defaults;
    }

    std::string include_problem(const std::string& path) {
        if (!disk_.is_file(path)) {
            recipe_.files.push_back(path);
            return "names no file: there is no " + path;
        }
        if (recipe_.files.size() == most_files) {
            return "is one file too many: a recipe is at most " + to_text(most_files) + " files";
        }
        const auto known =
            std::find_if(recipe_.files.begin(), recipe_.files.end(), [&](const std::string& read) {
                return disk_.is_file(read) && is_same_file(disk_, read, path);
            });
        return known == recipe_.files.end() ? std::string()
                                            : "names a file that is read already: " + *known;
    }

    Parameters base_of(Kind kind, const Defaults& defaults) const {
        Parameters parameters;
        parameters.effects.lstEffectType = default_effect_;
        for (const RecipeFile& file : defaults) {
            take_over(parameters, file.defaults_of(kind), kind);
        }
        return parameters;
    }

    void add_assignment(const WrittenAssignment& written, const Defaults& defaults,
                        const std::string& included_file) {
        Assignment assignment = written.what;
        assignment.source_file = included_file;
        assignment.parameters = base_of(assignment.kind, defaults);
        take_over(assignment.parameters, written.given, assignment.kind);
        recipe_.assignments.push_back(std::move(assignment));
    }

    // Included files come first, so that a file's own keys win.
    void take_top_keys(const RecipeFile& file) {
        recipe_.macros = file.macros.value_or(recipe_.macros);
        recipe_.unique_labels = file.unique_labels.value_or(recipe_.unique_labels);
        recipe_.allow.insert(recipe_.allow.end(), file.allow.begin(), file.allow.end());
    }

    void keep(const DocumentErrors& errors) {
        for (const std::string& text : errors.texts()) {
            errors_.push_back(text);
        }
        for (const Note& problem : errors.problems()) {
            problems_.push_back(problem);
        }
    }

    Disk& disk_;
    const std::string& default_effect_;
    Recipe recipe_;
    std::vector<std::string> errors_;
    std::vector<Note> problems_;
};

} // namespace

RecipeReading read_recipe(Disk& disk, const std::string& path, const std::string& default_effect) {
    return RecipeReader(disk, default_effect).read(path);
}

const Parameters& Recipe::base_of(Kind kind) const {
    return bases.at(position_of(kind));
}

const std::string& file_of(const Recipe& recipe, const Assignment& assignment) {
    return assignment.source_file.empty() ? recipe.file : assignment.source_file;
}

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

std::string top_text(const Recipe& recipe) {
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
                       top_text(recipe);
    for (const Assignment& assignment : recipe.assignments) {
        text += "\n[[assign]]\n" + selectors(assignment) +
                entry("kind", toml_quoted(kind_text(assignment.kind))) +
                parameters_text(assignment);
    }
    return text;
}

} // namespace morvane
