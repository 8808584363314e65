// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/make_step.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/text.h"
#include "library/create_library.h"
#include "objects/include_lines.h"
#include "objects/save.h"
#include "problems/find_problems.h"
#include "project/export_watch.h"
#include "project/manifest.h"
#include "project/memory_disk.h"
#include "project/step_reporter.h"
#include "recipe/apply_recipe.h"
#include "source/open_set.h"
#include "source/source_set.h"
#include "system/file_bytes.h"
#include "system/replace_files.h"
#include "upkeep/rename_labels.h"

#include <algorithm>
#include <functional>

namespace morvane {

namespace {

std::string written(const std::function<void(TextWriter&)>& write) {
    MemoryDisk memory;
    const std::unique_ptr<WritableFile> file = memory.open_for_update("text");
    TextWriter out(*file);
    write(out);
    out.flush();
    return memory.bytes("text");
}

std::string all_lines(const LineStore& store) {
    return written([&](TextWriter& out) { write_lines(out, store, 1, store.upper()); });
}

// Without the empty line that a save adds: these are copies of which a line was changed.
std::string copied_lines(const LineStore& store) {
    return written([&](TextWriter& out) { write_lines(out, store, 1, store.count()); });
}

LineStore store_of(std::string_view bytes) {
    FileBytes copy = allocate_bytes(bytes.size());
    bytes.copy(copy.data.get(), bytes.size());
    return LineStore(std::move(copy));
}

/// The two files of an export as they were read at one moment.
struct Export {
    std::string base;
    FileBytes model;
    FileBytes frame;
    PairStamps stamps;
};

/// What ends a step: a problem that has been found.
struct StepFailure {
    Problem problem;
};

/// What ends a step whose export must not be read now.
struct Postponement {};

[[noreturn]] void fail(const std::string& code, const std::string& text, const std::string& path) {
    throw StepFailure{{code, Severity::Error, text, path, 0, std::nullopt}};
}

void require_complete(const std::string& path, const std::string& incompleteness) {
    if (!incompleteness.empty()) {
        fail("incomplete-export", "this export is incomplete: " + incompleteness, path);
    }
}

/// One step while its sources are made.
struct Making {
    Disk& disk;
    const std::map<std::string, std::string>& models;
    const ExportGate& may_read;
    StepReporter reporter{};
    std::vector<FileRecord> exports{}; // as they were read

    Services services() { return {disk, reporter}; }

    void require_unchanged(const Export& from) const {
        if (look_at_pair(disk, from.base) == from.stamps) {
            return;
        }
        if (may_read) {
            throw Postponement();
        }
        fail("incomplete-export", "this export was changed while it was read",
             frame_file_name(from.base));
    }

    Export read_export(const std::string& base) const {
        Export from{base, {}, {}, look_at_pair(disk, base)};
        if (may_read && !may_read(base, from.stamps)) {
            throw Postponement();
        }
        if (!from.stamps.model || !from.stamps.frame) {
            fail("missing-export", "there is no such file",
                 from.stamps.model ? frame_file_name(base) : model_file_name(base));
        }
        try {
            from.model = read_bytes(disk, model_file_name(base));
            from.frame = read_bytes(disk, frame_file_name(base));
        } catch (const RuntimeError&) {
            require_unchanged(from); // perhaps it has just been deleted
            throw;
        }
        require_unchanged(from);
        require_complete(model_file_name(base), model_incompleteness(from.model.view()));
        require_complete(frame_file_name(base), frame_incompleteness(from.frame.view()));
        return from;
    }

    Export take(const std::string& base) {
        Export from = read_export(base);
        exports.push_back(
            {"export", model_file_name(base), *from.stamps.model, content_hash(from.model.view())});
        exports.push_back(
            {"export", frame_file_name(base), *from.stamps.frame, content_hash(from.frame.view())});
        return from;
    }

    // An export's frame file with bare names in its include lines.
    std::string bare_frame(const Export& from) const {
        LineStore frame = store_of(from.frame.view());
        return make_includes_bare(frame, models) ? copied_lines(frame)
                                                 : std::string(from.frame.view());
    }
};

void refuse_errors(const RecipePlan& plan) {
    if (!plan.problems.empty()) {
        const Note& first = plan.problems.front();
        std::string text = first.text;
        for (const Note& hint : plan.hints) {
            text += hint.line == first.line ? " (" + hint.text + ")" : "";
        }
        throw StepFailure{{"recipe", Severity::Error, text, first.path, first.line, std::nullopt}};
    }
}

// A material that cannot be taken as a whole would be rewritten in part.
void refuse_unfit(Making& making, const OpenSet& set, const Recipe& recipe,
                  const RecipePlan& plan) {
    const std::vector<Note> unfit = unfit_materials(set, recipe, plan);
    for (const Note& note : unfit) {
        making.reporter.problems.push_back(
            {note.code, note.severity, note.text, note.path, note.line, std::nullopt});
    }
    if (!unfit.empty()) {
        fail("failed", "it was not processed", model_file_name(set.base));
    }
}

// Opens an export and carries the recipe out.
void process(Making& making, OpenSet& set, const Recipe& recipe, const std::string& base) {
    const Services services = making.services();
    if (!open_source_set(services, set, base)) {
        fail("failed", "it cannot be opened", model_file_name(base));
    }
    const RecipePlan plan = plan_recipe(set, recipe);
    refuse_errors(plan);
    refuse_unfit(making, set, recipe, plan);
    if (!apply_recipe(services, set, recipe, plan).ok) {
        fail("failed", "it was not processed", model_file_name(base));
    }
}

void add_assembly_problems(Making& making, const OpenSet& set, const Recipe& recipe,
                           const std::string& output) {
    for (Problem& problem : find_set_assembly_problems(making.disk, set, output)) {
        const bool allowed =
            std::find(recipe.allow.begin(), recipe.allow.end(), problem.code) != recipe.allow.end();
        if (!allowed && problem.severity != Severity::Note) {
            making.reporter.problems.push_back(std::move(problem));
        }
    }
}

std::string model_text(const OpenSet& set, const Export& from) {
    return set.replacements.empty()
               ? std::string(from.model.view())
               : written([&](TextWriter& out) { write_merged_model(set, out); });
}

// `saved`: whether the recipe changed the frame; otherwise only the project did.
std::string frame_text(const OpenSet& set, const Export& from, bool saved) {
    return saved               ? all_lines(set.frame)
           : set.frame_changed ? copied_lines(set.frame)
                               : std::string(from.frame.view());
}

// The labels of either file get the suffix wherever they are used.
void append_suffix(std::string& model, std::string& frame, const std::string& suffix) {
    LineStore model_lines = store_of(model);
    LineStore frame_lines = store_of(frame);
    std::vector<std::string> labels = collect_labels(model_lines);
    for (const std::string& label : collect_labels(frame_lines)) {
        if (std::find(labels.begin(), labels.end(), label) == labels.end()) {
            labels.push_back(label);
        }
    }
    append_suffix_to_labels(model_lines, labels, suffix);
    append_suffix_to_labels(frame_lines, labels, suffix);
    model = all_lines(model_lines);
    frame = all_lines(frame_lines);
}

MadeSources make_set(Making& making, const PlannedBuildStep& planned, const std::string& macros,
                     const std::string& folder) {
    const Export from = making.take(planned.step.base);
    OpenSet set;
    process(making, set, *planned.recipe, from.base);
    making.require_unchanged(from);
    const bool saved = set.frame_changed;
    if (!macros.empty()) {
        include_macros(set, macros);
    }
    if (make_includes_bare(set.frame, making.models)) {
        set.frame_changed = true;
    }
    const std::string name = file_name_part(from.base);
    add_assembly_problems(making, set, *planned.recipe, join_path(folder, name));
    std::string model = model_text(set, from);
    std::string frame = frame_text(set, from, saved);
    if (!planned.step.suffix.empty()) {
        append_suffix(model, frame, planned.step.suffix);
    }
    return {{frame_file_name(name), std::move(frame)}, {model_file_name(name), std::move(model)}};
}

// The operation works on files in place: it gets copies of its own, in memory.
MadeSources make_aircraft(Making& making, const PlannedBuildStep& planned,
                          const std::string& macros) {
    const ProjectStep& step = planned.step;
    MemoryDisk memory;
    std::vector<std::string> names;
    for (const std::string& base : planned.exports) {
        const Export from = making.take(base);
        const std::string name = file_name_part(base);
        names.insert(names.begin(), {model_file_name(name), frame_file_name(name)});
        memory.put(model_file_name(name), from.model.view());
        memory.put(frame_file_name(name), from.frame.view());
    }
    AircraftJob job{{}, step.flexing_wings, step.shadow_optimization, {}, {}};
    for (const AircraftPart part : parts_used(step)) {
        job.bases.at(part) = file_name_part(step.parts.at(part));
    }
    const std::optional<std::string> result = assemble_aircraft({memory, making.reporter}, job);
    if (!result) {
        fail("failed", "the aircraft was not assembled", {});
    }
    MadeSources files;
    for (const std::string& name : names) { // the result comes last
        LineStore lines = store_of(memory.bytes(name));
        const bool included =
            name == *result && !macros.empty() && add_macro_include(lines, macros);
        const bool bare = !name.ends_with("_0.asm") && make_includes_bare(lines, making.models);
        files.emplace_back(name, included || bare ? copied_lines(lines) : memory.bytes(name));
    }
    return files;
}

MadeSources make_library(Making& making, const PlannedBuildStep& planned) {
    MadeSources files;
    LibraryList list = *planned.list;
    for (LibraryLine& line : list.lines) {
        const Export from = making.take(line.location);
        line.base = file_name_part(line.location);
        files.emplace_back(model_file_name(line.base), from.model.view());
        files.emplace_back(frame_file_name(line.base), making.bare_frame(from));
    }
    files.emplace_back(planned.step.output, written([&](TextWriter& out) {
                           write_library_source(out, list, planned.step.output);
                       }));
    return files;
}

MadeSources make(Making& making, const Project& project, const BuildPlan& plan,
                 const PlannedBuildStep& planned) {
    const std::string macros = file_name_part(plan.macros);
    switch (planned.step.kind) {
    case StepKind::Set:
        return make_set(making, planned, macros, project.folder);
    case StepKind::Aircraft:
        return make_aircraft(making, planned, macros);
    case StepKind::Library:
        break;
    }
    return make_library(making, planned);
}

StepSources caught(Making& making, const std::function<MadeSources()>& make) {
    StepSources result;
    try {
        result.sources = make();
        result.ok = true;
    } catch (const Postponement&) {
        return {false, true, {}, {}, {}};
    } catch (const StepFailure& failure) {
        // What the operation said itself is more than that it failed.
        const bool said =
            std::any_of(making.reporter.problems.begin(), making.reporter.problems.end(),
                        [](const Problem& problem) { return problem.severity == Severity::Error; });
        if (!said || failure.problem.code != "failed") {
            making.reporter.problems.push_back(failure.problem);
        }
    } catch (const RuntimeError& error) {
        making.reporter.problems.push_back(
            {"failed", Severity::Error, error.description(), error.about(), 0, std::nullopt});
    }
    result.problems = std::move(making.reporter.problems);
    sort_worst_first(result.problems);
    return result;
}

} // namespace

StepSources make_sources(Disk& disk, const Project& project, const BuildPlan& plan,
                         const PlannedBuildStep& planned, const ExportGate& may_read) {
    Making making{disk, plan.models, may_read};
    // What is not an export may change while the step is made; the next build then makes it again.
    std::vector<FileRecord> inputs;
    StepSources result = caught(making, [&] {
        for (const StepInput& input : planned.inputs) {
            if (input.role != "export") {
                inputs.push_back(record_file(disk, input.path));
                inputs.back().role = input.role;
            }
        }
        return make(making, project, plan, planned);
    });
    inputs.insert(inputs.end(), making.exports.begin(), making.exports.end());
    for (FileRecord& input : inputs) {
        input.path = stored_path(project, input.path);
    }
    result.inputs = std::move(inputs);
    return result;
}

StepSources make_single_set(Disk& disk, const std::string& base, const Recipe& recipe,
                            const std::string& output, const ExportGate& may_read) {
    const std::map<std::string, std::string> no_models;
    Making making{disk, no_models, may_read};
    return caught(making, [&] {
        const Export from = making.take(base);
        OpenSet set;
        process(making, set, recipe, base);
        making.require_unchanged(from);
        add_assembly_problems(making, set, recipe, output);
        return MadeSources{{frame_file_name(output), frame_text(set, from, set.frame_changed)},
                           {model_file_name(output), model_text(set, from)}};
    });
}

} // namespace morvane
