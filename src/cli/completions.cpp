#include "cli/completions.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace morvane::cli {

namespace {

struct OptionWord {
    std::string name; // with its dashes
    std::string description;
};

/// A command as it is typed behind the program's name ("bgl analyse"); the program itself is "".
struct Command {
    std::string path;
    std::string description;
    std::vector<OptionWord> options;
    std::vector<std::string> subcommands;
};

std::vector<OptionWord> options_of(const CLI::App& app) {
    std::vector<OptionWord> words;
    for (const CLI::Option* option : app.get_options()) {
        if (!option->get_group().empty()) {
            for (const std::string& name : option->get_lnames()) {
                words.push_back({"--" + name, option->get_description()});
            }
        }
    }
    return words;
}

void collect(const CLI::App& app, const std::string& path, std::vector<Command>& commands) {
    Command command{path, app.get_description(), options_of(app), {}};
    const auto below = app.get_subcommands([](const CLI::App*) { return true; });
    for (const CLI::App* subcommand : below) {
        command.subcommands.push_back(subcommand->get_name());
    }
    commands.push_back(std::move(command));
    for (const CLI::App* subcommand : below) {
        collect(*subcommand, path + (path.empty() ? "" : " ") + subcommand->get_name(), commands);
    }
}

std::string joined(const std::vector<std::string>& words, std::string_view between) {
    std::string text;
    for (const std::string& word : words) {
        text.append(text.empty() ? "" : between).append(word);
    }
    return text;
}

std::vector<std::string> names_of(const std::vector<OptionWord>& options) {
    std::vector<std::string> names;
    names.reserve(options.size());
    for (const OptionWord& option : options) {
        names.push_back(option.name);
    }
    return names;
}

// In single quotes of a shell; a quote in the text ends them, stands escaped, and begins them anew.
std::string shell_quoted(const std::string& text) {
    std::string result = "'";
    for (const char c : text) {
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return result + "'";
}

// The pattern of a shell's case for the words that are commands, and not a command's arguments.
std::string command_patterns(const std::vector<Command>& commands) {
    std::vector<std::string> paths;
    for (const Command& command : commands) {
        if (!command.path.empty()) {
            paths.push_back(shell_quoted(command.path));
        }
    }
    return joined(paths, " | ");
}

std::string bash_script(const std::vector<Command>& commands) {
    std::string cases;
    for (const Command& command : commands) {
        auto options = names_of(command.options);
        if (!command.path.empty()) {
            const auto common = names_of(commands.front().options);
            options.insert(options.end(), common.begin(), common.end());
        }
        cases += "        " + shell_quoted(command.path) +
                 ")\n            commands=" + shell_quoted(joined(command.subcommands, " ")) +
                 "\n            options=" + shell_quoted(joined(options, " ")) + " ;;\n";
    }
    return "_morvane_cli() {\n"
           "    local current=${COMP_WORDS[COMP_CWORD]} command= path commands options i\n"
           "    for ((i = 1; i < COMP_CWORD; i++)); do\n"
           "        path=${command:+$command }${COMP_WORDS[i]}\n"
           "        case $path in\n"
           "        " +
           command_patterns(commands) +
           ") command=$path ;;\n"
           "        esac\n"
           "    done\n"
           "    case $command in\n" +
           cases +
           "    esac\n"
           "    if [[ $current == -* ]]; then\n"
           "        COMPREPLY=($(compgen -W \"$options\" -- \"$current\"))\n"
           "    else\n"
           "        COMPREPLY=($(compgen -W \"$commands\" -- \"$current\"))\n"
           "    fi\n"
           "}\n"
           "# Files where no command is meant.\n"
           "complete -o default -F _morvane_cli morvane-cli\n";
}

// A colon ends the word that zsh describes.
std::string zsh_word(const std::string& word, const std::string& description) {
    return shell_quoted(word + ":" + description);
}

std::string zsh_options(const Command& command) {
    std::string words;
    for (const OptionWord& option : command.options) {
        words += "\n                " + zsh_word(option.name, option.description);
    }
    return words;
}

std::string zsh_script(const std::vector<Command>& commands) {
    std::string cases;
    for (const Command& command : commands) {
        cases += "        " + shell_quoted(command.path) + ")\n            commands=(";
        for (const Command& below : commands) {
            const std::size_t blank = below.path.rfind(' ');
            const bool direct =
                blank == std::string::npos
                    ? command.path.empty() && !below.path.empty()
                    : !command.path.empty() && below.path.substr(0, blank) == command.path;
            if (direct) {
                cases += "\n                " +
                         zsh_word(below.path.substr(blank == std::string::npos ? 0 : blank + 1),
                                  below.description);
            }
        }
        cases += ")\n            options+=(" + (command.path.empty() ? "" : zsh_options(command)) +
                 ") ;;\n";
    }
    return "#compdef morvane-cli\n"
           "_morvane_cli() {\n"
           "    local -a commands options=(" +
           zsh_options(commands.front()) +
           ")\n"
           "    local command= typed i\n"
           "    for ((i = 2; i < CURRENT; i++)); do\n"
           "        typed=\"${command:+$command }$words[i]\"\n"
           "        case $typed in\n"
           "        " +
           command_patterns(commands) +
           ") command=$typed ;;\n"
           "        esac\n"
           "    done\n"
           "    case $command in\n" +
           cases +
           "    esac\n"
           "    if [[ $PREFIX == -* ]]; then\n"
           "        _describe option options\n"
           "    elif (( $#commands )); then\n"
           "        _describe command commands\n"
           "    else\n"
           "        _files\n"
           "    fi\n"
           "}\n"
           "_morvane_cli \"$@\"\n";
}

std::string fish_condition(const std::string& path) {
    if (path.empty()) {
        return {};
    }
    std::string condition = "__fish_seen_subcommand_from " + path;
    const std::size_t blank = path.find(' ');
    if (blank != std::string::npos) {
        condition = "__fish_seen_subcommand_from " + path.substr(0, blank) +
                    "; and __fish_seen_subcommand_from " + path.substr(blank + 1);
    }
    return " -n " + shell_quoted(condition);
}

std::string fish_script(const std::vector<Command>& commands) {
    std::string script;
    for (const Command& command : commands) {
        for (const OptionWord& option : command.options) {
            script += "complete -c morvane-cli" + fish_condition(command.path) + " -l " +
                      option.name.substr(2) + " -d " + shell_quoted(option.description) + "\n";
        }
        const std::size_t blank = command.path.find(' ');
        if (!command.path.empty()) {
            script += "complete -c morvane-cli";
            script += blank == std::string::npos ? " -n __fish_use_subcommand"
                                                 : fish_condition(command.path.substr(0, blank));
            script += " -a " + command.path.substr(blank == std::string::npos ? 0 : blank + 1) +
                      " -d " + shell_quoted(command.description) + "\n";
        }
    }
    return script;
}

} // namespace

std::string completions(const CLI::App& app, const std::string& shell) {
    std::vector<Command> commands;
    collect(app, "", commands);
    if (shell == "bash") {
        return bash_script(commands);
    }
    return shell == "zsh" ? zsh_script(commands) : fish_script(commands);
}

void add_completions_option(CLI::App& app) {
    app.add_option_function<std::string>(
           "--completions",
           [&app](const std::string& shell) {
               throw CLI::CallForVersion(completions(app, shell), 0);
           },
           "Print the completions for bash, zsh or fish and leave")
        ->check(CLI::IsMember({"bash", "zsh", "fish"}))
        ->trigger_on_parse()
        ->group("");
}

} // namespace morvane::cli
