// SPDX-License-Identifier: GPL-3.0-or-later

// What --json prints is what the same command prints without.

#include "cli/program_run.h"
#include "support/source_folder.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

namespace morvane::test {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using Json = nlohmann::json;

class JsonOutput : public testing::Test {
  protected:
    void take(const std::string& example) {
        copy_into(source_folder() + "/examples/" + example, folder.path());
    }
    ProgramRun run(const std::string& command) { return run_commands(folder.path(), command); }
    Json document(const std::string& command) {
        const ProgramRun done = run(command);
        EXPECT_EQ(done.status, 0) << done.errors;
        return Json::parse(done.output);
    }

    TempFolder folder;
};

TEST_F(JsonOutput, OfADryRunHoldsTheDiff) {
    take("airport");
    const std::string plain = run("morvane-cli process airport airport.toml --dry-run").output;
    const Json json = document("morvane-cli --json process airport airport.toml --dry-run");
    const std::string diff = json.at("diff");
    EXPECT_TRUE(diff.starts_with("--- airport_0.asm\n+++ airport_0.asm\n@@ -"));
    EXPECT_THAT(plain, EndsWith(diff));
    EXPECT_EQ(json.at("saved"), Json::array());
}

TEST_F(JsonOutput, OfAnAssemblyNamesTheResult) {
    take("aircraft-flex");
    const Json json = document("morvane-cli --json assemble --complete complete --flexing-wings "
                               "--fuselage fuselage --wings-high wings_high --wings-low wings_low "
                               "--shadow shadow");
    EXPECT_EQ(json.at("output"), "complete.asm");
    EXPECT_TRUE(json.at("messages").is_array());
}

TEST_F(JsonOutput, OfACompilationHoldsWhatTheCompilerSaid) {
    folder.write("airport.asm", "");
    folder.write("bglc", "#!/bin/sh\necho \"$1 $2\"\nprintf 'caf\\351'\n");
    const Json json = document("chmod +x bglc; morvane-cli --json compile ./airport");
    EXPECT_EQ(json.at("output"), "/bgl ./airport.asm\ncaf\xC3\xA9");
}

TEST_F(JsonOutput, OfAFailedCompilationHoldsWhatTheCompilerSaid) {
    folder.write("airport.asm", "");
    folder.write("bglc", "#!/bin/sh\necho 'airport.asm(7): error A2008'; exit 3\n");
    const ProgramRun run_there = run("chmod +x bglc; morvane-cli --json compile airport");
    EXPECT_EQ(run_there.status, 1);
    const Json json = Json::parse(run_there.output);
    EXPECT_EQ(json.at("output"), "airport.asm(7): error A2008\n");
    EXPECT_EQ(json.at("error").at("status"), 1);
    EXPECT_EQ(json.at("error").at("text"), "The compiler reported a failure (exit status 3).");
    EXPECT_EQ(json.at("error").at("problems"), Json::array());
    EXPECT_EQ(json.at("messages"), Json::array());
}

TEST_F(JsonOutput, OfAnAircraftsCompilationHoldsTheSwitchAndTheNote) {
    folder.write("plane.asm", "visual_model_header label dword\r\n");
    const std::string make = "printf '#!/bin/sh\\necho $*' >masm; chmod +x masm; ";
    const Json json = document(make + "morvane-cli --json compile --compiler './masm -q' plane");
    EXPECT_EQ(json.at("output"), "-q /bgl plane.asm\n");
    EXPECT_THAT(std::string(json.at("messages").at(0)),
                HasSubstr("plane.asm:1: this is the frame"));
    const Json aircraft =
        document("MORVANE_COMPILER=./masm morvane-cli --json compile --mdl plane");
    EXPECT_EQ(aircraft.at("output"), "/mdl plane.asm\n");
    EXPECT_EQ(aircraft.at("messages"), Json::array());
    EXPECT_EQ(run("morvane-cli compile --compiler \"masm 'x\" plane").status, 2);
}

TEST_F(JsonOutput, TakesANameThatIsNotUtf8ForWindows1252) {
    take("airport");
    const Json json = document("name=$(printf 'h\\374tte'); cp airport.asm \"$name.asm\"; "
                               "cp airport_0.asm \"${name}_0.asm\"; "
                               "morvane-cli --json process \"$name\" airport.toml");
    EXPECT_EQ(json.at("saved").at(0), "h\xC3\xBCtte_0.asm");
}

class Refusals : public JsonOutput {};

TEST_F(Refusals, AnOptimizedShadowNeedsAShadowModel) {
    take("aircraft-flex");
    const auto before = files_below(folder.path());
    const ProgramRun done = run("morvane-cli assemble --complete complete --shadow-optimization");
    EXPECT_EQ(done.status, 2);
    EXPECT_THAT(done.errors, HasSubstr("--shadow BASE is missing"));
    EXPECT_TRUE(files_below(folder.path()) == before);
}

TEST_F(Refusals, AWrongListGetsNoIdentifiers) {
    const std::string list = "[[object]]\ndesign = \"nowhere\"\n";
    folder.write("list.toml", list);
    const ProgramRun done = run("morvane-cli library create list.toml --generate-guids");
    EXPECT_EQ(done.status, 2);
    EXPECT_THAT(done.errors, HasSubstr("list.toml:2:10: \"design\" names no design"));
    EXPECT_EQ(folder.read("list.toml"), list);
}

TEST_F(Refusals, IdentifiersStayWhenTheSourceCannotBeWritten) {
    take("library");
    folder.write("list.toml", "[[object]]\ndesign = \"hangar\"\n");
    const ProgramRun done =
        run("morvane-cli library create list.toml --generate-guids --output missing/out.asm");
    EXPECT_EQ(done.status, 1);
    EXPECT_THAT(done.errors,
                HasSubstr("Note: the identifiers in list.toml stay as they are now.\n"));
    EXPECT_THAT(folder.read("list.toml"), HasSubstr("\nguid "));
}

#if !defined(__SANITIZE_ADDRESS__) // which needs far more of it
TEST_F(Refusals, TooLittleMemoryIsTold) {
    take("airport");
    // The model's file has a size that no memory holds, and takes no room on the disk.
    const ProgramRun done =
        run("truncate -s 3G airport_0.asm && ulimit -v 1500000 && morvane-cli inspect airport");
    EXPECT_EQ(done.status, 1);
    EXPECT_THAT(done.errors, HasSubstr("7 :Out of memory"));
}
#endif

} // namespace
} // namespace morvane::test
