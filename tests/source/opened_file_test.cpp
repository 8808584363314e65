// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "source/opened_file.h"
#include "support/faulty_disk.h"
#include "support/links.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

namespace morvane::test {
namespace {

class OpenedFileTest : public ::testing::Test {
  protected:
    /// Writes the file and gives it a time of last writing long ago. The time of the change itself
    /// cannot be set, so what the disk said is made old where a test needs it.
    void write(const std::string& bytes) {
        folder.write("a.asm", bytes);
        std::filesystem::last_write_time(path, long_ago);
    }
    OpenedFile settled() {
        OpenedFile opened = look_at_file(disk, path);
        opened.settled = true;
        return opened;
    }
    std::size_t reads() const { return disk.calls(); }

    TempFolder folder;
    FaultyDisk disk;
    std::string path = folder.file("a.asm");
    std::filesystem::file_time_type long_ago =
        std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
};

TEST_F(OpenedFileTest, AFileWrittenJustNowIsNotSettled) {
    write("old");
    EXPECT_FALSE(look_at_file(disk, path).settled);
}

TEST_F(OpenedFileTest, ASettledFileWithItsStampIsNotReadAgain) {
    write("old");
    const OpenedFile opened = settled();
    EXPECT_FALSE(was_changed(disk, path, opened, "what was read"));
    EXPECT_EQ(reads(), 0U);
}

TEST_F(OpenedFileTest, AFileThatIsNotSettledIsCompared) {
    write("old");
    const OpenedFile opened = look_at_file(disk, path);
    EXPECT_FALSE(was_changed(disk, path, opened, "old"));
    EXPECT_TRUE(was_changed(disk, path, opened, "odd"));
    EXPECT_EQ(reads(), 2U);
}

TEST_F(OpenedFileTest, SameSizeAndTimeDoNotHideAChange) {
    write("old");
    const OpenedFile opened = settled();
    std::this_thread::sleep_for(std::chrono::milliseconds(20)); // the disk's clock ticks in steps
    write("new");
    ASSERT_EQ(disk.stamp(path).modified_ns, opened.stamp.modified_ns);
    EXPECT_TRUE(was_changed(disk, path, opened, "old"));
}

TEST_F(OpenedFileTest, AnotherSizeIsAChange) {
    write("old");
    const OpenedFile opened = settled();
    write("older");
    EXPECT_TRUE(was_changed(disk, path, opened, "old"));
    write("ol");
    EXPECT_TRUE(was_changed(disk, path, opened, "old"));
}

TEST_F(OpenedFileTest, AFileThatWasOnlyTouchedHasNotChanged) {
    write("old");
    const OpenedFile opened = settled();
    std::filesystem::last_write_time(path, long_ago + std::chrono::minutes(1));
    EXPECT_FALSE(was_changed(disk, path, opened, "old"));
}

TEST_F(OpenedFileTest, TheLastByteOfALargeFileCounts) {
    std::string bytes(200000, 'x');
    write(bytes);
    const OpenedFile opened = look_at_file(disk, path);
    EXPECT_FALSE(was_changed(disk, path, opened, bytes));
    bytes.back() = 'y';
    EXPECT_TRUE(was_changed(disk, path, opened, bytes));
}

TEST_F(OpenedFileTest, AFileThatIsGoneHasNotChanged) {
    write("old");
    const OpenedFile opened = settled();
    disk.remove(path);
    EXPECT_FALSE(was_changed(disk, path, opened, "old"));
}

TEST_F(OpenedFileTest, AFileThatIsNotThereCannotBeLookedAt) {
    EXPECT_THROW(look_at_file(disk, path), RuntimeError);
}

TEST_F(OpenedFileTest, PathsOfOneFileAreTheSame) {
    if (!has_symbolic_links) {
        GTEST_SKIP() << "no symbolic links here";
    }
    write("old");
    folder.write("other.asm", "old");
    std::filesystem::create_symlink("a.asm", folder.file("link.asm"));
    EXPECT_TRUE(is_same_file(disk, path, path));
    EXPECT_TRUE(is_same_file(disk, path, folder.path() + "/./a.asm"));
    EXPECT_TRUE(is_same_file(disk, path, folder.file("link.asm")));
    EXPECT_FALSE(is_same_file(disk, path, folder.file("other.asm")));
    EXPECT_FALSE(is_same_file(disk, path, folder.file("nothing.asm")));
}

} // namespace
} // namespace morvane::test
