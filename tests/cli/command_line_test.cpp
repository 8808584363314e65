// SPDX-License-Identifier: GPL-3.0-or-later

// What every command has in common: help, short options, answers, and how failures are shown.

#include "base/errors.h"
#include "cli/failure.h"
#include "cli/program_run.h"
#include "cli/topics.h"
#include "support/source_folder.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <new>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace morvane::test {
namespace {

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
using Json = nlohmann::json;

class CommandLine : public testing::Test {
  protected:
    ProgramRun run(const std::string& commands) { return run_commands(folder.path(), commands); }
    void take(const std::string& example) {
        copy_into(source_folder() + "/examples/" + example, folder.path());
    }

    TempFolder folder;
};

// The commands that have no commands of their own, as they are typed.
void add_commands(const TempFolder& folder, const std::string& path,
                  std::vector<std::string>& commands) {
    std::istringstream lines(run_commands(folder.path(), "morvane-cli" + path + " --help").output);
    bool listed = false;
    const std::size_t before = commands.size();
    for (std::string line; std::getline(lines, line);) {
        if (listed && line.starts_with("  ") && line[2] != ' ') {
            add_commands(folder, path + " " + line.substr(2, line.find(' ', 2) - 2), commands);
        }
        listed = (listed && !line.empty()) || line == "Subcommands:";
    }
    if (commands.size() == before) {
        commands.push_back(path);
    }
}

TEST_F(CommandLine, TheVersionIsANumber) {
    EXPECT_EQ(run("morvane-cli --version").output, "morvane-cli 0.20\n");
    EXPECT_EQ(run("morvane-cli -V").output, "morvane-cli 0.20\n");
}

TEST_F(CommandLine, TheHelpOfEveryCommandListsTheCommonOptionsAndEndsWithAnExample) {
    std::vector<std::string> commands;
    add_commands(folder, "", commands);
    EXPECT_GE(commands.size(), 14U);
    for (const std::string& command : commands) {
        const std::string help = run("morvane-cli" + command + " --help").output;
        EXPECT_THAT(help, HasSubstr("\nCommon options:\n  --program-folder DIR"));
        EXPECT_THAT(help, AllOf(HasSubstr("  -y,--yes"), HasSubstr("  -q,--quiet")));
        const std::string last = help.substr(help.rfind('\n', help.size() - 2) + 1);
        EXPECT_THAT(last, StartsWith("  morvane-cli" + command + " ")) << help;
    }
}

// Options that take a value and are not required say what holds without them.
TEST_F(CommandLine, HelpNamesTheDefaults) {
    const std::vector<std::pair<std::string, std::string>> defaults{
        {"process", "default: the set's own"},
        {"process", "each set takes BASE.toml"},
        {"compile", "default: MORVANE_COMPILER, else bglc in the set's folder, else on the PATH"},
        {"build", "morvane.toml if none is given"},
        {"build", "default: one for each processor"},
        {"watch", "BASE.toml if none is given"},
        {"render", "3d (the default)"},
        {"render", "default 800x600"},
        {"check", "default: $MORVANE_HOME"}};
    for (const auto& [command, text] : defaults) {
        EXPECT_THAT(run("morvane-cli " + command + " --help").output, HasSubstr(text)) << command;
    }
    EXPECT_THAT(run("morvane-cli build --jobs 0").errors, HasSubstr("--jobs"));
}

TEST_F(CommandLine, HelpOfACommandIsThatCommandsHelp) {
    for (const std::string command : {"", "process", "library", "library create"}) {
        const ProgramRun help = run("morvane-cli help " + command);
        EXPECT_EQ(help.status, 0);
        EXPECT_EQ(help.output, run("morvane-cli " + command + " --help").output);
        EXPECT_THAT(help.output, Not(HasSubstr("Usage: morvane-cli help")));
    }
    const ProgramRun none = run("morvane-cli help proces");
    EXPECT_EQ(none.status, 2);
    EXPECT_THAT(none.errors, HasSubstr("did you mean \"process\"?"));
    const ProgramRun below = run("morvane-cli help library creat");
    EXPECT_EQ(below.status, 2);
    EXPECT_THAT(below.errors, HasSubstr("\"creat\" (did you mean \"create\"?)"));
}

TEST_F(CommandLine, HelpOfATopicIsAChapterOfTheGuideOrAPage) {
    const ProgramRun chapter = run("morvane-cli help library objects");
    EXPECT_EQ(chapter.status, 0);
    EXPECT_THAT(chapter.output, StartsWith("## Library objects\n"));
    EXPECT_THAT(chapter.output, Not(HasSubstr("\n## "))) << "more than one chapter";
    EXPECT_EQ(run("morvane-cli help objects").output, chapter.output);
    EXPECT_THAT(run("morvane-cli help recipes").output, StartsWith("# Recipes\n"));
    // `backup` is a command: the page of that name needs its ending.
    EXPECT_THAT(run("morvane-cli help backup").output, HasSubstr("Usage: morvane-cli backup"));
    EXPECT_THAT(run("morvane-cli help backup.md").output, StartsWith("# "));
    const ProgramRun unknown = run("morvane-cli help glosary");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_THAT(unknown.errors, HasSubstr("did you mean \"glossary\"?"));
}

// Every page and every chapter can be reached by the name that is listed for it.
TEST_F(CommandLine, HelpListsItsTopics) {
    const ProgramRun topics = run("morvane-cli help topics");
    EXPECT_EQ(topics.status, 0);
    std::istringstream lines(topics.output);
    std::size_t count = 0;
    for (std::string name, title; lines >> name && std::getline(lines >> std::ws, title); ++count) {
        const ProgramRun topic = run("morvane-cli help " + name);
        EXPECT_EQ(topic.status, 0) << name;
        const std::string first = topic.output.substr(0, topic.output.find('\n'));
        EXPECT_THAT(first, EndsWith("# " + title)) << name;
    }
    std::size_t pages = 0;
    for (const auto& entry : std::filesystem::directory_iterator(source_folder() + "/docs")) {
        pages += entry.path().extension() == ".md" ? 1 : 0;
    }
    EXPECT_GT(count, pages + 5) << "chapters of the guide besides the pages";
}

TEST(TerminalText, ShowsWhatLinksPicturesAndCodeSay) {
    EXPECT_EQ(cli::terminal_text("See [recipes](recipes.md) [1] and [limits](#limits).\n"),
              "See recipes [1] and limits.\n");
    EXPECT_EQ(cli::terminal_text("![A runway](images/a.png)\n"), "[Picture: A runway]\n");
    EXPECT_EQ(
        cli::terminal_text("<picture>\n  <img alt=\"The window\" src=\"a.png\">\n</picture>\n"),
        "[Picture: The window]\n");
    EXPECT_EQ(cli::terminal_text("```toml\n[a](b)\n\n```\n    [c](d)\n"),
              "    [a](b)\n\n    [c](d)\n");
    EXPECT_EQ(cli::terminal_text("[half](link\n"), "[half](link\n");
}

TEST(HelpTopics, AreTakenFromTheFirstFolderThatHasAGuide) {
    const TempFolder folder;
    folder.write("b/guide.md", "# Guide\n\n## An export\none\n## Lights\ntwo\n");
    folder.write("b/zebra.md", "no title\n");
    folder.write("c/guide.md", "## Other\n");
    const auto disk = make_system_disk();
    const auto topics =
        cli::help_topics(*disk, {folder.file("a"), folder.file("b"), folder.file("c")});
    ASSERT_EQ(topics.size(), 3U);
    EXPECT_EQ(topics[0].name, "an-export");
    EXPECT_EQ(topics[0].text, "## An export\none\n");
    EXPECT_EQ(topics[2].title, "zebra");
    EXPECT_EQ(cli::find_topic(topics, "export"), &topics[0]);
    EXPECT_EQ(cli::find_topic(topics, "zebra.md"), &topics[2]);
    EXPECT_EQ(cli::find_topic(topics, "e"), nullptr) << "more than one has an e";
    EXPECT_TRUE(cli::help_topics(*disk, {folder.file("a")}).empty());
}

TEST_F(CommandLine, AMistypedOptionGetsTheNearestOne) {
    const ProgramRun own = run("morvane-cli process a b --dryrun");
    EXPECT_EQ(own.status, 2);
    EXPECT_THAT(own.errors,
                StartsWith("There is no option \"--dryrun\" (did you mean \"--dry-run\"?)\n"));
    EXPECT_THAT(run("morvane-cli inspect --jsno a").errors, HasSubstr("did you mean \"--json\"?"));
    EXPECT_THAT(run("morvane-cli library create a --outputt=b").errors,
                HasSubstr("\"--outputt\" (did you mean \"--output\"?)"));
}

TEST_F(CommandLine, AQuestionThatNobodyCanAnswerSaysHowToAnswerIt) {
    folder.write("a.asm", "; a label BGLCODE\r\n");
    const ProgramRun asked = run("morvane-cli rename-labels a.asm X");
    EXPECT_EQ(asked.status, 1);
    EXPECT_THAT(asked.errors, HasSubstr("\nNote: nobody is there to answer, so the answer is No; "
                                        "--yes answers Yes.\n"));
    EXPECT_THAT(run("morvane-cli -n rename-labels a.asm X").errors, Not(HasSubstr("nobody")));
}

TEST_F(CommandLine, ShortOptionsAnswer) {
    folder.write("a.asm", "a label BGLCODE\r\n");
    EXPECT_EQ(run("morvane-cli rename-labels a.asm X -n").status, 1);
    EXPECT_EQ(folder.read("a.asm"), "a label BGLCODE\r\n");
    EXPECT_EQ(run("morvane-cli rename-labels a.asm X -y").status, 0);
    EXPECT_THAT(folder.read("a.asm"), StartsWith("aX label BGLCODE\r\n"));
}

TEST_F(CommandLine, QuietOmitsTheLogAlone) {
    folder.write("a.asm", "a label BGLCODE\r\n");
    for (const std::string quiet : {"-q", "--quiet"}) {
        const ProgramRun done = run("morvane-cli -y rename-labels a.asm X " + quiet);
        EXPECT_EQ(done.status, 0);
        EXPECT_EQ(done.output, "");
        EXPECT_THAT(done.errors, HasSubstr("[question] "));
    }
    EXPECT_NE(run("morvane-cli -y rename-labels a.asm X").output, "");
}

TEST_F(CommandLine, ADashIsRefusedAsAFileName) {
    for (const std::string command : {"inspect -",
                                      "process -",
                                      "process a -",
                                      "process a b.toml --output -",
                                      "backup a -",
                                      "restore -",
                                      "compile -",
                                      "check -",
                                      "check a -",
                                      "render - --output a.png",
                                      "render a --output -",
                                      "build -",
                                      "watch -",
                                      "watch a --output -",
                                      "rename-labels - X",
                                      "assemble --complete -",
                                      "library describe -",
                                      "library create - --output a.asm",
                                      "library create a.toml --output -",
                                      "bgl analyse -",
                                      "bgl search -",
                                      "bgl universal -",
                                      "bgl revert -"}) {
        const ProgramRun refused = run("morvane-cli " + command);
        EXPECT_EQ(refused.status, 2) << command;
        EXPECT_THAT(refused.errors, HasSubstr("\"-\" is not a file name here")) << command;
        EXPECT_THAT(refused.errors, HasSubstr("./-")) << command;
    }
}

TEST_F(CommandLine, AFailureIsADocumentToo) {
    const ProgramRun refused = run("morvane-cli --json inspect nothing");
    EXPECT_EQ(refused.status, 1);
    const Json json = Json::parse(refused.output);
    EXPECT_EQ(json.at("error").at("status"), 1);
    EXPECT_THAT(std::string(json.at("error").at("text")), Not(testing::IsEmpty()));
    EXPECT_THAT(refused.errors, HasSubstr(std::string(json.at("error").at("text"))));
    EXPECT_TRUE(json.at("error").at("problems").is_array());
    EXPECT_TRUE(json.at("messages").is_array());
}

TEST_F(CommandLine, TheDocumentOfAWrongListHasItsProblems) {
    folder.write("list.toml", "[[object]]\ndesign = \"nowhere\"\nguid = \"1,2,3,4\"\n");
    const ProgramRun refused = run("morvane-cli library create list.toml --output a.asm --json");
    EXPECT_EQ(refused.status, 2);
    const Json error = Json::parse(refused.output).at("error");
    EXPECT_EQ(error.at("status"), 2);
    const Json& problem = error.at("problems").at(0);
    EXPECT_EQ(problem.at("path"), "list.toml");
    EXPECT_EQ(problem.at("line"), 2);
    EXPECT_EQ(problem.at("severity"), "error");
    EXPECT_EQ(problem.at("row"), nullptr);
    EXPECT_TRUE(problem.contains("code"));
    EXPECT_EQ(problem.at("text"), "\"design\" names no design: there is no file nowhere.asm");
}

TEST_F(CommandLine, AWrongCommandLineIsADocumentToo) {
    const ProgramRun refused = run("morvane-cli --json process");
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(Json::parse(refused.output).at("error").at("status"), 2);
}

TEST_F(CommandLine, MessagesWithPathsAreReadableInADocument) {
    const Json json = Json::parse(run("morvane-cli --json inspect h\xC3\xBCtte").output);
    EXPECT_THAT(json.at("error").dump(), Not(HasSubstr("\xC3\x83")));
}

TEST_F(CommandLine, ProcessNeedsNoProgramFolder) {
    take("airport");
    const std::string gone = folder.file("gone");
    for (const std::string options : {"--dry-run", ""}) {
        const ProgramRun done = run("MORVANE_HOME='" + gone + "' HOME='" + gone +
                                    "' morvane-cli process airport airport.toml " + options);
        EXPECT_EQ(done.status, 0) << done.errors;
        EXPECT_FALSE(files_below(folder.path()).contains("gone/fx_list.txt"));
    }
}

// Not even a folder that nobody can make.
TEST_F(CommandLine, AProgramFolderThatCannotBeMadeIsNoMatterToProcess) {
    take("airport");
    const std::string before = folder.read("airport_0.asm");
    const std::string nowhere = "MORVANE_HOME=/dev/null/home HOME=/dev/null/home ";
    const ProgramRun dry =
        run(nowhere + "morvane-cli process airport airport.toml --dry-run --json");
    EXPECT_EQ(dry.status, 0) << dry.errors;
    EXPECT_EQ(folder.read("airport_0.asm"), before);
    const ProgramRun done = run(nowhere + "morvane-cli process airport airport.toml");
    EXPECT_EQ(done.status, 0) << done.errors;
    EXPECT_NE(folder.read("airport_0.asm"), before);
}

TEST_F(CommandLine, RenameLabelsNotesSuffixesThatMakeNoNames) {
    const std::string source = "first label BGLCODE\r\n";
    folder.write("a.asm", source);
    const ProgramRun empty = run("morvane-cli --yes rename-labels a.asm ''");
    EXPECT_THAT(empty.output + empty.errors, HasSubstr("Note: a.asm: the suffix is empty"));
    EXPECT_THAT(folder.read("a.asm"), StartsWith(source)) << "no label changes";
    const ProgramRun dash = run("morvane-cli --yes rename-labels a.asm .x");
    EXPECT_THAT(dash.output + dash.errors, HasSubstr("are not names"));
}

std::string message_of(const std::function<int()>& command) {
    std::string message;
    const int status = cli::run_guarded(command, [&](const std::string& text) {
        EXPECT_EQ(message, "") << "more than one message";
        message = text;
        return 1;
    });
    EXPECT_EQ(status, 1);
    return message;
}

TEST(UnexpectedErrors, EndACommandWithOneMessage) {
    EXPECT_EQ(message_of([]() -> int { throw std::bad_alloc(); }), "7 : Out of memory");
    EXPECT_EQ(message_of([]() -> int { throw std::length_error("too long"); }),
              "Unexpected error: too long");
    EXPECT_EQ(message_of([]() -> int { throw 5; }), "Unexpected error.");
    EXPECT_THAT(message_of([]() -> int { throw RuntimeError(ErrorNumber::DiskFull, "a.asm"); }),
                HasSubstr("Disk full"));
}

TEST_F(CommandLine, AnEmptyOutputIsAUsageError) {
    take("airport");
    folder.write("list.toml", "object = []\n");
    const auto before = files_below(folder.path());
    for (const std::string command : {"process airport airport.toml", "library create list.toml"}) {
        const ProgramRun refused = run("morvane-cli " + command + " --output ''");
        EXPECT_EQ(refused.status, 2) << command;
        EXPECT_THAT(refused.errors, HasSubstr("--output: an empty name")) << command;
    }
    EXPECT_TRUE(files_below(folder.path()) == before);
}

TEST_F(CommandLine, ABaseWithAnEndingIsAUsageErrorAsAnOutput) {
    take("airport");
    const auto before = files_below(folder.path());
    const ProgramRun refused = run("morvane-cli process airport airport.toml --output x.asm");
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr("--output: x.asm ends in .asm"));
    EXPECT_TRUE(files_below(folder.path()) == before);
}

TEST_F(CommandLine, ALibraryNeverOverwritesItsListOrADesign) {
    take("library");
    folder.write("list.toml", "[[object]]\ndesign = \"hangar\"\nguid = \"1,2,3,4\"\n");
    const auto before = files_below(folder.path());
    for (const std::string output : {"list.toml", "./list.toml", "hangar.asm", "hangar_0.asm"}) {
        const ProgramRun refused = run("morvane-cli library create list.toml --output " + output);
        EXPECT_EQ(refused.status, 2) << output;
        EXPECT_THAT(refused.errors, HasSubstr("would overwrite ")) << output;
    }
    EXPECT_EQ(run("ln list.toml link.toml; morvane-cli library create list.toml --output link.toml")
                  .status,
              2);
    EXPECT_EQ(folder.read("list.toml"), before.at("list.toml"));
    EXPECT_EQ(folder.read("hangar_0.asm"), before.at("hangar_0.asm"));
}

TEST_F(CommandLine, AnEmptyLibraryHasNoObjects) {
    folder.write("list.toml", "object = []\n");
    const ProgramRun done = run("morvane-cli library create list.toml --output lib.asm");
    EXPECT_EQ(done.status, 0) << done.errors;
    EXPECT_THAT(folder.read("lib.asm"),
                AllOf(HasSubstr("LIBRARY_DATA label word\r\n    dd  0,6,8\r\n    dd  (offset "
                                "LIBRARY_DATA)\r\n    dd 0,0,0,0\r\n"),
                      HasSubstr("    dd  00h\r\n    dd  00h\r\n    dd  00h\r\n    dd  00h\r\n")));
}

TEST_F(CommandLine, AShadowWithoutItsFlagIsNoted) {
    take("aircraft-flex");
    const ProgramRun done =
        run("morvane-cli assemble --complete complete --flexing-wings --fuselage fuselage "
            "--wings-high wings_high --wings-low wings_low --shadow shadow");
    EXPECT_EQ(done.status, 0);
    EXPECT_THAT(done.errors, HasSubstr("Note: --shadow is given without --shadow-optimization"));
    EXPECT_THAT(run("morvane-cli assemble --complete complete --shadow shadow").errors,
                HasSubstr("Note: --shadow is given without --shadow-optimization"));
}

} // namespace
} // namespace morvane::test
