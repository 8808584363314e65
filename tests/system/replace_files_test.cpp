// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "support/links.h"
#include "support/temp_folder.h"
#include "support/thrown.h"
#include "system/disk.h"
#include "system/replace_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace fs = std::filesystem;

namespace morvane {
namespace {

using test::TempFolder;
using test::thrown_by;
using testing::ElementsAre;

class ReplaceFiles : public testing::Test {
  protected:
    void replace(const std::string& name, const std::string& bytes) {
        replace_file(*disk, folder.file(name), [&](TextWriter& out) { out.write(bytes); });
    }
    int error_of_replacing(const std::string& name) {
        return thrown_by([&] { replace(name, "new"); }).number();
    }

    TempFolder folder;
    std::unique_ptr<Disk> disk = make_system_disk();
};

TEST_F(ReplaceFiles, NewAndOldFiles) {
    replace("a", "first");
    EXPECT_EQ(folder.read("a"), "first");
    replace("a", "2");
    EXPECT_EQ(folder.read("a"), "2");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_F(ReplaceFiles, LargeContent) {
    const std::string piece(70'000, 'x');
    replace_file(*disk, folder.file("a"), [&](TextWriter& out) {
        for (int i = 0; i < 20; ++i) {
            out.write(piece);
            out.line("end");
        }
        out.write(std::string(1'000'000, 'y'));
    });
    std::string expected;
    for (int i = 0; i < 20; ++i) {
        expected += piece + "end\r\n";
    }
    EXPECT_TRUE(folder.read("a") == expected + std::string(1'000'000, 'y'));
}

TEST_F(ReplaceFiles, PermissionsAreKept) {
    folder.write("a", "old");
    const auto mode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::permissions(folder.file("a"), mode);
    const auto kept = fs::status(folder.file("a")).permissions(); // Windows knows fewer
    replace("a", "new");
    EXPECT_EQ(fs::status(folder.file("a")).permissions(), kept);
}

TEST_F(ReplaceFiles, SymbolicLinkIsFollowed) {
    if (!test::has_symbolic_links) {
        GTEST_SKIP() << "no symbolic links here";
    }
    folder.write("real/a", "old");
    fs::create_symlink("real/a", folder.file("link"));
    fs::create_symlink("link", folder.file("link to link"));
    replace("link to link", "new");
    EXPECT_TRUE(fs::is_symlink(folder.file("link")));
    EXPECT_TRUE(fs::is_symlink(folder.file("link to link")));
    EXPECT_EQ(folder.read("real/a"), "new");
    EXPECT_THAT(folder.names(), ElementsAre("link", "link to link", "real"));
}

TEST_F(ReplaceFiles, DanglingLinkGetsItsTarget) {
    if (!test::has_symbolic_links) {
        GTEST_SKIP() << "no symbolic links here";
    }
    fs::create_symlink("later", folder.file("link"));
    replace("link", "new");
    EXPECT_TRUE(fs::is_symlink(folder.file("link")));
    EXPECT_EQ(folder.read("later"), "new");
}

TEST_F(ReplaceFiles, LinkInACircleIsAnError) {
    if (!test::has_symbolic_links) {
        GTEST_SKIP() << "no symbolic links here";
    }
    fs::create_symlink("b", folder.file("a"));
    fs::create_symlink("a", folder.file("b"));
    EXPECT_EQ(error_of_replacing("a"), 75);
    EXPECT_THAT(folder.names(), ElementsAre("a", "b"));
}

TEST_F(ReplaceFiles, HardLinkedFileIsWrittenInPlace) {
    folder.write("a", "the old and longer content");
    fs::create_hard_link(folder.file("a"), folder.file("b"));
    replace("a", "new");
    EXPECT_EQ(folder.read("b"), "new");
    EXPECT_EQ(disk->link_count(folder.file("a")), 2U);
    EXPECT_THAT(folder.names(), ElementsAre("a", "b"));
}

TEST_F(ReplaceFiles, FolderInPlaceOfTheFile) {
    fs::create_directory(folder.file("a"));
    EXPECT_EQ(error_of_replacing("a"), 75);
    EXPECT_TRUE(fs::is_directory(folder.file("a")));
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_F(ReplaceFiles, FolderInPlaceOfTheTemporary) {
    folder.write("a", "old");
    fs::create_directory(folder.file("a.morvane-tmp"));
    EXPECT_EQ(error_of_replacing("a"), 75);
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_TRUE(fs::is_directory(folder.file("a.morvane-tmp")));
}

TEST_F(ReplaceFiles, MissingFolder) {
    EXPECT_EQ(error_of_replacing("none/a"), 76);
    folder.write("file", "");
    EXPECT_EQ(error_of_replacing("file/a"), 75);
    EXPECT_THAT(folder.names(), ElementsAre("file"));
}

TEST_F(ReplaceFiles, StrayOfAnInterruptedRunIsReplaced) {
    folder.write("a", "old");
    folder.write("a.morvane-tmp", "half of what was once to be written here, and much longer");
    folder.write("b", "old");
    folder.write("b.morvane-tmp", "stray");
    folder.write("a.morvane-old", "stray");
    const auto write = [](TextWriter& out) { out.write("new"); };
    replace_files(*disk, {{folder.file("a"), write}, {folder.file("b"), write}});
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_EQ(folder.read("b"), "new");
    EXPECT_THAT(folder.names(), ElementsAre("a", "b"));
}

TEST_F(ReplaceFiles, TemporaryThatIsBeingWrittenIsLeftAlone) {
    folder.write("a", "old");
    const auto other = disk->create_temporary(folder.file("a.morvane-tmp"), folder.file("a"));
    other->write("of the other");
    const RuntimeError error = thrown_by([&] { replace("a", "new"); });
    EXPECT_EQ(error.number(), 70);
    EXPECT_EQ(error.about(), folder.file("a") + " is being written by another program");
    EXPECT_EQ(folder.read("a"), "old");
    other->close();
    EXPECT_EQ(folder.read("a.morvane-tmp"), "of the other");
}

TEST_F(ReplaceFiles, WhatTheWriterThrowsLeavesEverythingAsItWas) {
    folder.write("a", "old");
    const auto fail = [](TextWriter& out) {
        out.write(std::string(1'000'000, 'x'));
        throw std::logic_error("in the middle");
    };
    EXPECT_THROW(replace_file(*disk, folder.file("a"), fail), std::logic_error);
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_F(ReplaceFiles, TheWriterMayReadTheOldFile) {
    folder.write("a", "old");
    replace_file(*disk, folder.file("a"),
                 [&](TextWriter& out) { out.write(folder.read("a") + " and new"); });
    EXPECT_EQ(folder.read("a"), "old and new");
}

TEST_F(ReplaceFiles, SameFileTwiceIsAnErrorAndNothingIsLost) {
    if (!test::has_symbolic_links) {
        GTEST_SKIP() << "no symbolic links here";
    }
    folder.write("a", "old");
    fs::create_symlink("a", folder.file("b"));
    const auto write = [](TextWriter& out) { out.write("new"); };
    EXPECT_EQ(thrown_by([&] {
                  replace_files(*disk, {{folder.file("a"), write}, {folder.file("b"), write}});
              }).number(),
              70);
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a", "b"));
}

TEST_F(ReplaceFiles, ErrorsNameTheFileOfTheUser) {
    try {
        replace_file(*disk, folder.file("none/a.asm"), [](TextWriter& out) { out.line("x"); });
        FAIL();
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.about(), folder.file("none/a.asm"));
    }
}

} // namespace
} // namespace morvane
