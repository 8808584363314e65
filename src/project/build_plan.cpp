// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/build_plan.h"

#include "base/paths.h"
#include "base/text.h"
#include "library/library_list_file.h"
#include "source/source_set.h"
#include "system/disk.h"

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

} // namespace morvane
