// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/encodings.h"
#include "base/errors.h"
#include "base/paths.h"
#include "support/temp_folder.h"
#include "support/thrown.h"
#include "system/disk.h"
#include "system/replace_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>
#include <windows.h>

namespace fs = std::filesystem;

namespace morvane {
namespace {

using test::TempFolder;
using test::thrown_by;
using testing::ElementsAre;

/// Another program that holds a file open, as far as the system can tell.
class Holder {
  public:
    Holder(const std::string& path, DWORD access, DWORD shared)
        : file_(CreateFileW(wide_text(path).c_str(), access, shared, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr)) {
        EXPECT_NE(file_, INVALID_HANDLE_VALUE) << path;
    }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;
    ~Holder() { CloseHandle(file_); }

  private:
    HANDLE file_;
};

class WindowsDiskTest : public testing::Test {
  protected:
    void replace(const std::string& name, const std::string& bytes = "new") {
        replace_file(*disk, folder.file(name), [&](TextWriter& out) { out.write(bytes); });
    }
    int error_of_replacing(const std::string& name) {
        return thrown_by([&] { replace(name); }).number();
    }
    DWORD attributes(const std::string& name) {
        return GetFileAttributesW(wide_text(folder.file(name)).c_str());
    }
    void set_attributes(const std::string& name, DWORD attributes) {
        EXPECT_NE(SetFileAttributesW(wide_text(folder.file(name)).c_str(), attributes), 0);
    }

    TempFolder folder;
    std::unique_ptr<Disk> disk = make_system_disk();
};

TEST_F(WindowsDiskTest, KindsOfPaths) {
    const std::string file = folder.write("file", "x");
    EXPECT_TRUE(disk->is_file(file));
    EXPECT_FALSE(disk->is_file(folder.path()));
    EXPECT_FALSE(disk->is_file(folder.file("none")));
    EXPECT_FALSE(disk->is_file(""));
    EXPECT_TRUE(disk->is_folder(folder.path()));
    EXPECT_TRUE(disk->is_folder("C:\\"));
    EXPECT_FALSE(disk->is_folder(file));
    EXPECT_EQ(disk->link_count(file), 1U);
    EXPECT_EQ(disk->link_count(folder.file("none")), 0U);
}

TEST_F(WindowsDiskTest, NamesInAnyCaseAndWithEitherSeparator) {
    folder.write("Sets/Airport.asm", "x");
    EXPECT_TRUE(disk->is_file(folder.path() + "\\SETS\\AIRPORT.ASM"));
    EXPECT_TRUE(disk->is_file(folder.path() + "/sets/airport.Asm"));
    replace("sets/AIRPORT.asm");
    EXPECT_EQ(folder.read("Sets/Airport.asm"), "new");
    EXPECT_EQ(disk->list_folder(folder.file("Sets")).size(), 1U);
}

TEST_F(WindowsDiskTest, NamesWithLettersOfAnyAlphabet) {
    for (const char* name : {"B\xC3\xBC"
                             "cher.asm",
                             "\xD0\x90\xD1\x8D\xD1\x80\xD0\xBE.asm", "\xE4\xBC\x9A.asm",
                             "\xF0\x9F\x9B\xAB.asm", "two  blanks & 100%.asm"}) {
        // Folders and files of such names, through every call there is.
        const std::string inside = join_path(folder.path(), std::string(name) + " sets");
        disk->create_folder(inside);
        EXPECT_TRUE(disk->is_writable_folder(inside));
        const std::string path = join_path(inside, name);
        for (const char* bytes : {"an older and longer content", name}) {
            replace_file(*disk, path, [&](TextWriter& out) { out.write(bytes); });
        }
        EXPECT_TRUE(disk->is_file(path));
        EXPECT_EQ(disk->stamp(path).size, std::string(name).size());
        EXPECT_EQ(disk->list_folder(inside).at(0).name, name);
        std::array<char, 100> buffer{};
        const std::size_t size =
            disk->open_for_reading(path)->read_at(0, buffer.data(), buffer.size());
        EXPECT_EQ(std::string(buffer.data(), size), name);
    }
    const auto entries = disk->list_folder(folder.path());
    ASSERT_EQ(entries.size(), 5U);
    EXPECT_EQ(entries[0].name, "B\xC3\xBC"
                               "cher.asm sets");
    EXPECT_EQ(entries[4].name, "\xF0\x9F\x9B\xAB.asm sets");
}

TEST_F(WindowsDiskTest, ReadingAtAnyPlace) {
    const auto file = disk->open_for_reading(folder.write("file", "0123456789"));
    std::array<char, 10> buffer{};
    EXPECT_EQ(file->size(), 10U);
    EXPECT_EQ(file->read_at(4, buffer.data(), 3), 3U);
    EXPECT_EQ(std::string(buffer.data(), 3), "456");
    EXPECT_EQ(file->read_at(8, buffer.data(), 10), 2U);
    EXPECT_EQ(file->read_at(10, buffer.data(), 10), 0U);
    EXPECT_EQ(file->read_at(1000, buffer.data(), 10), 0U);
}

TEST_F(WindowsDiskTest, WhatCannotBeRead) {
    EXPECT_EQ(thrown_by([&] { disk->open_for_reading(folder.file("none")); }).number(), 53);
    EXPECT_EQ(thrown_by([&] { disk->open_for_reading(folder.file("no\\ne")); }).number(), 53);
    EXPECT_EQ(thrown_by([&] { disk->open_for_reading(folder.path()); }).number(), 75);
    EXPECT_EQ(thrown_by([&] { disk->open_for_reading("NUL"); }).number(), 75);
    EXPECT_EQ(thrown_by([&] { disk->stamp(folder.file("none")); }).number(), 53);
}

TEST_F(WindowsDiskTest, WhatCannotBeWritten) {
    const std::string file = folder.write("file", "");
    EXPECT_EQ(error_of_replacing("file/a"), 75);
    disk->remove(file);
    EXPECT_EQ(error_of_replacing("no/such/folder"), 76);
    EXPECT_EQ(thrown_by([&] { disk->open_for_update(folder.file("no\\ne")); }).number(), 76);
    EXPECT_EQ(thrown_by([&] { disk->open_for_update(folder.path()); }).number(), 75);
    EXPECT_EQ(thrown_by([&] { disk->open_for_update("NUL"); }).number(), 75);
    EXPECT_EQ(thrown_by([&] { disk->open_for_appending("NUL"); }).number(), 75);
    EXPECT_TRUE(folder.names().empty());
}

TEST_F(WindowsDiskTest, UpdatingAndAppending) {
    const std::string path = folder.write("file", "0123456789");
    {
        const auto file = disk->open_for_update(path);
        file->write("ab");
        file->truncate(5);
        file->sync();
        file->close();
    }
    EXPECT_EQ(folder.read("file"), "ab234");
    {
        const auto file = disk->open_for_appending(path);
        file->write("end");
        file->sync();
    }
    EXPECT_EQ(folder.read("file"), "ab234end");
    disk->open_for_appending(folder.file("new"))->write("first");
    EXPECT_EQ(folder.read("new"), "first");
}

TEST_F(WindowsDiskTest, StampTellsAChange) {
    const std::string path = folder.write("file", "one");
    const FileStamp before = disk->stamp(path);
    EXPECT_EQ(before, disk->stamp(path));
    EXPECT_EQ(before.size, 3U);
    EXPECT_GT(before.modified_ns, std::int64_t{1'700'000'000} * 1'000'000'000);
    fs::last_write_time(path, fs::last_write_time(path) + std::chrono::milliseconds(5));
    EXPECT_NE(before, disk->stamp(path));
    EXPECT_NE(disk->stamp(folder.write("other", "one")).file, before.file);
}

TEST_F(WindowsDiskTest, EntriesInByteOrder) {
    for (const char* name : {"b", "a2", "a10", "\xC3\xA4", "_", "D"}) {
        replace_file(*disk, join_path(folder.path(), name), [](TextWriter&) {});
    }
    disk->create_folder(folder.file("c"));
    std::vector<std::string> shown;
    for (const FolderEntry& entry : disk->list_folder(folder.path())) {
        shown.push_back(entry.name + (entry.folder ? " folder" : "") + (entry.file ? " file" : ""));
    }
    EXPECT_THAT(shown, ElementsAre("D file", "_ file", "a10 file", "a2 file", "b file", "c folder",
                                   "\xC3\xA4 file"));
    EXPECT_TRUE(disk->list_folder(folder.file("c")).empty());
    EXPECT_EQ(thrown_by([&] { disk->list_folder(folder.file("none")); }).number(), 76);
    EXPECT_EQ(thrown_by([&] { disk->list_folder(folder.file("b")); }).number(), 75);
    EXPECT_EQ(thrown_by([&] { disk->list_folder(""); }).number(), 76);
}

TEST_F(WindowsDiskTest, RenamingRemovingAndMakingFolders) {
    folder.write("a", "new");
    folder.write("b", "old");
    disk->rename(folder.file("a"), folder.file("b"));
    EXPECT_EQ(folder.read("b"), "new");
    disk->remove(folder.file("b"));
    EXPECT_FALSE(folder.has("b"));
    EXPECT_EQ(thrown_by([&] { disk->remove(folder.file("b")); }).number(), 53);
    EXPECT_EQ(thrown_by([&] { disk->rename(folder.file("b"), folder.file("c")); }).number(), 53);
    disk->create_folder(folder.file("x/y/z"));
    EXPECT_TRUE(disk->is_folder(folder.file("x/y/z")));
    folder.write("file", "");
    EXPECT_EQ(thrown_by([&] { disk->create_folder(folder.file("file")); }).number(), 75);
    EXPECT_EQ(thrown_by([&] { disk->create_folder(folder.file("file/y")); }).number(), 75);
}

TEST_F(WindowsDiskTest, AFileThatAnotherProgramHoldsIsErrorSeventyAndStaysWhole) {
    const std::string path = folder.write("a", "old");
    {
        const Holder alone(path, GENERIC_READ | GENERIC_WRITE, 0);
        EXPECT_EQ(thrown_by([&] { disk->open_for_reading(path); }).number(), 70);
        EXPECT_EQ(thrown_by([&] { disk->open_for_update(path); }).number(), 70);
        EXPECT_EQ(thrown_by([&] { disk->remove(path); }).number(), 70);
        EXPECT_EQ(error_of_replacing("a"), 70);
        EXPECT_TRUE(disk->is_file(path));
        EXPECT_EQ(disk->stamp(path).size, 3U);
    }
    {
        const Holder reader(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
        EXPECT_EQ(error_of_replacing("a"), 70);
    }
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
    replace("a");
    EXPECT_EQ(folder.read("a"), "new");
}

TEST_F(WindowsDiskTest, OfAPairOfWhichOneIsHeldNeitherIsReplaced) {
    folder.write("first", "old first");
    folder.write("second", "old second");
    const auto write = [](TextWriter& out) { out.write("new"); };
    for (const char* held : {"first", "second"}) {
        const Holder reader(folder.file(held), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
        EXPECT_EQ(thrown_by([&] {
                      replace_files(
                          *disk, {{folder.file("first"), write}, {folder.file("second"), write}});
                  }).number(),
                  70);
        EXPECT_EQ(folder.read("first"), "old first");
        EXPECT_EQ(folder.read("second"), "old second");
        EXPECT_THAT(folder.names(), ElementsAre("first", "second"));
    }
}

TEST_F(WindowsDiskTest, ATemporaryThatAnotherProgramWritesIsLeftAlone) {
    folder.write("a", "old");
    const auto theirs = disk->create_temporary(folder.file("a.morvane-tmp"), folder.file("a"));
    const RuntimeError error = thrown_by([&] { replace("a"); });
    EXPECT_EQ(error.number(), 70);
    EXPECT_THAT(error.about(), testing::HasSubstr("is being written by another program"));
    EXPECT_EQ(folder.read("a"), "old");
    theirs->write("theirs");
    theirs->close();
    EXPECT_EQ(folder.read("a.morvane-tmp"), "theirs");
}

TEST_F(WindowsDiskTest, AStrayIsReplacedEvenIfItIsWriteProtected) {
    folder.write("a", "old");
    folder.write("a.morvane-tmp", "a much longer stray");
    set_attributes("a.morvane-tmp", FILE_ATTRIBUTE_READONLY);
    replace("a");
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_F(WindowsDiskTest, AWriteProtectedFileIsNotReplaced) {
    folder.write("a", "old");
    set_attributes("a", FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(error_of_replacing("a"), 70);
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_NE(attributes("a") & FILE_ATTRIBUTE_READONLY, 0U);
    EXPECT_THAT(folder.names(), ElementsAre("a"));
    set_attributes("a", FILE_ATTRIBUTE_NORMAL);
}

TEST_F(WindowsDiskTest, AHiddenFileStaysHidden) {
    folder.write("a", "old");
    set_attributes("a", FILE_ATTRIBUTE_HIDDEN);
    const bool can_hide = (attributes("a") & FILE_ATTRIBUTE_HIDDEN) != 0;
    replace("a");
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_EQ((attributes("a") & FILE_ATTRIBUTE_HIDDEN) != 0, can_hide);
}

TEST_F(WindowsDiskTest, NamesBeyondTheOldLimit) {
    std::string path = folder.path();
    for (int i = 0; i < 8; ++i) {
        path += "\\" + std::string(60, static_cast<char>('a' + i));
    }
    disk->create_folder(path);
    EXPECT_TRUE(disk->is_folder(path));
    path += "\\airport_0.asm";
    replace_file(*disk, path, [](TextWriter& out) { out.write("old"); });
    replace_file(*disk, path, [](TextWriter& out) { out.write("new"); });
    EXPECT_EQ(disk->open_for_reading(path)->size(), 3U);
    EXPECT_EQ(disk->list_folder(path.substr(0, path.rfind('\\'))).size(), 1U);
    disk->remove(path);
    EXPECT_FALSE(disk->is_file(path));
    // Nobody else here can remove folders with such names.
    for (path = folder_part(path); path != folder.path(); path = folder_part(path)) {
        EXPECT_NE(RemoveDirectoryW((L"\\\\?\\" + wide_text(path)).c_str()), 0);
    }
}

TEST_F(WindowsDiskTest, WritableFolders) {
    EXPECT_TRUE(disk->is_writable_folder(folder.path()));
    EXPECT_FALSE(disk->is_writable_folder(folder.file("none")));
    EXPECT_FALSE(disk->is_writable_folder(folder.write("file", "")));
    EXPECT_THAT(folder.names(), ElementsAre("file"));
    // Under Wine, a folder that nobody can write to, root neither.
    if (disk->is_folder("Z:\\proc\\self")) {
        EXPECT_FALSE(disk->is_writable_folder("Z:\\proc\\self"));
    }
}

TEST_F(WindowsDiskTest, LinksOtherThanHardOnesAreNoMatterHere) {
    EXPECT_EQ(disk->resolve_links(folder.file("a")), folder.file("a"));
    const std::string path = folder.write("a", "old and longer");
    EXPECT_EQ(disk->resolve_links(path), path);
    fs::create_hard_link(path, folder.file("b"));
    EXPECT_EQ(disk->link_count(path), 2U);
    replace("a");
    EXPECT_EQ(folder.read("b"), "new");
    EXPECT_EQ(disk->link_count(path), 2U);
}

} // namespace
} // namespace morvane
