// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/project.h"

#include "base/paths.h"
#include "base/text.h"
#include "toml/nearest_key.h"
#include "toml/toml_document.h"

#include <algorithm>
#include <map>
#include <utility>

namespace morvane {

namespace {

using Keys = std::vector<std::string_view>;

const Keys top_keys{"project", "set", "aircraft", "library"};
const Keys project_keys{"output", "compiler", "macros"};
const Keys set_keys{"base", "recipe", "suffix", "compile"};
const Keys aircraft_keys{"name",       "complete",  "flexing_wings",       "fuselage",
                         "wings_high", "wings_low", "shadow_optimization", "shadow",
                         "compile"};
const Keys library_keys{"list", "output", "compile"};

/// A table while it is read.
class Table {
  public:
    Table(const std::string& file, std::vector<TomlEntry> entries, Place place, const Keys& keys,
          DocumentErrors& errors)
        : file_(file), entries_(std::move(entries)), place_(place), errors_(errors) {
        for (const TomlEntry& entry : entries_) {
            if (std::find(keys.begin(), keys.end(), entry.key) == keys.end()) {
                errors_.add(entry.key_place, "unknown key \"" + std::string(entry.key) + "\"" +
                                                 suggestion(entry.key, keys));
            }
        }
    }

    bool has(std::string_view key) const { return find_entry(entries_, key) != nullptr; }

    std::string text(std::string_view key) const {
        const TomlEntry* entry = find_entry(entries_, key);
        return entry == nullptr ? std::string() : utf8_value(*entry, errors_).value_or("");
    }

    std::string windows_text(std::string_view key) const {
        const TomlEntry* entry = find_entry(entries_, key);
        return entry == nullptr ? std::string() : text_value(*entry, errors_).value_or("");
    }

    // The path of a key, which the table must have; empty after an error.
    std::string required_text(std::string_view key) const {
        if (!has(key)) {
            errors_.add(place_, "\"" + std::string(key) + "\" is missing");
            return {};
        }
        std::string value = text(key);
        if (value.empty()) {
            refuse(key, "is empty");
        }
        return value;
    }

    std::string path(std::string_view key) const { return beside(text(key)); }
    std::string required_path(std::string_view key) const { return beside(required_text(key)); }

    bool flag(std::string_view key) const {
        const TomlEntry* entry = find_entry(entries_, key);
        return entry != nullptr && flag_value(*entry, errors_).value_or(false);
    }

    CompileAs compile(CompileAs usual) const {
        const TomlEntry* entry = find_entry(entries_, "compile");
        if (entry == nullptr) {
            return usual;
        }
        if (entry->value.value_exact<bool>() == std::optional(false)) {
            return CompileAs::Nothing;
        }
        const std::optional<std::string> word = entry->value.value_exact<std::string>();
        if (word == "bgl") {
            return CompileAs::Bgl;
        }
        if (word != "mdl") {
            refuse("compile", "must be \"bgl\", \"mdl\" or false");
        }
        return CompileAs::Mdl;
    }

    std::vector<std::string> words(std::string_view key) const {
        std::vector<std::string> words;
        if (const TomlEntry* entry = find_entry(entries_, key)) {
            for (const TomlEntry& item : values_of(*entry, errors_)) {
                words.push_back(utf8_value(item, errors_).value_or(""));
            }
            if (!words.empty() && words.front().empty()) {
                refuse(key, "must begin with the name of a program");
            }
        }
        return words;
    }

    void refuse(std::string_view key, const std::string& problem) const {
        const TomlEntry* entry = find_entry(entries_, key);
        errors_.add(entry == nullptr ? place_ : entry->value_place,
                    "\"" + std::string(key) + "\" " + problem);
    }

    std::size_t line() const { return place_.line; }
    std::size_t line_of(std::string_view key) const {
        const TomlEntry* entry = find_entry(entries_, key);
        return entry == nullptr ? place_.line : entry->key_place.line;
    }

  private:
    std::string beside(const std::string& path) const {
        return path.empty() ? path : path_beside(file_, path);
    }

    const std::string& file_;
    std::vector<TomlEntry> entries_;
    Place place_;
    DocumentErrors& errors_;
};

bool is_bare_name(std::string_view name) {
    return file_name_part(name) == name && name != "." && name != "..";
}

ProjectStep read_set(const Table& table) {
    ProjectStep step;
    step.kind = StepKind::Set;
    step.line = table.line();
    step.base = table.required_path("base");
    step.name = file_name_part(step.base);
    if (has_ending(step.base, ".asm")) {
        table.refuse("base", "is the path of a set without its ending .asm");
    }
    step.recipe = table.has("recipe") ? table.required_path("recipe") : step.base + ".toml";
    step.suffix = table.windows_text("suffix");
    if (step.suffix.find_first_of(" ,;") != std::string::npos) {
        table.refuse("suffix", "must not hold blanks, commas or semicolons");
    }
    step.compile = table.compile(CompileAs::Bgl);
    return step;
}

void require_part(const Table& table, ProjectStep& step, AircraftPart part, std::string_view key) {
    step.parts.at(part) = table.required_path(key);
    if (has_ending(step.parts.at(part), ".asm")) {
        table.refuse(key, "is the path of a set without its ending .asm");
    }
}

ProjectStep read_aircraft(const Table& table) {
    ProjectStep step;
    step.kind = StepKind::Aircraft;
    step.line = table.line();
    step.name = table.required_text("name");
    step.flexing_wings = table.flag("flexing_wings");
    step.shadow_optimization = table.flag("shadow_optimization");
    require_part(table, step, CompleteModel, "complete");
    if (step.flexing_wings) {
        require_part(table, step, Fuselage, "fuselage");
        require_part(table, step, WingsHigh, "wings_high");
        require_part(table, step, WingsLow, "wings_low");
    }
    if (step.shadow_optimization) {
        require_part(table, step, Shadow, "shadow");
    }
    if (!step.flexing_wings && !step.shadow_optimization) {
        table.refuse("name", "names an aircraft with nothing to do: neither \"flexing_wings\" nor "
                             "\"shadow_optimization\" is true");
    }
    step.compile = table.compile(CompileAs::Mdl);
    return step;
}

ProjectStep read_library(const Table& table) {
    ProjectStep step;
    step.kind = StepKind::Library;
    step.line = table.line();
    step.list = table.required_path("list");
    step.output = table.required_text("output");
    step.name = stem_of(step.output);
    if (!step.output.empty() &&
        (!is_bare_name(step.output) || !has_ending(step.output, ".asm") || step.name.empty())) {
        table.refuse("output", "must be a name without a folder that ends in .asm");
    }
    step.compile = table.compile(CompileAs::Bgl);
    return step;
}

void read_settings(const Table& table, Project& project) {
    project.compiler = table.words("compiler");
    if (table.has("output")) {
        project.folder = table.required_path("output");
    }
    if (table.has("macros")) {
        project.macros = table.required_text("macros");
        project.macros_line = table.line_of("macros");
        if (file_name_part(project.macros).empty()) {
            table.refuse("macros", "must be the name of a file");
        }
    }
}

void read_steps(const TomlEntry& entry, Project& project, DocumentErrors& errors) {
    for (const TomlElement& element : elements_of(entry, errors)) {
        const auto table = [&](const Keys& keys) {
            return Table(project.file, entries_of(element.table), element.place, keys, errors);
        };
        project.steps.push_back(entry.key == "set"        ? read_set(table(set_keys))
                                : entry.key == "aircraft" ? read_aircraft(table(aircraft_keys))
                                                          : read_library(table(library_keys)));
    }
}

void refuse_equal_names(const Project& project, DocumentErrors& errors) {
    std::map<std::string, std::size_t> lines;
    for (const ProjectStep& step : project.steps) {
        const auto [first, added] = lines.emplace(lower_case(step.name), step.line);
        if (!added && !step.name.empty()) {
            errors.add({step.line, 1}, "there is a step \"" + step.name + "\" already, in line " +
                                           to_text(first->second));
        }
    }
}

void read_entries(const TomlDocument& document, Project& project, DocumentErrors& errors) {
    for (const TomlEntry& entry : entries_of(document.table)) {
        if (std::find(top_keys.begin(), top_keys.end(), entry.key) == top_keys.end()) {
            errors.add(entry.key_place, "unknown key \"" + std::string(entry.key) + "\"" +
                                            suggestion(entry.key, top_keys));
        } else if (entry.key == "project") {
            read_settings(Table(project.file, table_entries(entry, errors), entry.key_place,
                                project_keys, errors),
                          project);
        } else {
            read_steps(entry, project, errors);
        }
    }
}

} // namespace

std::string_view step_kind_text(StepKind kind) {
    return kind == StepKind::Set ? "set" : kind == StepKind::Aircraft ? "aircraft" : "library";
}

std::vector<AircraftPart> parts_used(const ProjectStep& step) {
    std::vector<AircraftPart> parts{CompleteModel};
    if (step.flexing_wings) {
        parts.insert(parts.end(), {Fuselage, WingsHigh, WingsLow});
    }
    if (step.shadow_optimization) {
        parts.push_back(Shadow);
    }
    return parts;
}

std::string stem_of(std::string_view path) {
    const std::string name = file_name_part(path);
    return name.substr(0, std::min(name.rfind('.'), name.size()));
}

ProjectReading read_project(Disk& disk, const std::string& path) {
    const TomlReading reading = read_toml(disk, path, "project");
    if (!reading.document) {
        return {std::nullopt, reading.errors, reading.problems};
    }
    DocumentErrors errors(path, reading.document->text);
    Project project;
    project.file = path;
    project.folder = path_beside(path, "build");
    read_entries(*reading.document, project, errors);
    std::stable_sort(project.steps.begin(), project.steps.end(),
                     [](const ProjectStep& a, const ProjectStep& b) { return a.line < b.line; });
    if (project.steps.empty() && errors.empty()) {
        errors.add({}, "there is no [[set]], [[aircraft]] or [[library]] in this file");
    }
    refuse_equal_names(project, errors);
    if (!errors.empty()) {
        return {std::nullopt, errors.texts(), errors.problems()};
    }
    return {std::move(project), {}, {}};
}

} // namespace morvane
