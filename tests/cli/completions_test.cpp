// SPDX-License-Identifier: GPL-3.0-or-later

// The completions, as the shells that they are for use them.

#include "cli/program_run.h"
#include "support/source_folder.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace morvane::test {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;
using Words = std::vector<std::string>;

ProgramRun run(const std::string& commands) {
    const TempFolder folder;
    return run_commands(folder.path(), commands);
}

bool has_shell(const std::string& shell) {
    return run("command -v " + shell + " >/dev/null\n").status == 0;
}

// The first word of each line, up to what describes it.
Words first_words(const std::string& text, char end) {
    std::istringstream lines(text);
    Words words;
    for (std::string line; std::getline(lines, line);) {
        words.push_back(line.substr(0, line.find(end)));
    }
    return words;
}

/// What a shell offers for the last word of a line typed so far.
struct Shell {
    std::string name;
    std::string commands; // with TYPED for the line
    char end_of_word;

    /// `files` are made first, empty; one that ends in "/" is a folder.
    Words offer(const std::string& typed, const Words& files = {}, std::string text = {}) const {
        for (const std::string& file : files) {
            text += (file.ends_with('/') ? "mkdir -p " : "touch ") + file + "\n";
        }
        text += commands;
        for (std::size_t at = 0; (at = text.find("TYPED", at)) != std::string::npos;) {
            text.replace(at, 5, typed);
        }
        const ProgramRun done = run(text);
        EXPECT_EQ(done.status, 0) << name;
        EXPECT_EQ(done.errors, "") << name;
        return first_words(done.output, end_of_word);
    }
};

// What the completion script itself is given by bash and zsh, and what it gives back, is played.
const Shell bash{"bash",
                 "morvane-cli --completions bash >script\n"
                 "cat >play <<'END'\n"
                 ". ./script\n"
                 "typed='morvane-cli TYPED'\n"
                 "read -ra COMP_WORDS <<<\"$typed\"\n"
                 "[[ $typed == *' ' ]] && COMP_WORDS+=('')\n"
                 "COMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n"
                 "_morvane_cli\n"
                 "[ ${#COMPREPLY[@]} -eq 0 ] || printf '%s\\n' \"${COMPREPLY[@]}\"\n"
                 "END\n"
                 "bash --norc play\n",
                 '\n'};
const Shell zsh{"zsh",
                "morvane-cli --completions zsh >script\n"
                "cat >play <<'END'\n"
                "compadd() {\n"
                "    while [[ $1 != -- ]]; do shift; done; shift\n"
                "    [[ $# -eq 0 ]] || print -rl -- \"$@\"\n"
                "}\n"
                "typed='morvane-cli TYPED'\n"
                "words=(${(s: :)typed})\n"
                "[[ $typed == *' ' ]] && words+=('')\n"
                "CURRENT=$#words\n"
                ". ./script\n"
                "END\n"
                "zsh -f play\n",
                '\n'};
const Shell fish{"fish",
                 "morvane-cli --completions fish >script\n"
                 "mkdir .home\n"
                 "HOME=$PWD/.home fish --no-config -c \""
                 "source ./script; complete -C 'morvane-cli TYPED'\"\n",
                 '\t'};

class Completions : public ::testing::TestWithParam<const Shell*> {
  protected:
    void SetUp() override {
        if (!has_shell(GetParam()->name)) {
            GTEST_SKIP() << GetParam()->name << " is not installed";
        }
    }
    Words offer(const std::string& typed, const Words& files = {}) const {
        Words words = GetParam()->offer(typed, files);
        for (std::string& word : words) {
            if (word.ends_with('/')) {
                word.pop_back(); // bash adds it by itself
            }
        }
        return words;
    }
    // The commands of `before` are run first, with `project` for PROJECT.
    Words offer_after(std::string before, const std::string& project,
                      const std::string& typed) const {
        for (std::size_t at = 0; (at = before.find("PROJECT", at)) != std::string::npos;) {
            before.replace(at, 7, project);
        }
        return GetParam()->offer(typed, {}, before);
    }
};

TEST_P(Completions, OfferTheCommands) {
    EXPECT_THAT(offer(""), IsSupersetOf({"inspect", "process", "backup", "restore", "compile",
                                         "rename-labels", "assemble", "library", "bgl"}));
    EXPECT_THAT(offer("re"), UnorderedElementsAre("rename-labels", "render", "restore"));
}

TEST_P(Completions, OfferTheCommandsOfAGroup) {
    EXPECT_THAT(offer("bgl "), IsSupersetOf({"analyse", "search", "universal", "revert"}));
    EXPECT_THAT(offer("bgl "), Not(Contains("process")));
    EXPECT_THAT(offer("library c"), ElementsAre("create"));
}

TEST_P(Completions, OfferTheOptionsOfTheCommandAndTheCommonOnes) {
    EXPECT_THAT(offer("--ver"), ElementsAre("--version"));
    const Words options = offer("bgl analyse --");
    EXPECT_THAT(options, IsSupersetOf({"--show-header", "--json", "--program-folder"}));
    EXPECT_THAT(options, Not(Contains("--dry-run")));
    EXPECT_THAT(options, Each(StartsWith("--")));
}

TEST_P(Completions, GoOnBehindTheCommandsArguments) {
    EXPECT_THAT(offer("process hangar --dr"), ElementsAre("--dry-run"));
    EXPECT_THAT(offer("process --output lights --dr"), ElementsAre("--dry-run"));
}

TEST_P(Completions, OfferNoCommandWhereAFileIsMeant) {
    const Words offered = offer("process ");
    EXPECT_THAT(offered, Not(Contains("process")));
    EXPECT_THAT(offered, Not(Contains("analyse")));
}

TEST_P(Completions, OfferTheBasesOfSetsAndTheirRecipes) {
    const Words files{"tower.asm",  "tower_0.asm", "half_0.asm", "frame.asm",
                      "tower.toml", "readme.txt",  "exports/"};
    EXPECT_THAT(offer("inspect ", files), UnorderedElementsAre("tower", "exports"));
    EXPECT_THAT(offer("process t", files), UnorderedElementsAre("tower", "tower.toml"));
    EXPECT_THAT(offer("library describe t", files), ElementsAre("tower"));
    EXPECT_THAT(offer("assemble --complete t", files), ElementsAre("tower"));
}

TEST_P(Completions, OfferWhatIsInTheFolderThatWasTyped) {
    const Words files{"exports/", "exports/tower.asm", "exports/tower_0.asm"};
    EXPECT_THAT(offer("inspect exports/t", files), ElementsAre("exports/tower"));
}

TEST_P(Completions, OfferListsBglFilesAndFolders) {
    const Words files{"list.toml", "objects.bgl", "NORTH.BGL", "notes.txt", "scenery/"};
    EXPECT_THAT(offer("library create ", files), UnorderedElementsAre("list.toml", "scenery"));
    EXPECT_THAT(offer("bgl analyse ", files),
                UnorderedElementsAre("objects.bgl", "NORTH.BGL", "scenery"));
    EXPECT_THAT(offer("bgl search ", files), ElementsAre("scenery"));
    EXPECT_THAT(offer("--program-folder ", files), ElementsAre("scenery"));
}

TEST_P(Completions, OfferProjectsAndTheirSteps) {
    const Words files{"tower.asm", "tower_0.asm", "tower.toml", "notes.txt", "north/"};
    EXPECT_THAT(offer("build ", files), UnorderedElementsAre("tower.toml", "north"));
    EXPECT_THAT(offer("watch ", files), UnorderedElementsAre("tower", "tower.toml", "north"));
    EXPECT_THAT(offer("watch tower --output t", files), ElementsAre("tower"));
    EXPECT_THAT(offer("build --jobs ", files), IsEmpty());
    EXPECT_THAT(offer("build --k", files), ElementsAre("--keep-going"));
    const std::string project =
        "echo '[[set]]' >PROJECT\necho 'base = \"out/terminal\"' >>PROJECT\n";
    EXPECT_THAT(offer_after(project, "morvane.toml", "build t"), ElementsAre("terminal"));
    EXPECT_THAT(offer_after(project, "airport.toml", "build airport.toml t"),
                ElementsAre("terminal"));
}

TEST_P(Completions, OfferWhatCanBeDrawn) {
    const Words files{"tower.asm", "tower_0.asm", "tower.toml", "tower.bgl", "tower.txt"};
    EXPECT_THAT(offer("render t", files), UnorderedElementsAre("tower", "tower.toml", "tower.bgl"));
}

INSTANTIATE_TEST_SUITE_P(Shells, Completions, ::testing::Values(&bash, &zsh, &fish),
                         [](const auto& shell) { return shell.param->name; });

TEST(CompletionsOption, RefusesAnotherShell) {
    const ProgramRun done = run("morvane-cli --completions powershell\n");
    EXPECT_EQ(done.status, 2);
    EXPECT_EQ(done.output, "");
    EXPECT_THAT(done.errors, ::testing::StartsWith("--completions: "));
    EXPECT_THAT(done.errors, ::testing::HasSubstr("powershell"));
}

TEST(CompletionsOption, PrintsTheScriptThatIsInstalled) {
    EXPECT_EQ(run("morvane-cli --completions bash\n").output,
              read_file(source_folder() + "/share/completions/morvane-cli.bash"));
    EXPECT_THAT(run("morvane-cli --help\n").output, ::testing::HasSubstr("--completions SHELL"));
}

} // namespace
} // namespace morvane::test
