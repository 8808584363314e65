// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/find_problems.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "base/text.h"
#include "objects/process.h"
#include "problems/assembly_checks.h"
#include "problems/line_checks.h"
#include "source/open_set.h"
#include "source/source_set.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <tuple>

namespace morvane {

namespace {

constexpr std::size_t most_notes = 20; // of one code

std::string output_of(const ProblemRequest& request) {
    return request.output.empty() ? request.set.base : request.output;
}

// The marked material whose list line or block a line of the opened model belongs to.
std::optional<std::size_t> row_at(const OpenSet& set, std::size_t line) {
    for (std::size_t row = 1; row <= set.translations.size(); ++row) {
        const Translation& material = set.translation(row);
        if (material.list_line == line ||
            (material.block.selecting_line <= line && line <= material.block.block_end)) {
            return row;
        }
    }
    return std::nullopt;
}

// What generated lines take from parameters and vertices, which are checked where they are given.
constexpr std::array<std::string_view, 13> operand_codes{
    "operand-count", "empty-operand",  "real-number",     "whole-number", "number-too-wide",
    "hexadecimal",   "light-type",     "flash-variable",  "empty-text",   "quote-in-text",
    "text-too-long", "text-character", "time-constraints"};

void remove_checked_elsewhere(const ProblemRequest& request, const MergedModel& merged,
                              Problems& problems) {
    if (request.planned.empty()) {
        return;
    }
    const std::string model = model_file_name(output_of(request));
    std::erase_if(problems, [&](const Problem& problem) {
        return problem.path == model && merged.is_generated(problem.line) &&
               std::find(operand_codes.begin(), operand_codes.end(), problem.code) !=
                   operand_codes.end();
    });
}

void place_in_model(const ProblemRequest& request, const MergedModel& merged, Problems& problems) {
    const std::string model = model_file_name(output_of(request));
    for (Problem& problem : problems) {
        if (problem.path != model || problem.line == 0) {
            continue;
        }
        const std::size_t opened = merged.opened_line(problem.line);
        if (!problem.row) {
            problem.row = row_at(request.set, opened);
        }
        if (!request.saved_lines) {
            problem.line = opened;
        }
    }
}

// Those that name lines of the opened model, for a reader of the saved one.
void place_opened_lines(const ProblemRequest& request, const MergedModel& merged,
                        Problems& problems) {
    const std::string model = model_file_name(request.set.base);
    for (Problem& problem : problems) {
        if (request.saved_lines && problem.path == model && problem.line > 0) {
            problem.line = merged.saved_line(problem.line);
        }
    }
}

// Lines that a recipe has put into the frame are together.
void place_in_opened_frame(const ProblemRequest& request, Problems& problems) {
    const LineStore& frame = request.set.frame;
    if (request.opened_frame == nullptr || frame.count() <= request.opened_frame->count()) {
        return;
    }
    const LineStore& opened = *request.opened_frame;
    const std::size_t added = frame.count() - opened.count();
    std::size_t first = 1;
    while (first <= opened.count() && opened.line(first) == frame.line(first)) {
        ++first;
    }
    for (Problem& problem : problems) {
        if (problem.path == frame_file_name(request.set.base) && problem.line > first) {
            problem.line = std::max(problem.line, first + added) - added;
        }
    }
}

void remove_allowed(const std::vector<std::string>& allowed, Problems& problems) {
    std::erase_if(problems, [&](const Problem& problem) {
        return std::find(allowed.begin(), allowed.end(), problem.code) != allowed.end();
    });
}

// Many generated lines may have one fault, and belong to one line before they are written.
void remove_repeated(Problems& problems) {
    std::set<std::tuple<std::string, std::string, std::size_t, std::string>> seen;
    std::erase_if(problems, [&](const Problem& problem) {
        return !seen.insert({problem.code, problem.path, problem.line, problem.text}).second;
    });
}

bool has_work_left(const ProblemRequest& request) {
    return request.set.opened &&
           std::any_of(request.planned.begin(), request.planned.end(),
                       [&](const PlannedObject& object) {
                           return request.set.translation(object.row).processed.empty();
                       });
}

// The set with everything processed that is planned and not processed yet.
OpenSet processed_set(Disk& disk, const ProblemRequest& request, Problems& problems) {
    OpenSet set = request.set;
    QuietReporter reporter;
    for (const PlannedObject& object : request.planned) {
        if (!set.translation(object.row).processed.empty()) {
            continue;
        }
        // A windsock that meets a flat triangle leaves the lines before it commented out.
        const std::optional<OpenSet> before =
            object.kind == Kind::Windsock ? std::optional(set) : std::nullopt;
        if (!process_material({disk, reporter}, set, object.row, object.kind, object.parameters)
                 .processed) {
            set = before ? *before : set;
            problems.push_back(
                {"cannot-process", Severity::Error,
                 "row " + to_text(object.row) + " cannot be processed: " + reporter.last_box,
                 object.path, object.line, object.row});
        }
    }
    return set;
}

void check_planned(const ProblemRequest& request, Problems& problems) {
    for (const PlannedObject& object : request.planned) {
        check_object(request.set, object, problems);
        check_parameters_of(object, problems);
        check_effect_name(object, request.effects, problems);
        check_identifier(object, request.objects, problems);
    }
}

// Says how far the check is, each time that another part of it begins.
class Parts {
  public:
    explicit Parts(const ProblemRequest& request) : request_(request) {}
    void next() {
        if (request_.progress) {
            request_.progress(std::min(done_, count), count);
        }
        ++done_;
    }

  private:
    static constexpr std::size_t count = 6;
    const ProblemRequest& request_;
    std::size_t done_ = 0;
};

// Everything about the source as the assembler will read it.
Problems source_problems(Disk& disk, const OpenSet& set, const ProblemRequest& request,
                         const MergedModel& merged, Parts& parts) {
    parts.next();
    const FlatSource source = flatten_set(disk, set, output_of(request), merged);
    parts.next();
    Problems problems = find_assembly_problems(source);
    parts.next();
    check_lines(source, problems);
    parts.next();
    check_renaming(source, problems);
    check_flow(source, problems);
    check_textures(disk, source, problems);
    parts.next();
    remove_checked_elsewhere(request, merged, problems);
    place_in_model(request, merged, problems);
    return problems;
}

// Everything about materials and tables, whose lines are those of the opened set.
Problems set_problems(Disk& disk, const OpenSet& set, const ProblemRequest& request,
                      const MergedModel& merged) {
    Problems problems;
    check_planned(request, problems);
    check_frame(set, problems);
    check_materials(set, problems);
    place_opened_lines(request, merged, problems);
    check_limits(set, problems);
    check_files(disk, request.set, problems);
    return problems;
}

} // namespace

CheckedSet open_for_check(Disk& disk, const std::string& base) {
    CheckedSet checked;
    QuietReporter reporter;
    if (!open_source_set({disk, reporter}, checked.set, base)) {
        checked.refusal = reporter.all_boxes;
    }
    checked.loaded = !checked.set.base.empty();
    return checked;
}

std::vector<Problem> find_problems(Disk& disk, const ProblemRequest& request) {
    Problems problems;
    const bool work_left = has_work_left(request);
    const OpenSet processed = work_left ? processed_set(disk, request, problems) : OpenSet();
    const OpenSet& set = work_left ? processed : request.set;
    const MergedModel merged = merge_model(set);
    Parts parts(request);
    for (const Problems& found : {source_problems(disk, set, request, merged, parts),
                                  set_problems(disk, set, request, merged)}) {
        problems.insert(problems.end(), found.begin(), found.end());
    }
    parts.next();
    place_in_opened_frame(request, problems);
    remove_allowed(request.allowed, problems);
    remove_repeated(problems);
    sort_worst_first(problems);
    return problems;
}

std::vector<Problem> find_set_assembly_problems(Disk& disk, const OpenSet& set,
                                                const std::string& output) {
    return find_assembly_problems(flatten_set(disk, set, output, merge_model(set)));
}

std::vector<Problem> find_file_assembly_problems(Disk& disk, const std::string& path,
                                                 const std::string& folder) {
    try {
        return find_assembly_problems(flatten(disk, read_source(disk, path), folder));
    } catch (const RuntimeError& error) {
        return {{"not-checked", Severity::Warning,
                 std::string("cannot be read to be checked (") + error.description() + ").", path}};
    }
}

bool note_problems(Reporter& reporter, std::vector<Problem> problems,
                   const std::vector<std::string>& allowed) {
    remove_allowed(allowed, problems);
    std::map<std::string, std::size_t> counts;
    for (const Problem& problem : problems) {
        if (problem.severity != Severity::Note && ++counts[problem.code] <= most_notes) {
            reporter.note(note_of(problem));
        }
    }
    for (const auto& [code, count] : counts) {
        if (count > most_notes) {
            reporter.note({to_text(count - most_notes) + " more of these [" + code + "]"});
        }
    }
    return !counts.empty();
}

} // namespace morvane
