// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "base/paths.h"
#include "bgl/inspector.h"
#include "bgl/universal.h"
#include "bgl_files.h"
#include "support/faulty_disk.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"
#include "system/recording_programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace morvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using Box = test::RecordingReporter::Box;

class Universal : public ::testing::Test {
  protected:
    bool universal(const std::string& path) {
        return make_universal({disk, reporter}, path, home.path());
    }
    bool put_back(const std::string& path) { return revert({disk, reporter}, path); }

    test::TempFolder folder;
    test::TempFolder home;
    test::RecordingReporter reporter;
    test::RecordingPrograms programs;
    test::FaultyDisk disk;
    const std::string original = test::library_file({.header = {.FL_world_set = 4,
                                                                .FL_north_bounds = 5,
                                                                .FL_south_bounds = 6,
                                                                .FL_east_bounds = 7,
                                                                .FL_west_bounds = 8,
                                                                .FL_vor_ptr = 9},
                                                     .objects = {{.name = "Tower"}}});
    // Kind, then north, south, east and west bounds, lowest bytes first.
    const std::string widened = std::string("\x01\x00"
                                            "\x00\x00\xA0\x00"
                                            "\x00\x00\x60\xFF"
                                            "\x00\x00\x00\x00"
                                            "\xFF\xFF\xFF\xFF",
                                            18) +
                                original.substr(18);
};

TEST_F(Universal, WidensTheBoundsAndKeepsACopy) {
    const std::string path = folder.write("objects.BGL", original);
    EXPECT_TRUE(universal(path));
    EXPECT_EQ(folder.read("objects.BGL"), widened);
    EXPECT_EQ(folder.read("objects.BGL.bck"), original);
    EXPECT_THAT(folder.names(), ElementsAre("objects.BGL", "objects.BGL.bck"));
    ASSERT_EQ(reporter.questions.size(), 1U);
    EXPECT_EQ(reporter.questions[0].text,
              "ATTENTION ! This will modify the header of the library file to make it available "
              "outside the intended area.\n"
              "A copy of the original will be saved under the '.bck' extension.\n"
              "You can restore the original file by clicking the 'Revert' button anytime you "
              "wish.\n"
              "Are you sure you want to proceed ? ");
    EXPECT_EQ(reporter.questions[0].icon, Icon::Exclamation);
    EXPECT_THAT(reporter.boxes, IsEmpty());
}

TEST_F(Universal, TheCopyHasThePermissionsOfTheOriginal) {
    namespace fs = std::filesystem;
    const std::string path = folder.write("objects.BGL", original);
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    const fs::perms kept = fs::status(path).permissions(); // Windows knows fewer
    ASSERT_TRUE(universal(path));
    EXPECT_EQ(fs::status(path + ".bck").permissions(), kept);
}

TEST_F(Universal, TheReportAfterwardsShowsTheWholeGlobe) {
    const std::string path = folder.write("x.bgl", original);
    ASSERT_TRUE(universal(path));
    Inspector inspector({disk, reporter}, home.path(), programs);
    analyse_file(inspector, path, false, true);
    EXPECT_THAT(inspector.box.text(), HasSubstr(" This is a Visual/Default data file\r\n"));
    EXPECT_THAT(inspector.box.text(), HasSubstr(" Lat bounds : -95* 38.6787 to 94* 21.3213\r\n"
                                                " Lon bounds : -1* 60.0 to 0* 0.0\r\n"));
}

TEST_F(Universal, AnswerNoChangesNothing) {
    reporter.answer = false;
    EXPECT_FALSE(universal(folder.write("x.bgl", original)));
    EXPECT_EQ(folder.read("x.bgl"), original);
    EXPECT_THAT(folder.names(), ElementsAre("x.bgl"));
}

TEST_F(Universal, OtherNamesAreLeftAloneQuietly) {
    EXPECT_FALSE(universal(folder.write("x.bgk", original)));
    EXPECT_EQ(folder.read("x.bgk"), original);
    EXPECT_THAT(reporter.boxes, IsEmpty());
    EXPECT_THAT(reporter.plain_messages(), IsEmpty());
    EXPECT_THAT(reporter.messages, ElementsAre(HasSubstr("x.bgk")));
}

TEST_F(Universal, ASecondTimeIsRefused) {
    const std::string path = folder.write("x.bgl", original);
    ASSERT_TRUE(universal(path));
    EXPECT_FALSE(universal(path));
    EXPECT_THAT(reporter.boxes,
                ElementsAre(Box{"This file has already been modified.\n You can only use "
                                "'Revert' to restore original",
                                Icon::Information}));
    EXPECT_EQ(folder.read("x.bgl.bck"), original);
}

TEST_F(Universal, ACopyWithACapitalEndingCountsToo) {
    folder.write("x.bgl.BCK", original);
    EXPECT_FALSE(universal(folder.write("x.bgl", widened)));
    EXPECT_EQ(reporter.boxes.size(), 1U);
}

TEST_F(Universal, OnlyLibrariesAreModified) {
    const Box refusal{"This is not a library file.\n Only library files can be modified",
                      Icon::Exclamation};
    EXPECT_FALSE(universal(folder.write("objects.bgl", test::object_file())));
    EXPECT_FALSE(universal(folder.write("invalid.bgl", "\x02")));
    EXPECT_FALSE(universal(folder.file("missing.bgl")));
    EXPECT_FALSE(universal(folder.write("empty.bgl", "")));
    EXPECT_THAT(reporter.boxes, ElementsAre(refusal, refusal, refusal, refusal));
    EXPECT_THAT(folder.names(), ElementsAre("empty.bgl", "invalid.bgl", "objects.bgl"));
    EXPECT_EQ(home.read("error.txt"),
              folder.file("invalid.bgl") + "\r\n" + folder.file("empty.bgl") + "\r\n");
}

TEST_F(Universal, APathBelowAFileIsNotALibrary) {
    EXPECT_FALSE(universal(join_path(folder.write("file", ""), "a.bgl")));
    EXPECT_THAT(reporter.boxes,
                ElementsAre(Box{"This is not a library file.\n Only library files can be modified",
                                Icon::Exclamation}));
    EXPECT_THAT(folder.names(), ElementsAre("file"));
}

TEST_F(Universal, EveryFailureLeavesTheOldStateOrTheNew) {
    const std::string path = folder.write("x.bgl", original);
    disk.fail_at(0);
    ASSERT_TRUE(universal(path));
    ASSERT_TRUE(put_back(path));
    const std::size_t calls = disk.calls();
    ASSERT_GT(calls, 10U);
    for (std::size_t n = 1; n <= calls; ++n) {
        for (const auto fault :
             {test::FaultyDisk::Fault::Throw, test::FaultyDisk::Fault::ShortWrite}) {
            disk.fail_at(n, ErrorNumber::DiskFull, fault);
            bool done = false;
            try {
                done = universal(path);
            } catch (const RuntimeError&) {
                done = false;
            }
            disk.fail_at(0);
            EXPECT_EQ(folder.read("x.bgl"), done ? widened : original) << n;
            EXPECT_EQ(folder.has("x.bgl.bck"), done) << n;
            EXPECT_EQ(folder.names().size(), done ? 2U : 1U) << n;
            if (done) {
                ASSERT_TRUE(put_back(path));
            }
        }
    }
}

TEST_F(Universal, TheCopyIsOnTheMediumBeforeTheOriginalIsTouched) {
    const std::string path = folder.write("x.bgl", original);
    disk.fail_at(0);
    ASSERT_TRUE(universal(path));
    const auto& journal = disk.journal();
    const auto place = [&](const std::string& call) {
        return std::find(journal.begin(), journal.end(), call) - journal.begin();
    };
    EXPECT_LT(place("sync " + path + ".bck.morvane-tmp"), place("rename " + path + ".bck"));
    EXPECT_LT(place("rename " + path + ".bck"), place("rename " + path));
    EXPECT_LT(place("sync " + path + ".morvane-tmp"), place("rename " + path));
    EXPECT_LT(place("rename " + path), static_cast<std::ptrdiff_t>(journal.size()));
}

TEST_F(Universal, RevertPutsTheOriginalBack) {
    const std::string path = folder.write("x.bgl", widened);
    folder.write("x.bgl.bck", original);
    EXPECT_TRUE(put_back(path));
    EXPECT_EQ(folder.read("x.bgl"), original);
    EXPECT_THAT(folder.names(), ElementsAre("x.bgl"));
    EXPECT_THAT(reporter.boxes, ElementsAre(Box{"File restored.", Icon::Information}));
}

TEST_F(Universal, RevertWorksFromTheCopyInAnyLetterCase) {
    for (const char* ending : {".bck", ".BCK", ".Bck"}) {
        folder.write("x.BGL", widened);
        EXPECT_TRUE(put_back(folder.write(std::string("x.BGL") + ending, original))) << ending;
        EXPECT_EQ(folder.read("x.BGL"), original);
        EXPECT_THAT(folder.names(), ElementsAre("x.BGL"));
    }
}

TEST_F(Universal, RevertKeepsWhatALongerFileHasBehindTheCopy) {
    folder.write("x.bgl.bck", original);
    EXPECT_TRUE(put_back(folder.write("x.bgl", widened + "tail")));
    EXPECT_EQ(folder.read("x.bgl"), original + "tail");
}

TEST_F(Universal, RevertWithoutCopy) {
    const Box refusal{"No backup file found. Nothing to do", Icon::Exclamation};
    EXPECT_FALSE(put_back(folder.write("x.bgl", original)));
    EXPECT_FALSE(put_back(folder.file("missing.bgl")));
    EXPECT_FALSE(put_back(folder.file("missing.bgl.bck")));
    EXPECT_THAT(reporter.boxes, ElementsAre(refusal, refusal, refusal));
}

TEST_F(Universal, RevertLeavesOtherFilesAloneQuietly) {
    folder.write("gone.bgl.bck", original);
    EXPECT_FALSE(put_back(folder.file("gone.bgl"))); // the file itself is missing
    EXPECT_FALSE(put_back(folder.write("x.asm", "text")));
    folder.write("y.txt", "text");
    EXPECT_FALSE(put_back(folder.write("y.txt.bck", "other")));
    EXPECT_THAT(reporter.boxes, IsEmpty());
    EXPECT_THAT(reporter.plain_messages(), IsEmpty());
    EXPECT_EQ(reporter.messages.size(), 3U);
    EXPECT_EQ(folder.read("y.txt"), "text");
    EXPECT_TRUE(folder.has("gone.bgl.bck"));
}

TEST_F(Universal, AFailedRevertKeepsTheCopy) {
    const std::string path = folder.write("x.bgl", widened);
    folder.write("x.bgl.bck", original);
    disk.fail_at(0);
    ASSERT_TRUE(put_back(path));
    const std::size_t calls = disk.calls();
    for (std::size_t n = 1; n <= calls; ++n) {
        folder.write("x.bgl", widened);
        folder.write("x.bgl.bck", original);
        disk.fail_at(n, ErrorNumber::DeviceIo);
        bool failed = false;
        try {
            put_back(path);
        } catch (const RuntimeError&) {
            failed = true;
        }
        EXPECT_TRUE(folder.has("x.bgl.bck") || folder.read("x.bgl") == original) << n;
        EXPECT_TRUE(folder.read("x.bgl") == original || folder.read("x.bgl") == widened) << n;
        if (failed) {
            EXPECT_TRUE(folder.has("x.bgl.bck")) << n;
        }
    }
}

} // namespace
} // namespace morvane
