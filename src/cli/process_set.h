// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/cli.h"
#include "cli/json_text.h"

#include <string>

namespace morvane::cli {

/// What `process` was asked to do with each of its sets.
struct ProcessOptions {
    std::string output; // another base path; empty: the set's own
    bool dry_run = false;
    bool trace = false;
    bool strict = false;
    bool force = false;
    bool backup = false;
    bool with_frame = false; // under the other base path
};

/// What became of a set.
struct SetResult {
    int status = done;
    bool refused = false; // with status 1: taken back before anything was tried
    Json document;        // of a set that was processed
};

/// Opens a set, carries the recipe out and saves. All or nothing; what went wrong has been shown.
/// Throws RuntimeError.
SetResult process_set(Cli& cli, const ProcessOptions& options, const std::string& base,
                      const std::string& recipe_file);

} // namespace morvane::cli
