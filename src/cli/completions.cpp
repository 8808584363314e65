// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/completions.h"

#include "base/errors.h"
#include "base/paths.h"
#include "cli/help.h"
#include "project/project.h"
#include "system/disk.h"
#include "system/program_places.h"

#include <algorithm>
#include <iostream>
#include <set>

namespace morvane::cli {

namespace {

/// Which files an argument can name.
enum class Files { None, Any, Sets, Toml, SetsAndToml, Drawable, Bgl, Folders };

// By the name of the argument, and for options by the type of their value.
Files files_of(const CLI::App& command, const std::string& name) {
    if (name == "FILE") {
        const CLI::App* above = command.get_parent();
        return above != nullptr && above->get_name() == "bgl" ? Files::Bgl : Files::Any;
    }
    if (name == "BASE" || name == "DESIGN") {
        return Files::Sets;
    }
    if (name == "RECIPE" || name == "LIST" || name.starts_with("PROJECT")) {
        return Files::Toml;
    }
    if (name == "FILE.bgl") {
        return Files::Bgl;
    }
    return name == "DIR" ? Files::Folders : name == "FILE.png" ? Files::Any : Files::None;
}

// A set and what belongs to it can be named in any order.
Files files_of_argument(const CLI::App& command, const CLI::Option& argument) {
    const std::string& name = command.get_name();
    if (name == "render") {
        return Files::Drawable;
    }
    const bool takes_both = name == "process" || name == "check" || name == "watch";
    return takes_both ? Files::SetsAndToml : files_of(command, argument.get_name());
}

// The names of files are offered without the rest of their path in some shells, so that it counts
// for nothing but finding them.
struct TypedPath {
    std::string shown_folder; // as typed, with its "/"
    std::string folder;       // to be listed
    std::string begin;        // of the name
};

TypedPath typed_path(const std::string& word) {
    const std::size_t slash = word.rfind('/');
    if (slash == std::string::npos) {
        return {"", ".", word};
    }
    TypedPath path{word.substr(0, slash + 1), word.substr(0, slash + 1), word.substr(slash + 1)};
    if (path.folder.starts_with("~/")) {
        path.folder.replace(0, 1, environment_variable("HOME"));
    }
    return path;
}

constexpr std::string_view model_ending = "_0.asm";

// What is offered for a file; empty when it is not one of those that are meant.
std::string offered_name(const std::string& name, Files files, const std::set<std::string>& names) {
    const bool drawable = files == Files::Drawable;
    const bool bases = files == Files::Sets || files == Files::SetsAndToml || drawable;
    const bool toml = files == Files::Toml || files == Files::SetsAndToml || drawable;
    const bool bgl = files == Files::Bgl || drawable;
    if (bases && name.ends_with(model_ending)) {
        const std::string base = name.substr(0, name.size() - model_ending.size());
        return names.contains(base + ".asm") ? base : std::string();
    }
    const bool fits = files == Files::Any || (toml && has_ending(name, ".toml")) ||
                      (bgl && has_ending(name, ".bgl"));
    return fits ? name : std::string();
}

std::vector<FolderEntry> listed(Disk& disk, const std::string& folder) {
    try {
        return disk.list_folder(folder);
    } catch (const RuntimeError&) {
        return {}; // nothing to offer
    }
}

Candidates matching_files(Disk& disk, const std::string& word, Files files) {
    if (files == Files::None) {
        return {};
    }
    const TypedPath typed = typed_path(word);
    const std::vector<FolderEntry> entries = listed(disk, typed.folder);
    std::set<std::string> names;
    for (const FolderEntry& entry : entries) {
        names.insert(entry.name);
    }
    Candidates candidates{true, {}};
    for (const FolderEntry& entry : entries) {
        const bool folder =
            entry.folder || (!entry.file && disk.is_folder(join_path(typed.folder, entry.name)));
        const std::string name = folder ? entry.name + "/" : offered_name(entry.name, files, names);
        const bool hidden = name.starts_with('.') && typed.begin.empty();
        if (!name.empty() && name.starts_with(typed.begin) && !hidden) {
            candidates.found.push_back({typed.shown_folder + name});
        }
    }
    return candidates;
}

const CLI::Option* find_option(const CLI::App& command, const std::string& word) {
    for (const CLI::Option* option : command.get_options()) {
        if (option->nonpositional() && option->check_name(word)) {
            return option;
        }
    }
    return command.get_parent() == nullptr ? nullptr : find_option(*command.get_parent(), word);
}

bool takes_value(const CLI::Option& option) {
    return option.get_items_expected_max() > 0;
}

/// Where in the command line the next word comes.
struct Position {
    const CLI::App* command;
    const CLI::Option* value_of = nullptr; // an option that waits for its value
    std::size_t arguments = 0;             // of the command so far
};

Position position_after(const CLI::App& app, const std::vector<std::string>& words) {
    Position position{&app};
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
        const std::string& word = words[i];
        if (word == "=") {
            continue; // bash takes "--option=value" apart
        }
        if (position.value_of != nullptr) {
            position.value_of = nullptr;
        } else if (word.size() > 1 && word.starts_with('-')) {
            const CLI::Option* option = find_option(*position.command, word);
            position.value_of = option != nullptr && takes_value(*option) ? option : nullptr;
        } else if (const CLI::App* below = find_command(*position.command, word)) {
            position.command = below;
        } else {
            ++position.arguments;
        }
    }
    return position;
}

// The argument that comes next; the last one when that takes any number of words.
const CLI::Option* argument_at(const CLI::App& command, std::size_t index) {
    const auto arguments =
        command.get_options([](const CLI::Option* option) { return option->get_positional(); });
    if (index < arguments.size()) {
        return arguments[index];
    }
    const bool repeated = !arguments.empty() && arguments.back()->get_items_expected_max() > 1;
    return repeated ? arguments.back() : nullptr;
}

void add_options(const CLI::App& command, Candidates& candidates) {
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            candidates.found.push_back({"--" + name, option->get_description()});
        }
    }
    if (command.get_parent() != nullptr) {
        add_options(*command.get_parent(), candidates);
    }
}

Candidates matching_words(const Position& position, const std::string& word) {
    Candidates candidates;
    if (word.starts_with('-')) {
        add_options(*position.command, candidates);
    } else if (position.arguments == 0) {
        for (const CLI::App* below : commands_below(*position.command)) {
            candidates.found.push_back({below->get_name(), below->get_description()});
        }
    }
    std::erase_if(candidates.found,
                  [&](const Candidate& candidate) { return !candidate.text.starts_with(word); });
    return candidates;
}

// The steps of the project that the words name, or of the one in the current folder.
void add_steps(Disk& disk, const std::vector<std::string>& words, Candidates& candidates) {
    const auto named = std::find_if(words.begin(), words.end() - 1, [](const std::string& word) {
        return has_ending(word, ".toml");
    });
    const std::string file = named == words.end() - 1 ? "morvane.toml" : *named;
    const ProjectReading reading = read_project(disk, file);
    if (!reading.project) {
        return;
    }
    for (const ProjectStep& step : reading.project->steps) {
        if (step.name.starts_with(words.back())) {
            candidates.found.push_back({step.name});
        }
    }
}

} // namespace

Candidates candidates_for(Disk& disk, const CLI::App& app, const std::vector<std::string>& words) {
    const Position position = position_after(app, words);
    const std::string word = words.empty() || words.back() == "=" ? std::string() : words.back();
    if (position.value_of != nullptr) {
        return matching_files(disk, word,
                              files_of(*position.command, position.value_of->get_type_name()));
    }
    const CLI::Option* argument = argument_at(*position.command, position.arguments);
    if (word.starts_with('-') || argument == nullptr) {
        return matching_words(position, word);
    }
    Candidates candidates =
        matching_files(disk, word, files_of_argument(*position.command, *argument));
    if (position.command->get_name() == "build") {
        add_steps(disk, words, candidates);
    }
    return candidates;
}

bool print_candidates(Disk& disk, const CLI::App& app, const std::vector<std::string>& arguments) {
    if (arguments.empty() || arguments.front() != "--complete-words") {
        return false;
    }
    const Candidates candidates =
        candidates_for(disk, app, {arguments.begin() + 1, arguments.end()});
    std::cout << (candidates.files ? "files\n" : "words\n");
    for (const Candidate& candidate : candidates.found) {
        std::cout << candidate.text;
        if (!candidate.description.empty()) {
            std::cout << '\t' << candidate.description;
        }
        std::cout << '\n';
    }
    return true;
}

void add_completions_option(CLI::App& app) {
    app.add_option_function<std::string>(
           "--completions",
           [](const std::string& shell) {
               for (const CompletionScript& script : completion_scripts()) {
                   if (script.shell == shell) {
                       std::cout << script.text;
                       throw CLI::Success();
                   }
               }
               throw CLI::ValidationError("--completions: there is no script for \"" + shell +
                                          "\", only for bash, zsh and fish");
           },
           "Print the script that completes command lines in bash, zsh or fish, and leave")
        ->type_name("SHELL")
        ->trigger_on_parse();
}

} // namespace morvane::cli
