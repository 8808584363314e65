// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace morvane {
class Disk;
}

namespace morvane::cli {

/// The script by which a shell completes command lines. It asks the program what can come next.
struct CompletionScript {
    std::string_view shell;
    std::string_view text;
};

/// The scripts for bash, zsh and fish.
const std::vector<CompletionScript>& completion_scripts();

/// Adds the option that prints such a script.
void add_completions_option(CLI::App& app);

/// A word that can come next, and what it does. A folder ends in "/" and is gone into.
struct Candidate {
    std::string text;
    std::string description{};
};

struct Candidates {
    bool files = false; // names of files and folders, not words of the command line
    std::vector<Candidate> found;
};

/// What can be in the place of the last of these words, which may be empty. Words that do not
/// begin like it are omitted.
Candidates candidates_for(Disk& disk, const CLI::App& app, const std::vector<std::string>& words);

/// Answers a completion script: when the command line begins with "--complete-words", prints
/// "files" or "words", then a line for each candidate of the words after it, with a tab before the
/// description. Returns false otherwise.
bool print_candidates(Disk& disk, const CLI::App& app, const std::vector<std::string>& arguments);

} // namespace morvane::cli
