#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace morvane::cli {

/// The script by which a shell ("bash", "zsh" or "fish") completes commands and options. It is made
/// of the very table that the command line is read by.
std::string completions(const CLI::App& app, const std::string& shell);

/// Adds the option that prints such a script; packages are made with it, users need not see it.
void add_completions_option(CLI::App& app);

} // namespace morvane::cli
