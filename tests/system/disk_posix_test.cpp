// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "support/temp_folder.h"
#include "support/thrown.h"
#include "support/without_rights.h"
#include "system/disk.h"
#include "system/replace_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace morvane {
namespace {

using test::holds_under_size_limit;
using test::holds_without_rights;
using test::TempFolder;
using test::thrown_by;
using testing::ElementsAre;

class DiskTest : public testing::Test {
  protected:
    void SetUp() override { fs::permissions(folder.path(), fs::perms::all); }

    std::string make_pipe() {
        EXPECT_EQ(::mkfifo(folder.file("pipe").c_str(), 0666), 0);
        return folder.file("pipe");
    }
    void replace(const std::string& name) {
        replace_file(*disk, folder.file(name), [](TextWriter& out) { out.write("new"); });
    }
    std::string read_all(const std::string& path) {
        std::array<char, 100> buffer{};
        return {buffer.data(), disk->open_for_reading(path)->read_at(0, buffer.data(), 100)};
    }

    TempFolder folder;
    std::unique_ptr<Disk> disk = make_system_disk();
};

TEST_F(DiskTest, KindsOfPaths) {
    const std::string file = folder.write("file", "x");
    fs::create_symlink("file", folder.file("link"));
    fs::create_symlink("none", folder.file("dangling"));
    EXPECT_TRUE(disk->is_file(file));
    EXPECT_TRUE(disk->is_file(folder.file("link")));
    EXPECT_FALSE(disk->is_file(folder.file("dangling")));
    EXPECT_FALSE(disk->is_file(folder.path()));
    EXPECT_FALSE(disk->is_file(folder.file("none")));
    EXPECT_FALSE(disk->is_file(""));
    EXPECT_TRUE(disk->is_folder(folder.path()));
    EXPECT_FALSE(disk->is_folder(file));
    EXPECT_EQ(disk->link_count(file), 1U);
    EXPECT_EQ(disk->link_count(folder.file("none")), 0U);
}

TEST_F(DiskTest, ReadingAtAnyPlace) {
    const auto file = disk->open_for_reading(folder.write("file", "0123456789"));
    std::array<char, 10> buffer{};
    EXPECT_EQ(file->size(), 10U);
    EXPECT_EQ(file->read_at(4, buffer.data(), 3), 3U);
    EXPECT_EQ(std::string(buffer.data(), 3), "456");
    EXPECT_EQ(file->read_at(8, buffer.data(), 10), 2U);
    EXPECT_EQ(file->read_at(10, buffer.data(), 10), 0U);
    EXPECT_EQ(file->read_at(1000, buffer.data(), 10), 0U);
}

TEST_F(DiskTest, ReadingMoreThanALargePage) {
    std::string text(9'000'000, 'x');
    text.back() = 'y';
    const auto file = disk->open_for_reading(folder.write("file", text));
    std::string buffer(text.size() + 100, '-');
    EXPECT_EQ(file->read_at(0, buffer.data(), buffer.size()), text.size());
    EXPECT_TRUE(buffer == text + std::string(100, '-'));
}

TEST_F(DiskTest, WhatCannotBeRead) {
    EXPECT_EQ(thrown_by([&] { disk->open_for_reading(folder.file("none")); }).number(), 53);
    EXPECT_EQ(thrown_by([&] { disk->open_for_reading(folder.path()); }).number(), 75);
    EXPECT_EQ(thrown_by([&] { disk->stamp(folder.file("none")); }).number(), 53);
}

TEST_F(DiskTest, AReadThatFailsIsAnErrorWithTheFilesName) {
    // A program's memory, at whose beginning nothing lies: a file to all appearances.
    const std::string memory = "/proc/self/mem";
    if (!disk->is_file(memory)) {
        GTEST_SKIP() << "there is no such file here";
    }
    const auto file = disk->open_for_reading(memory);
    std::array<char, 10> buffer{};
    const RuntimeError error = thrown_by([&] { file->read_at(0, buffer.data(), buffer.size()); });
    EXPECT_EQ(error.code(), ErrorNumber::DeviceIo);
    EXPECT_EQ(error.about(), memory);
}

// A pipe without another end would keep the program waiting for ever.
TEST_F(DiskTest, NamedPipeIsRefusedAtOnce) {
    const std::string pipe = make_pipe();
    EXPECT_EQ(thrown_by([&] { disk->open_for_reading(pipe); }).number(), 75);
    EXPECT_EQ(thrown_by([&] { disk->open_for_update(pipe); }).number(), 75);
    EXPECT_EQ(thrown_by([&] { disk->open_for_appending(pipe); }).number(), 75);
    EXPECT_EQ(thrown_by([&] { disk->create_temporary(pipe, "none"); }).number(), 75);
    EXPECT_EQ(thrown_by([&] { replace("pipe"); }).number(), 75);
    EXPECT_TRUE(fs::is_fifo(pipe));
    EXPECT_THAT(folder.names(), ElementsAre("pipe"));
}

TEST_F(DiskTest, DeviceIsRefused) {
    EXPECT_EQ(thrown_by([&] { disk->open_for_reading("/dev/null"); }).number(), 75);
    EXPECT_EQ(thrown_by([&] { disk->open_for_update("/dev/null"); }).number(), 75);
}

TEST_F(DiskTest, UpdatingAndAppending) {
    const std::string path = folder.write("file", "0123456789");
    {
        const auto file = disk->open_for_update(path);
        file->write("ab");
        file->truncate(5);
        file->sync();
        file->close();
    }
    EXPECT_EQ(folder.read("file"), "ab234");
    disk->open_for_appending(path)->write("end");
    EXPECT_EQ(folder.read("file"), "ab234end");
    disk->open_for_appending(folder.file("new"))->write("first");
    EXPECT_EQ(read_all(folder.file("new")), "first");
}

TEST_F(DiskTest, StampTellsAChange) {
    const std::string path = folder.write("file", "one");
    const FileStamp before = disk->stamp(path);
    EXPECT_EQ(before, disk->stamp(path));
    EXPECT_EQ(before.size, 3U);
    fs::last_write_time(path, fs::last_write_time(path) + std::chrono::milliseconds(5));
    EXPECT_NE(before, disk->stamp(path));
}

TEST_F(DiskTest, ANewFileMayBeReadAndWrittenByWhomTheMaskLets) {
    const mode_t before = ::umask(026);
    const std::string replaced = folder.file("replaced");
    replace_file(*disk, replaced, [](TextWriter& out) { out.write("bytes"); });
    disk->open_for_appending(folder.file("appended"))->close();
    ::umask(before);
    for (const char* name : {"replaced", "appended"}) {
        EXPECT_EQ(static_cast<unsigned>(fs::status(folder.file(name)).permissions()), 0640U)
            << name;
    }
}

TEST_F(DiskTest, StampHasNanoseconds) {
    const std::string path = folder.write("file", "one");
    const std::array<timespec, 2> times{{{1, 2}, {1'000'000'007, 123'456'789}}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times.data(), 0), 0);
    EXPECT_EQ(disk->stamp(path).modified_ns, 1'000'000'007'123'456'789);
}

TEST_F(DiskTest, EntriesInByteOrder) {
    for (const char* name : {"b", "B", "a2", "a10", "\xE4", "_"}) {
        folder.write(name, "");
    }
    fs::create_directory(folder.file("c"));
    fs::create_symlink("c", folder.file("link to folder"));
    fs::create_symlink("b", folder.file("link to file"));
    std::vector<std::string> shown;
    for (const FolderEntry& entry : disk->list_folder(folder.path())) {
        shown.push_back(entry.name + (entry.folder ? " folder" : "") + (entry.file ? " file" : ""));
    }
    EXPECT_THAT(shown, ElementsAre("B file", "_ file", "a10 file", "a2 file", "b file", "c folder",
                                   "link to file file", "link to folder", "\xE4 file"));
    EXPECT_EQ(thrown_by([&] { disk->list_folder(folder.file("none")); }).number(), 76);
}

TEST_F(DiskTest, RenamingAndRemoving) {
    folder.write("a", "new");
    folder.write("b", "old");
    disk->rename(folder.file("a"), folder.file("b"));
    EXPECT_EQ(folder.read("b"), "new");
    disk->remove(folder.file("b"));
    EXPECT_FALSE(folder.has("b"));
    EXPECT_EQ(thrown_by([&] { disk->remove(folder.file("b")); }).number(), 53);
    EXPECT_EQ(thrown_by([&] { disk->rename(folder.file("b"), folder.file("c")); }).number(), 53);
    disk->create_folder(folder.file("x/y"));
    EXPECT_TRUE(disk->is_folder(folder.file("x/y")));
    folder.write("file", "");
    EXPECT_EQ(thrown_by([&] { disk->create_folder(folder.file("file/y")); }).number(), 75);
}

TEST_F(DiskTest, ReadOnlyFolder) {
    folder.write("in/a", "old");
    fs::permissions(folder.file("in/a"), fs::perms::all);
    fs::permissions(folder.file("in"), fs::perms::owner_read | fs::perms::owner_exec |
                                           fs::perms::others_read | fs::perms::others_exec);
    EXPECT_TRUE(holds_without_rights([&] {
        return !disk->is_writable_folder(folder.file("in")) &&
               thrown_by([&] { replace("in/a"); }).number() == 70 &&
               thrown_by([&] { replace("in/new"); }).number() == 70;
    }));
    EXPECT_EQ(folder.read("in/a"), "old");
    EXPECT_TRUE(disk->is_writable_folder(folder.path()));
}

// The folder would allow it, but whoever protects a file means that file.
TEST_F(DiskTest, WriteProtectedFileIsNotReplaced) {
    folder.write("a", "old");
    fs::permissions(folder.file("a"), fs::perms::owner_read | fs::perms::others_read);
    EXPECT_TRUE(
        holds_without_rights([&] { return thrown_by([&] { replace("a"); }).number() == 70; }));
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_F(DiskTest, UnreadableFile) {
    folder.write("a", "secret");
    fs::permissions(folder.file("a"), fs::perms::none);
    EXPECT_TRUE(holds_without_rights([&] {
        return thrown_by([&] { disk->open_for_reading(folder.file("a")); }).number() == 70;
    }));
}

TEST_F(DiskTest, FileOfAnotherOwnerKeepsItsPermissions) {
    folder.write("a", "old");
    const auto mode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read |
                      fs::perms::others_write;
    fs::permissions(folder.file("a"), mode);
    EXPECT_TRUE(holds_without_rights([&] {
        replace("a");
        return true;
    }));
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_EQ(fs::status(folder.file("a")).permissions(), mode);
}

// A file that reaches the limit of its size is told to the program by a signal whose default is
// to end it; like a full disk it must be an error that leaves the old file.
TEST_F(DiskTest, NoRoomForTheNewContent) {
    folder.write("a", "old");
    EXPECT_TRUE(holds_under_size_limit(100'000, [&] {
        const RuntimeError error = thrown_by([&] {
            replace_file(*disk, folder.file("a"),
                         [](TextWriter& out) { out.write(std::string(1'000'000, 'x')); });
        });
        return error.number() == 61;
    }));
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

} // namespace
} // namespace morvane
