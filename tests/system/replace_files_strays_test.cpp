// SPDX-License-Identifier: GPL-3.0-or-later

// What runs that were killed, or that go on at this moment, have left beside a file.

#include "support/faulty_disk.h"
#include "support/temp_folder.h"
#include "system/replace_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace morvane::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class ReplaceFilesStraysTest : public ::testing::Test {
  protected:
    void replace(const std::string& bytes) {
        replace_file(disk, path, [&](TextWriter& out) { out.write(bytes); });
    }
    std::string failure(const std::function<void()>& action) {
        try {
            action();
        } catch (const RuntimeError& error) {
            return error.what();
        }
        return "no failure";
    }
    void give_second_name() { std::filesystem::create_hard_link(path, folder.file("second.asm")); }

    TempFolder folder;
    FaultyDisk disk;
    std::string path = folder.write("a.asm", "old");
};

TEST_F(ReplaceFilesStraysTest, BothStraysAreGoneAfterTheNextRun) {
    folder.write("a.asm.morvane-tmp", "a longer text that was never finis");
    folder.write("a.asm.morvane-old", "ol");
    replace("new");
    EXPECT_EQ(folder.read("a.asm"), "new");
    EXPECT_THAT(folder.names(), ElementsAre("a.asm"));
}

TEST_F(ReplaceFilesStraysTest, NothingOfAStrayIsKeptInAnEmptyFile) {
    folder.write("a.asm.morvane-tmp", "unfinished");
    replace("");
    EXPECT_EQ(folder.read("a.asm"), "");
}

TEST_F(ReplaceFilesStraysTest, AStrayThatCannotBeRemovedIsInNobodysWay) {
    std::filesystem::create_directory(folder.file("a.asm.morvane-old"));
    replace("new");
    EXPECT_EQ(folder.read("a.asm"), "new");
}

TEST_F(ReplaceFilesStraysTest, ARunThatGoesOnIsNotDisturbed) {
    replace_file(disk, path, [&](TextWriter& out) {
        out.write("from the first");
        out.flush();
        EXPECT_THAT(failure([&] { replace("from the second"); }), HasSubstr("70"));
    });
    EXPECT_EQ(folder.read("a.asm"), "from the first");
    EXPECT_THAT(folder.names(), ElementsAre("a.asm"));
}

// The first file of a pair waits, complete, until the second one is too.
TEST_F(ReplaceFilesStraysTest, ACompleteFileThatWaitsIsNotWrittenInto) {
    const std::string other = folder.file("b.asm");
    replace_files(disk, {{path, [](TextWriter& out) { out.write("complete"); }},
                         {other, [&](TextWriter& out) {
                              EXPECT_THAT(failure([&] { replace("x"); }), HasSubstr("70"));
                              out.write("second");
                          }}});
    EXPECT_EQ(folder.read("a.asm"), "complete");
    EXPECT_THAT(folder.names(), ElementsAre("a.asm", "b.asm"));
}

TEST_F(ReplaceFilesStraysTest, AMixtureIsNoticedAndTheOldContentKept) {
    give_second_name();
    folder.write("a.asm.morvane-old", "what it was");
    folder.write("a.asm.morvane-tmp", "to become this");
    write_file(path, "to become was");
    const std::string text = failure([&] { replace("new"); });
    EXPECT_THAT(text, HasSubstr("a.asm.morvane-old holds what it was before"));
    EXPECT_EQ(folder.read("a.asm"), "to become was");
    EXPECT_EQ(folder.read("a.asm.morvane-old"), "what it was");
    EXPECT_EQ(folder.read("a.asm.morvane-tmp"), "to become this");
}

TEST_F(ReplaceFilesStraysTest, AFileWithTwoNamesThatIsWholeIsWrittenAgain) {
    give_second_name();
    for (const std::string whole : {"what it was", "to become this"}) {
        folder.write("a.asm.morvane-old", "what it was");
        folder.write("a.asm.morvane-tmp", "to become this");
        write_file(path, whole);
        replace("new");
        EXPECT_EQ(folder.read("second.asm"), "new");
        EXPECT_THAT(folder.names(), ElementsAre("a.asm", "second.asm"));
    }
}

TEST_F(ReplaceFilesStraysTest, AnUnfinishedCopyOfAFileWithTwoNamesIsRemoved) {
    give_second_name();
    folder.write("a.asm.morvane-old", "ol");
    replace("new");
    EXPECT_EQ(folder.read("second.asm"), "new");
    EXPECT_THAT(folder.names(), ElementsAre("a.asm", "second.asm"));
}

/// Lets every rename and every writing in place fail from the n-th on.
class BrokenDisk final : public FaultyDisk {
  public:
    void rename(const std::string& from, const std::string& to) override {
        if (++renames > good_renames) {
            throw RuntimeError(ErrorNumber::DeviceIo, to);
        }
        FaultyDisk::rename(from, to);
    }
    std::size_t renames = 0;
    std::size_t good_renames = 1;
};

TEST_F(ReplaceFilesStraysTest, AFileThatCannotBePutBackIsNamed) {
    BrokenDisk broken;
    const std::string other = folder.write("b.asm", "old");
    const std::string text = failure([&] {
        replace_files(broken, {{path, [](TextWriter& out) { out.write("new"); }},
                               {other, [](TextWriter& out) { out.write("new"); }}});
    });
    EXPECT_THAT(text, HasSubstr("a.asm could not be put back, its old content is in " + path +
                                ".morvane-old"));
    EXPECT_EQ(folder.read("a.asm"), "new");
    EXPECT_EQ(folder.read("a.asm.morvane-old"), "old");
    EXPECT_EQ(folder.read("b.asm"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a.asm", "a.asm.morvane-old", "b.asm"));
}

TEST_F(ReplaceFilesStraysTest, AFaultAtAnyCallWhileWritingInPlaceLeavesTheOldOrTheNew) {
    give_second_name();
    for (std::size_t n = 1; n < 40; ++n) {
        write_file(path, "old");
        disk.fail_at(n);
        const bool failed = failure([&] { replace("newer"); }) != "no failure";
        EXPECT_EQ(folder.read("second.asm"), failed ? "old" : "newer") << n;
        if (failed) { // a stray that could not be removed is no failure
            EXPECT_THAT(folder.names(), ElementsAre("a.asm", "second.asm")) << n;
        }
        if (disk.calls() < n) {
            return;
        }
    }
    FAIL() << "too many calls";
}

} // namespace
} // namespace morvane::test
