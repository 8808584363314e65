#include "recipe/apply_recipe.h"

#include "base/reporter.h"
#include "base/text.h"
#include "objects/macro_include.h"
#include "objects/process.h"
#include "objects/unique_labels.h"

namespace morvane {

ApplyResult apply_recipe(const Services& services, OpenSet& set, const Recipe& recipe,
                         const RecipePlan& plan, const std::optional<std::string>& trace_folder) {
    ApplyResult result;
    for (const PlannedStep& step : plan.steps) {
        const Assignment& assignment = recipe.assignments.at(step.assignment);
        const ProcessResult processed = process_material(services, set, step.row, assignment.kind,
                                                         assignment.parameters, trace_folder);
        if (!processed.processed) {
            services.reporter.note({"material " + to_text(step.row) + " (" +
                                    file_of(recipe, assignment) + ", line " +
                                    to_text(assignment.source_line) + ") was not processed."});
            return result;
        }
        if (recipe.unique_labels) {
            number_repeated_label(set, step.row);
        }
        result.processed.push_back({step.row, assignment.kind, processed.lines});
    }
    if (!recipe.macros.empty()) {
        include_macros(set, recipe.macros);
    }
    services.reporter.add_message("Materials left as they are : " + to_text(set.unprocessed()));
    result.ok = true;
    return result;
}

} // namespace morvane
