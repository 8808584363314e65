#include "problems/find_problems.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "base/text.h"
#include "problems/assembly_checks.h"
#include "source/source_set.h"
#include "system/file_bytes.h"

#include <algorithm>
#include <map>

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

void remove_allowed(const std::vector<std::string>& allowed, Problems& problems) {
    std::erase_if(problems, [&](const Problem& problem) {
        return std::find(allowed.begin(), allowed.end(), problem.code) != allowed.end();
    });
}

} // namespace

std::vector<Problem> find_problems(Disk& disk, const ProblemRequest& request) {
    const MergedModel merged = merge_model(request.set);
    const FlatSource source = flatten_set(disk, request.set, output_of(request), merged);
    Problems problems = find_assembly_problems(source);
    place_in_model(request, merged, problems);
    remove_allowed(request.allowed, problems);
    sort_worst_first(problems);
    return problems;
}

std::vector<Problem> find_set_assembly_problems(Disk& disk, const OpenSet& set,
                                                const std::string& output) {
    return find_assembly_problems(flatten_set(disk, set, output, merge_model(set)));
}

std::vector<Problem> find_file_assembly_problems(Disk& disk, const std::string& path,
                                                 const std::string& folder) {
    return find_assembly_problems(flatten(disk, {path, LineStore(read_bytes(disk, path))}, folder));
}

void note_problems(Reporter& reporter, const std::vector<Problem>& problems) {
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
}

} // namespace morvane
