// SPDX-License-Identifier: GPL-3.0-or-later

// What the keys for shared recipes change in whole commands.

#include "cli/program_run.h"
#include "support/source_folder.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace morvane::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> closing_labels(const std::string& text) {
    std::vector<std::string> labels;
    for (const std::string& line : lines_of(text)) {
        const std::size_t end = line.find("  label BGLCODE");
        const std::size_t number = line.find_first_of("0123456789");
        if (line.starts_with("SKIP_") && end != std::string::npos &&
            (number > end || end - number < 3)) {
            labels.push_back(line.substr(0, end));
        }
    }
    return labels;
}

class SharedRecipes : public testing::Test {
  protected:
    void SetUp() override { copy_into(source_folder() + "/examples/airport", folder_.path()); }

    ProgramRun process(const std::string& recipe, const std::string& options = "") {
        folder_.write("r.toml", recipe);
        return run_commands(folder_.path(), "morvane-cli process airport r.toml " + options);
    }

    TempFolder folder_;
};

// Materials 1 and 2 become effects, 9 and 12 library calls.
const std::string four = "[[assign]]\nmaterial = [1, 2]\nkind = \"Effects\"\n"
                         "lstEffectType = \"fx_a\"\n"
                         "[[assign]]\nmaterial = [9, 12]\nkind = \"Library\"\n";

TEST_F(SharedRecipes, UniqueLabelsChangeTheRepeatedLabelsOnly) {
    ASSERT_EQ(process(four, "--output plain").status, 0);
    ASSERT_EQ(process("unique_labels = true\n" + four, "--output unique").status, 0);
    const std::string plain = folder_.read("plain_0.asm");
    const std::string unique = folder_.read("unique_0.asm");
    EXPECT_THAT(closing_labels(plain), ElementsAre("SKIP_FX", "SKIP_FX", "SKIP_LIB", "SKIP_LIB"));
    EXPECT_THAT(closing_labels(unique),
                ElementsAre("SKIP_FX", "SKIP_FX2", "SKIP_LIB", "SKIP_LIB12"));
    const std::vector<std::string> a = lines_of(plain);
    const std::vector<std::string> b = lines_of(unique);
    ASSERT_EQ(a.size(), b.size());
    std::size_t different = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        different += a[i] == b[i] ? 0 : 1;
    }
    EXPECT_EQ(different, 2U);
}

TEST_F(SharedRecipes, MacrosSurviveAnExportARestoreAndAProcess) {
    const std::string frame = folder_.read("airport.asm");
    const std::string model = folder_.read("airport_0.asm");
    const std::string recipe = "macros = \"sdk/ours.inc\"\n" + four;
    ASSERT_EQ(run_commands(folder_.path(), "morvane-cli backup airport").status, 0);
    ASSERT_EQ(process(recipe).status, 0);
    const std::string included = folder_.read("airport.asm");
    EXPECT_NE(included, frame);
    EXPECT_THAT(included, HasSubstr("    include ours.inc\r\n"));

    ASSERT_EQ(run_commands(folder_.path(), "morvane-cli restore --yes airport").status, 0);
    ASSERT_EQ(process(recipe).status, 0);
    EXPECT_THAT(folder_.read("airport.asm"), StartsWith(included));

    folder_.write("airport.asm", frame); // exported again
    folder_.write("airport_0.asm", model);
    ASSERT_EQ(process(recipe).status, 0);
    EXPECT_EQ(folder_.read("airport.asm"), included);
}

TEST_F(SharedRecipes, ADryRunShowsTheMacrosInItsDiff) {
    const ProgramRun run = process("macros = \"ours.inc\"\n" + four, "--dry-run");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, HasSubstr("+    include ours.inc"));
}

TEST_F(SharedRecipes, OptionalAssignmentsThatMatchNothingSaveNothing) {
    const auto before = files_below(folder_.path());
    const ProgramRun run =
        process("[[assign]]\noptional = true\ncolor = \"010203\"\nkind = \"Lights\"\n");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("Note: no assignment matches a material"));
    EXPECT_EQ(folder_.read("airport_0.asm"), before.at("airport_0.asm"));
}

TEST_F(SharedRecipes, AnAssignmentThatMatchesNothingNamesTheNearestColors) {
    const ProgramRun run = process("[[assign]]\ncolor = \"40403F\"\nkind = \"Lights\"\n");
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_THAT(run.errors, HasSubstr("Note: r.toml:1: the nearest colours that are left: 3F3F3F "
                                      "(Yellow, material 11)"));
    EXPECT_THAT(run.errors, HasSubstr("the list shows 3F3F3F for what gmax shows as 40403F, "
                                      "because it cuts off where gmax rounds"));
}

TEST_F(SharedRecipes, AnIncludedRecipeMakesWhatItsCopyMakes) {
    folder_.write("shared/four.toml", four);
    ASSERT_EQ(process(four, "--output plain").status, 0);
    ASSERT_EQ(process("include = 'shared\\four.toml'\n", "--output included").status, 0);
    EXPECT_EQ(folder_.read("included_0.asm"), folder_.read("plain_0.asm"));
}

} // namespace
} // namespace morvane::test
