// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/build_project.h"
#include "system/services.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace morvane {

/// A step of a project, as a table shows it.
struct ProjectRow {
    std::string name;
    std::string kind; // "set", "aircraft" or "library"
    std::string
        state; // "up to date", "failed", or why it is to be made: "exported again", "new" ...
    std::optional<std::size_t> marked; // materials of a set's export; nothing for the others
    std::optional<std::size_t> done;   // that its recipe takes
    std::size_t problems = 0;          // errors and warnings of the last build
    std::string result;                // of the last build: "made" or "failed: " and why
    std::string base;                  // the export to open: the set's, or the first of the others
};

/// What is known of a project that is open: its steps, what they are like now, and what the last
/// builds came to.
class ProjectTable {
  public:
    /// `services` must outlive this.
    ProjectTable(const Services& services, std::string file, BuildSurroundings surroundings)
        : services_(services), file_(std::move(file)), surroundings_(std::move(surroundings)) {}

    const std::string& file() const { return file_; }
    const std::vector<ProjectRow>& rows() const { return rows_; }
    /// What is wrong with the project, its recipes or lists; then there may be no rows.
    const std::vector<std::string>& errors() const { return errors_; }

    /// Reads the project and looks at all of its files; nothing is written. Never throws.
    void refresh();
    /// Builds the steps of these names, all if there are none, and looks again. A step that fails
    /// does not stop the others. `compile` as in BuildOptions.
    void build(const std::vector<std::string>& names, std::size_t jobs,
               const decltype(BuildOptions::compile)& compile);
    /// Takes over what a build has come to, of a watch for example, and looks again.
    void take(const BuildResult& result);

  private:
    void look(const Project& project);
    ProjectRow row_of(const Project& project, const StepResult& step);
    void count_materials(const ProjectStep& step, ProjectRow& row);
    void keep_results(const BuildResult& result);

    struct Result {
        std::string text;
        std::size_t problems = 0;
    };

    Services services_;
    std::string file_;
    BuildSurroundings surroundings_;
    std::vector<ProjectRow> rows_;
    std::vector<std::string> errors_;
    std::vector<std::pair<std::string, Result>> results_; // by name
};

} // namespace morvane
