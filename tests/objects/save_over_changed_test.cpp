// SPDX-License-Identifier: GPL-3.0-or-later

// Two programs on one set: what another one wrote between Open and Save is not written over
// without asking.

#include "objects/save.h"
#include "set_fixture.h"
#include "support/links.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace morvane::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SaveOverChangedTest : public SetTest {
  protected:
    void open_and_process(bool with_dictionary = false) {
        std::vector<std::string> frame = default_frame();
        frame.emplace_back("    dd  0");
        open(make_model({MadeMaterial()}), frame);
        parameters.lights.AircraftFlag = with_dictionary;
        process(1, Kind::Lights);
        reporter.boxes.clear();
    }
    std::string asked_about(const std::string& paths) const {
        return "Another program has changed this since it was opened:\n" + paths +
               "Write over it all the same?";
    }
    std::vector<std::string> questions() const {
        std::vector<std::string> texts;
        for (const RecordingReporter::Question& question : reporter.questions) {
            texts.push_back(question.text);
        }
        return texts;
    }

    std::string model_path = base + "_0.asm";
    std::string frame_path = base + ".asm";
};

TEST_F(SaveOverChangedTest, AnUnchangedSetIsSavedWithoutAQuestion) {
    open_and_process(true);
    EXPECT_TRUE(save_set(services, set, base).saved);
    EXPECT_THAT(questions(), IsEmpty());
}

TEST_F(SaveOverChangedTest, NoLeavesTheOtherProgramsWork) {
    open_and_process();
    folder.write("set_0.asm", "exported again");
    reporter.answer = false;
    EXPECT_FALSE(save_set(services, set, base).saved);
    EXPECT_THAT(questions(), ElementsAre(asked_about(model_path + "\n")));
    EXPECT_EQ(reporter.questions.front().icon, Icon::Exclamation);
    EXPECT_EQ(folder.read("set_0.asm"), "exported again");
    EXPECT_THAT(reporter.boxes, IsEmpty());
    EXPECT_FALSE(set.saved);
    EXPECT_THAT(folder.names(), ElementsAre("set.asm", "set_0.asm"));
}

TEST_F(SaveOverChangedTest, YesWritesOverIt) {
    open_and_process();
    folder.write("set_0.asm", "exported again");
    EXPECT_TRUE(save_set(services, set, base).saved);
    EXPECT_THAT(folder.read("set_0.asm"), ::testing::HasSubstr("BGL_LIGHT"));
}

TEST_F(SaveOverChangedTest, BothFilesAreOneQuestion) {
    open_and_process(true);
    folder.write("set_0.asm", "exported");
    folder.write("set.asm", "again");
    reporter.answer = false;
    EXPECT_FALSE(save_set(services, set, base).saved);
    EXPECT_THAT(questions(), ElementsAre(asked_about(model_path + "\n" + frame_path + "\n")));
    EXPECT_EQ(folder.read("set_0.asm"), "exported");
    EXPECT_EQ(folder.read("set.asm"), "again");
}

TEST_F(SaveOverChangedTest, AFrameThatIsNotWrittenMayChange) {
    open_and_process(false);
    folder.write("set.asm", "another placement");
    EXPECT_TRUE(save_set(services, set, base).saved);
    EXPECT_THAT(questions(), IsEmpty());
    EXPECT_EQ(folder.read("set.asm"), "another placement");
}

TEST_F(SaveOverChangedTest, AnotherBaseIsNotAskedAbout) {
    open_and_process();
    folder.write("set_0.asm", "exported again");
    folder.write("other_0.asm", "yesterday's result");
    EXPECT_TRUE(save_set(services, set, folder.file("other")).saved);
    EXPECT_THAT(questions(), IsEmpty());
    EXPECT_EQ(folder.read("set_0.asm"), "exported again");
}

TEST_F(SaveOverChangedTest, AnotherNameOfTheSameFilesIsAskedAbout) {
    if (!test::has_symbolic_links) {
        GTEST_SKIP() << "no symbolic links here";
    }
    open_and_process();
    std::filesystem::create_symlink("set_0.asm", folder.file("link_0.asm"));
    folder.write("set_0.asm", "exported again");
    reporter.answer = false;
    EXPECT_FALSE(save_set(services, set, folder.file("link")).saved);
    EXPECT_THAT(questions(), ElementsAre(asked_about(folder.file("link_0.asm") + "\n")));
    EXPECT_EQ(folder.read("set_0.asm"), "exported again");
}

TEST_F(SaveOverChangedTest, AfterNoTheSetCanStillBeSavedElsewhere) {
    open_and_process();
    folder.write("set_0.asm", "exported again");
    reporter.answer = false;
    EXPECT_FALSE(save_set(services, set, base).saved);
    EXPECT_TRUE(save_set(services, set, folder.file("other")).saved);
    EXPECT_THAT(folder.read("other_0.asm"), ::testing::HasSubstr("BGL_LIGHT"));
}

} // namespace
} // namespace morvane::test
