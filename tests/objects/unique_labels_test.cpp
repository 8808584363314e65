// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/process.h"
#include "objects/save.h"
#include "set_fixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace morvane::test {
namespace {

using ::testing::ElementsAre;

class UniqueLabels : public SetTest {
  protected:
    void SetUp() override { open(make_model(std::vector<MadeMaterial>(4))); }

    // The saved lines that are labels without the number of a triangle's line.
    std::vector<std::string> closing_labels(const std::vector<std::pair<std::size_t, Kind>>& steps,
                                            bool unique) {
        for (const auto& [row, kind] : steps) {
            EXPECT_TRUE(process(row, kind).processed);
            if (unique) {
                number_repeated_label(set, row);
            }
        }
        std::vector<std::string> labels;
        for (const Replacement* replacement : ordered_replacements(set)) {
            labels.push_back(replacement->code.back());
        }
        return labels;
    }
};

TEST_F(UniqueLabels, TheSecondAndFurtherLabelsGetTheRowsNumber) {
    EXPECT_THAT(
        closing_labels(
            {{2, Kind::Effects}, {1, Kind::Library}, {4, Kind::Effects}, {3, Kind::Library}}, true),
        ElementsAre("SKIP_FX  label BGLCODE", "SKIP_LIB  label BGLCODE", "SKIP_FX4  label BGLCODE",
                    "SKIP_LIB3  label BGLCODE"));
}

TEST_F(UniqueLabels, WithoutThemEveryMaterialEndsWithTheSameLabel) {
    EXPECT_THAT(closing_labels({{2, Kind::Effects}, {4, Kind::Effects}}, false),
                ElementsAre("SKIP_FX  label BGLCODE", "SKIP_FX  label BGLCODE"));
}

TEST_F(UniqueLabels, OtherKindsAreLeftAlone) {
    const std::vector<std::string> labels =
        closing_labels({{1, Kind::Lights}, {2, Kind::Lights}, {3, Kind::LibraryNew}}, true);
    EXPECT_THAT(labels,
                ElementsAre("LBL1a label BGLCODE", "LBL2a label BGLCODE", "    BGL_TRANSFORM_END"));
}

} // namespace
} // namespace morvane::test
