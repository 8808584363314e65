// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/help.h"

#include "toml/nearest_key.h"

#include <iostream>
#include <memory>

namespace morvane::cli {

namespace {

class FullHelp : public CLI::Formatter {
  public:
    std::string make_footer(const CLI::App* app) const override {
        const std::string footer = Formatter::make_footer(app);
        return common_options(*app) + (footer.empty() ? "" : "\n" + footer);
    }

  private:
    std::string common_options(const CLI::App& app) const {
        const CLI::App& program = program_of(app);
        if (&program == &app) {
            return {};
        }
        const auto options = program.get_options([&](const CLI::Option* option) {
            return option != program.get_help_ptr() && option != program.get_version_ptr() &&
                   option->get_name() != "--completions";
        });
        return make_group("Common options", false, options).substr(1); // begins with a blank line
    }
};

} // namespace

const CLI::App& program_of(const CLI::App& command) {
    return command.get_parent() == nullptr ? command : program_of(*command.get_parent());
}

std::string typed_name(const CLI::App& command) {
    const CLI::App* above = command.get_parent();
    return above == nullptr ? command.get_name() : typed_name(*above) + " " + command.get_name();
}

std::vector<const CLI::App*> commands_below(const CLI::App& command) {
    return command.get_subcommands([](const CLI::App*) { return true; });
}

const CLI::App* find_command(const CLI::App& above, const std::string& name) {
    for (const CLI::App* command : commands_below(above)) {
        if (command->get_name() == name) {
            return command;
        }
    }
    return nullptr;
}

void use_full_help(CLI::App& app) {
    app.formatter(std::make_shared<FullHelp>());
}

void add_help_command(CLI::App& app) {
    auto* help = app.add_subcommand("help", "Print the help of a command and leave");
    const auto words = std::make_shared<std::vector<std::string>>();
    help->add_option("COMMAND", *words, "The command; without one, the help of the program");
    help->footer("Example:\n  morvane-cli help library create");
    help->callback([&app, words] {
        const CLI::App* command = &app;
        for (const std::string& word : *words) {
            const CLI::App* below = find_command(*command, word);
            if (below == nullptr) {
                std::vector<std::string_view> names;
                for (const CLI::App* other : commands_below(*command)) {
                    names.emplace_back(other->get_name());
                }
                throw CLI::ValidationError("There is no command \"" + word + "\"" +
                                           suggestion(word, names));
            }
            command = below;
        }
        std::cout << command->get_formatter()->make_help(command, typed_name(*command),
                                                         CLI::AppFormatMode::Normal);
    });
}

} // namespace morvane::cli
