// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/help.h"

#include "base/text.h"
#include "cli/topics.h"
#include "system/program_places.h"
#include "toml/nearest_key.h"

#include <algorithm>
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

// The command that the words name, as far as they are commands; `words` keeps the others.
const CLI::App& command_of(const CLI::App& app, std::vector<std::string>& words) {
    const CLI::App* command = &app;
    while (!words.empty()) {
        const CLI::App* below = find_command(*command, words.front());
        if (below == nullptr) {
            break;
        }
        command = below;
        words.erase(words.begin());
    }
    return *command;
}

// "library objects" is the topic library-objects.
std::string topic_name(const std::vector<std::string>& words) {
    std::string name;
    for (const std::string& word : words) {
        name += (name.empty() ? "" : "-") + lower_case(word);
    }
    return name;
}

// A page that has the name of a command is typed with its ending.
std::string typed_topic(const CLI::App& app, const Topic& topic) {
    return find_command(app, topic.name) == nullptr ? topic.name : topic.name + ".md";
}

void print_topics(const CLI::App& app, const std::vector<Topic>& topics) {
    constexpr std::size_t width = 28;
    for (const Topic& topic : topics) {
        std::string name = typed_topic(app, topic);
        name.resize(std::max(width, name.size() + 1), ' ');
        std::cout << name << topic.title << '\n';
    }
}

// `below` is the command that the words name as far as they are commands, `word` the first that is
// not one.
[[noreturn]] void refuse_topic(const CLI::App& below, const std::vector<Topic>& topics,
                               const std::string& word) {
    std::vector<std::string> known;
    for (const CLI::App* command : commands_below(below)) {
        known.push_back(command->get_name());
    }
    if (below.get_parent() == nullptr) {
        for (const Topic& topic : topics) {
            known.push_back(typed_topic(below, topic));
        }
    }
    throw CLI::ValidationError("There is no command or topic \"" + word + "\"" +
                               suggestion(word, {known.begin(), known.end()}) +
                               (topics.empty() ? "; the documents are not installed" : ""));
}

void print_command_help(const CLI::App& command) {
    std::cout << command.get_formatter()->make_help(&command, typed_name(command),
                                                    CLI::AppFormatMode::Normal);
}

void print_help(const CLI::App& app, Disk& disk, const std::vector<std::string>& words) {
    std::vector<std::string> others = words;
    const CLI::App& command = command_of(app, others);
    if (others.empty()) {
        print_command_help(command);
        return;
    }
    const std::vector<Topic> topics = help_topics(disk, document_folders(executable_folder()));
    const std::string name = topic_name(words);
    if (name == "topics" && !topics.empty()) {
        print_topics(app, topics);
    } else if (const Topic* topic = find_topic(topics, name)) {
        std::cout << terminal_text(topic->text);
    } else {
        refuse_topic(command, topics, others.front());
    }
}

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

void add_help_command(CLI::App& app, Disk& disk) {
    auto* help = app.add_subcommand(
        "help", "Print the help of a command, or a chapter of the guide, and leave");
    const auto words = std::make_shared<std::vector<std::string>>();
    help->add_option("TOPIC", *words,
                     "A command, or a topic of those that \"help topics\" lists; without one, the "
                     "help of the program");
    help->footer("Example:\n  morvane-cli help library create");
    help->callback([&app, &disk, words] { print_help(app, disk, *words); });
}

} // namespace morvane::cli
