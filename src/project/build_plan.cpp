// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/build_plan.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/text.h"
#include "base/version.h"
#include "library/library_list_file.h"
#include "project/manifest.h"
#include "source/source_set.h"
#include "system/disk.h"
#include "system/program_places.h"

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

constexpr char separator = '\x1F'; // between words that may hold blanks

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += word + separator;
    }
    return text;
}

/// Collects what is wrong with the project as a whole.
class Planner {
  public:
    Planner(const Services& services, const Project& project, const BuildSurroundings& around)
        : services_(services), project_(project), around_(around) {}

    BuildPlan run() {
        find_macros();
        for (const ProjectStep& step : project_.steps) {
            plan_step(step);
        }
        refuse_shared_outputs();
        return std::move(plan_);
    }

  private:
    void refuse(std::size_t line, const std::string& problem) {
        plan_.errors.push_back(project_.file + ":" + to_text(line) + ": " + problem);
        plan_.problems.push_back({problem, project_.file, line, Severity::Error});
    }

    void find_macros() {
        if (project_.macros.empty()) {
            return;
        }
        plan_.macros = path_beside(project_.file, project_.macros);
        for (const std::string& folder : around_.share_folders) {
            const std::string shared = join_path(folder, file_name_part(project_.macros));
            if (!services_.disk.is_file(plan_.macros) && services_.disk.is_file(shared)) {
                plan_.macros = shared;
            }
        }
        if (!services_.disk.is_file(plan_.macros)) {
            refuse(project_.macros_line, "\"macros\" names no file: there is no " + plan_.macros);
        }
    }

    void plan_step(const ProjectStep& step) {
        PlannedBuildStep planned{step, {}, {}, {}, {}, {}, {}, {}, {}};
        switch (step.kind) {
        case StepKind::Set:
            plan_set(planned);
            break;
        case StepKind::Aircraft:
            for (const AircraftPart part : parts_used(step)) {
                planned.exports.push_back(step.parts.at(part));
            }
            break;
        case StepKind::Library:
            plan_library(planned);
            break;
        }
        add_exports(planned);
        add_macros(planned);
        add_product(planned);
        planned.settings = settings_of(step);
        plan_.steps.push_back(std::move(planned));
    }

    void plan_set(PlannedBuildStep& planned) {
        const ProjectStep& step = planned.step;
        RecipeReading reading = read_recipe(services_.disk, step.recipe, around_.default_effect);
        take_errors(reading.errors, reading.problems);
        for (const std::string& file : reading.files) {
            planned.inputs.push_back({"recipe", file});
            plan_.files.push_back(file);
        }
        planned.recipe = std::move(reading.recipe);
        planned.exports.push_back(step.base);
        if (!around_.effect_list.empty()) {
            planned.inputs.push_back({"effects", around_.effect_list});
        }
    }

    void plan_library(PlannedBuildStep& planned) {
        const ProjectStep& step = planned.step;
        LibraryListReading reading = read_library_list(services_, step.list);
        std::vector<Note> problems;
        for (const std::string& error : reading.errors) {
            problems.push_back({error, step.list, 0, Severity::Error});
        }
        take_errors(reading.errors, problems);
        planned.inputs.push_back({"list", step.list});
        plan_.files.push_back(step.list);
        planned.outputs.push_back(step.output);
        if (reading.list) {
            for (const LibraryLine& line : reading.list->lines) {
                planned.exports.push_back(line.location);
            }
        }
        planned.list = std::move(reading.list);
    }

    void take_errors(const std::vector<std::string>& errors, const std::vector<Note>& problems) {
        // Steps share recipes, whose errors are reported once.
        for (const std::string& error : errors) {
            if (std::find(plan_.errors.begin(), plan_.errors.end(), error) == plan_.errors.end()) {
                plan_.errors.push_back(error);
            }
        }
        for (const Note& problem : problems) {
            if (std::find(plan_.problems.begin(), plan_.problems.end(), problem) ==
                plan_.problems.end()) {
                plan_.problems.push_back(problem);
            }
        }
    }

    void add_exports(PlannedBuildStep& planned) {
        for (const std::string& base : planned.exports) {
            for (const std::string& path : {model_file_name(base), frame_file_name(base)}) {
                planned.inputs.push_back({"export", path});
                planned.outputs.push_back(file_name_part(path));
            }
            const std::string model = file_name_part(model_file_name(base));
            plan_.models.emplace(lower_case(model), model);
        }
    }

    void add_macros(PlannedBuildStep& planned) const {
        if (!plan_.macros.empty() && planned.step.kind != StepKind::Library) {
            planned.inputs.push_back({"macros", plan_.macros});
        }
    }

    void add_product(PlannedBuildStep& planned) const {
        const ProjectStep& step = planned.step;
        if (step.compile == CompileAs::Nothing || project_.compiler.empty()) {
            return;
        }
        const std::string source = step.kind == StepKind::Library ? step.output
                                   : step.kind == StepKind::Set
                                       ? frame_file_name(file_name_part(step.base))
                                       : frame_file_name(file_name_part(step.parts[CompleteModel]));
        planned.product = stem_of(source) + (step.compile == CompileAs::Bgl ? ".bgl" : ".mdl");
        planned.outputs.push_back(planned.product);
        planned.compiler = joined(project_.compiler);
    }

    std::string settings_of(const ProjectStep& step) const {
        std::vector<std::string> words{std::string(step_kind_text(step.kind)),
                                       step.suffix,
                                       step.output,
                                       file_name_part(plan_.macros),
                                       step.flexing_wings ? "wings" : "",
                                       step.shadow_optimization ? "shadow" : "",
                                       to_text(static_cast<std::size_t>(step.compile))};
        for (const std::string& part : step.parts) {
            words.push_back(part.empty() ? part : stored_path(project_, part));
        }
        return joined(words);
    }

    // Names are compared as Windows does.
    void refuse_shared_outputs() {
        std::map<std::string, const ProjectStep*> owners;
        if (!plan_.macros.empty()) {
            owners.emplace(lower_case(file_name_part(plan_.macros)), nullptr);
        }
        for (const PlannedBuildStep& planned : plan_.steps) {
            for (const std::string& name : planned.outputs) {
                const auto [owner, added] = owners.emplace(lower_case(name), &planned.step);
                if (!added) {
                    refuse(planned.step.line, "\"" + planned.step.name + "\" would write " + name +
                                                  whose(owner->second, planned.step));
                }
            }
        }
    }

    static std::string whose(const ProjectStep* owner, const ProjectStep& step) {
        return owner == nullptr           ? ", which is the name of the macros"
               : owner->name == step.name ? " twice"
                                          : ", which \"" + owner->name + "\" writes too";
    }

    const Services& services_;
    const Project& project_;
    const BuildSurroundings& around_;
    BuildPlan plan_;
};

} // namespace

BuildPlan plan_build(const Services& services, const Project& project,
                     const BuildSurroundings& surroundings) {
    return Planner(services, project, surroundings).run();
}

std::string stored_path(const Project& project, const std::string& path) {
    const std::string name = file_name_part(project.file);
    const std::string folder = project.file.substr(0, project.file.size() - name.size());
    return path.starts_with(folder) ? path.substr(folder.size()) : path;
}

BuildSurroundings build_surroundings(Disk& disk, const std::string& program_folder,
                                     const std::string& default_effect) {
    const std::string effects = join_path(program_folder, "fx_list.txt");
    return {default_effect, disk.is_file(effects) ? effects : std::string(),
            macro_folders(executable_folder()), std::string(version_caption)};
}

namespace {

std::string changed_input_reason(const std::string& role) {
    if (role == "export") {
        return "exported again";
    }
    return role == "effects" ? "effect list changed" : role + " changed";
}

// The first role, in the order of the plan's own importance, whose files changed; empty if none.
std::string input_reason(Disk& disk, const Project& project, const PlannedBuildStep& planned,
                         StepRecord& record) {
    for (const std::string role : {"export", "recipe", "list", "macros", "effects"}) {
        std::size_t count = 0;
        for (const StepInput& input : planned.inputs) {
            if (input.role != role) {
                continue;
            }
            ++count;
            const std::string path = stored_path(project, input.path);
            const auto known = std::find_if(
                record.inputs.begin(), record.inputs.end(),
                [&](const FileRecord& file) { return file.role == role && file.path == path; });
            if (known == record.inputs.end() || !is_as_recorded(disk, input.path, *known)) {
                return changed_input_reason(role);
            }
        }
        const auto recorded =
            std::count_if(record.inputs.begin(), record.inputs.end(),
                          [&](const FileRecord& file) { return file.role == role; });
        if (static_cast<std::size_t>(recorded) != count) {
            return changed_input_reason(role);
        }
    }
    return {};
}

std::string output_reason(Disk& disk, const Project& project, const PlannedBuildStep& planned,
                          StepRecord& record) {
    for (const std::string& name : planned.outputs) {
        const std::string path = join_path(project.folder, name);
        const auto known = std::find_if(record.outputs.begin(), record.outputs.end(),
                                        [&](const FileRecord& file) { return file.path == name; });
        if (known == record.outputs.end() || !disk.is_file(path)) {
            return "output missing";
        }
        if (!is_as_recorded(disk, path, *known)) {
            return "output changed";
        }
    }
    return {};
}

} // namespace

std::string reason_to_make(Disk& disk, const Project& project, const PlannedBuildStep& planned,
                           const BuildSurroundings& surroundings, StepRecord& record) {
    if (!record.made) {
        return "failed before";
    }
    if (std::string reason = input_reason(disk, project, planned, record); !reason.empty()) {
        return reason;
    }
    if (record.compiler != planned.compiler) {
        return "compiler changed";
    }
    if (record.settings != planned.settings) {
        return "project changed";
    }
    if (record.version != surroundings.version) {
        return "Morvane changed";
    }
    return output_reason(disk, project, planned, record);
}

} // namespace morvane
