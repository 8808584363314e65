// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "base/paths.h"
#include "bgl/search.h"
#include "bgl_files.h"
#include "support/faulty_disk.h"
#include "support/links.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/recording_programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace morvane {
namespace {

namespace fs = std::filesystem;
using test::crlf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Box = test::RecordingReporter::Box;

class Search : public ::testing::Test {
  protected:
    SearchResult search() { return search_folder(inspector, folder.path(), true, found); }
    void make_folder(const std::string& name) { fs::create_directories(folder.file(name)); }
    std::vector<std::string> collected() {
        FolderWalk walk{*disk, [](std::size_t) { return true; }, {}, {}};
        collect_folders(walk, folder.path());
        std::vector<std::string> names;
        for (const FoundFolder& found_folder : walk.folder_list) {
            names.push_back(found_folder.path.substr(folder.path().size() + 1));
            std::replace(names.back().begin(), names.back().end(), '\\', '/');
        }
        return names;
    }

    test::TempFolder folder;
    test::TempFolder home;
    test::RecordingReporter reporter;
    test::RecordingPrograms programs;
    std::unique_ptr<Disk> disk = make_system_disk();
    Inspector inspector{{*disk, reporter}, home.path(), programs};
    LibraryFound found;
};

TEST_F(Search, ListsEveryLibraryOfTheTreeTheChosenFolderLast) {
    const auto word = static_cast<std::int32_t>(0xAAAAAAAA);
    const std::string library = test::library_file(
        {.objects = {{.guid = {word, word, word, 1}}, {.stored_scale = 0, .name = "Shed"}}});
    folder.write("top.bgl", library);
    folder.write("a/one.BGL", library);
    folder.write("a/readme.txt", "");
    folder.write("a/notes", "");
    folder.write("b/objects.bgl", test::object_file());
    folder.write("b/bad.bgl", "\x02");
    folder.write("b/empty.bgl", "");
    folder.write("b/none.bgl", test::library_file({}));
    const SearchResult result = search();
    const std::string expected = crlf({
        folder.file("a/one.BGL") + " :2",
        "0AAAAAAAAh,0AAAAAAAAh,0AAAAAAAAh,000000001h,1.0,0,NewObject",
        "000000000h,000000000h,000000000h,000000000h,0.0 ,0,Shed",
        folder.file("top.bgl") + " :2",
        "0AAAAAAAAh,0AAAAAAAAh,0AAAAAAAAh,000000001h,1.0,0,NewObject",
        "000000000h,000000000h,000000000h,000000000h,0.0 ,0,Shed",
        "==============================",
        "Directories searched : 6",
        "Total files found....: 8",
        "BGL files scanned....: 6",
        "Invalid BGL found....: 2",
        "Compressed lib BGL...: 0",
        "Object BGL files.....: 1",
        "Library BGL files....: 2",
        "Library objects......: 4",
        "==============================",
    });
    EXPECT_EQ(inspector.box.text(), expected);
    EXPECT_EQ(home.read("out.txt"), expected + "\r\n");
    EXPECT_EQ(home.read("error.txt"), crlf({folder.file("b/bad.bgl"), folder.file("b/empty.bgl")}));
    EXPECT_TRUE(result.done);
    EXPECT_EQ(result.statistics.folders, 3);
}

// Names of folders come in the system's encoding, those of objects in the file's.
TEST_F(Search, ReportAndResultsAreWindows1252Throughout) {
    folder.write("k\xC3\xBC"
                 "che/lib.bgl",
                 test::library_file({.objects = {{.name = "Caf\xE9"}}}));
    const SearchResult result = search();
    EXPECT_TRUE(result.done);
    const std::string results = home.read("out.txt");
    EXPECT_EQ(results, inspector.box.text() + "\r\n");
    EXPECT_THAT(results, ::testing::HasSubstr("k\xFC"
                                              "che"));
    EXPECT_THAT(results, ::testing::HasSubstr(",Caf\xE9\r\n"));
}

TEST_F(Search, FoundLibrariesAreHandedOver) {
    folder.write("a/lib.bgl", test::library_file({.objects = {{.name = "Shed"}}}));
    std::vector<std::string> seen;
    found = [&](const std::string& path, const std::vector<LibraryObject>& objects) {
        seen.push_back(path + ":" + objects.at(0).name.substr(0, 4));
    };
    search();
    EXPECT_THAT(seen, ElementsAre(folder.file("a/lib.bgl") + ":Shed"));
}

TEST_F(Search, FoldersComeBreadthFirstWithinAndDepthFirstAcross) {
    for (const char* name : {"b/y/deep", "b/x", "a/z", "a/z/1", "c"}) {
        make_folder(name);
    }
    EXPECT_THAT(collected(), ElementsAre("a", "b", "c", "a/z", "a/z/1", "b/x", "b/y", "b/y/deep"));
}

TEST_F(Search, LinksToFoldersAreNotFollowed) {
    if (!test::has_symbolic_links) {
        GTEST_SKIP() << "no symbolic links here";
    }
    make_folder("a");
    fs::create_directory_symlink(folder.path(), folder.file("a/loop"));
    fs::create_symlink("nowhere", folder.file("a/dangling.bgl"));
    folder.write("a/lib.bgl", test::library_file({.objects = {{}}}));
    fs::create_symlink("lib.bgl", folder.file("a/link.bgl"));
    const SearchResult result = search();
    EXPECT_TRUE(result.done);
    EXPECT_EQ(result.statistics.folders, 2);
    EXPECT_EQ(result.statistics.library_files, 2);
}

TEST_F(Search, TwoHundredSubfoldersAreTheLimit) {
    for (int i = 0; i < 200; ++i) {
        make_folder("many/" + std::to_string(i));
    }
    EXPECT_TRUE(search().done);
    make_folder("many/one more");
    EXPECT_FALSE(search().done);
    EXPECT_THAT(reporter.boxes,
                ElementsAre(Box{"Error while searching: 9 : Subscript out of range", Icon::None}));
    EXPECT_THAT(reporter.messages,
                ElementsAre(HasSubstr(folder.file("many") + " has more than 200 subfolders")));
}

/// A disk whose folders have 40 subfolders each, three deep, and one more at the top if asked.
class ManyFolders final : public Disk {
  public:
    std::size_t folders_at_top = 0;

    std::vector<FolderEntry> list_folder(const std::string& path) override {
        const auto depth = static_cast<std::size_t>(
            std::count_if(path.begin(), path.end(), [](char c) { return c == '/' || c == '\\'; }));
        std::vector<FolderEntry> entries;
        const std::size_t count = depth == 0 ? folders_at_top : depth == 1 ? 199 : 0;
        for (std::size_t i = 0; i < count; ++i) {
            entries.push_back({std::to_string(i), true, false});
        }
        return entries;
    }
    bool is_folder(const std::string& /*path*/) override { return true; }
    bool is_file(const std::string& /*path*/) override { return false; }
    bool is_writable_folder(const std::string& /*path*/) override { return false; }
    FileStamp stamp(const std::string& path) override { refuse(path); }
    std::string resolve_links(const std::string& path) override { return path; }
    std::uint64_t link_count(const std::string& /*path*/) override { return 0; }
    std::unique_ptr<ReadableFile> open_for_reading(const std::string& path) override {
        refuse(path);
    }
    std::unique_ptr<WritableFile> create_temporary(const std::string& path,
                                                   const std::string& /*model*/) override {
        refuse(path);
    }
    std::unique_ptr<WritableFile> open_for_update(const std::string& path) override {
        refuse(path);
    }
    std::unique_ptr<WritableFile> open_for_appending(const std::string& path) override {
        refuse(path);
    }
    void rename(const std::string& /*from*/, const std::string& to) override { refuse(to); }
    void remove(const std::string& path) override { refuse(path); }
    void create_folder(const std::string& path) override { refuse(path); }
    void sync_folder(const std::string& path) override { refuse(path); }

  private:
    [[noreturn]] static void refuse(const std::string& path) {
        throw RuntimeError(ErrorNumber::PermissionDenied, path);
    }
};

TEST(CollectFolders, ThirtyThousandFoldersAreTheLimit) {
    ManyFolders many;
    const auto go_on = [](std::size_t) { return true; };
    many.folders_at_top = 149; // and 149 * 199 below: 29,800 with them
    FolderWalk walk{many, go_on, {}, {}};
    collect_folders(walk, "C:");
    EXPECT_EQ(walk.folder_list.size(), 29800U);
    many.folders_at_top = 150; // 150 * 200 = 30,000, and the first folder itself
    FolderWalk beyond{many, go_on, {}, {}};
    try {
        collect_folders(beyond, "C:");
        FAIL() << "no range error";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), 9);
        EXPECT_EQ(error.about(), join_path(join_path("C:", "149"), "198") +
                                     " is beyond the 30000 folders that can be searched");
    }
}

TEST_F(Search, AFileWithTooManyObjectsEndsTheSearch) {
    const std::string path = folder.write(
        "big.bgl", test::library_file({.objects = std::vector<test::ObjectSpec>(2001)}));
    EXPECT_FALSE(search().done);
    EXPECT_EQ(reporter.boxes.size(), 1U);
    EXPECT_THAT(reporter.messages, ElementsAre(HasSubstr(path)));
}

TEST_F(Search, AFileThatCannotBeReadIsInvalid) {
    if (!test::has_symbolic_links) {
        GTEST_SKIP() << "no symbolic links here";
    }
    folder.write("a.bgl", test::library_file({.objects = {{}}}));
    fs::create_symlink("/dev/null", folder.file("device.bgl"));
    const SearchResult result = search();
    EXPECT_TRUE(result.done);
    EXPECT_EQ(result.statistics.library_files, 1);
    EXPECT_EQ(result.statistics.bgl_files, 1); // a device is no file
}

TEST_F(Search, AFolderThatCannotBeReadIsPassedOver) {
    folder.write("locked/a.bgl", test::object_file());
    folder.write("open/b.bgl", test::object_file());
    fs::permissions(folder.file("locked"), fs::perms::none);
    const bool locked = !fs::exists(folder.file("locked/a.bgl"));
    const SearchResult result = search();
    fs::permissions(folder.file("locked"), fs::perms::owner_all);
    EXPECT_TRUE(result.done);
    if (locked) { // root may read everything
        EXPECT_EQ(result.statistics.object_files, 1);
        EXPECT_THAT(reporter.messages, ElementsAre(HasSubstr(folder.file("locked"))));
    }
}

// A disk some of which cannot be read, whoever asks.
class DamagedDisk final : public test::FaultyDisk {
  public:
    std::vector<FolderEntry> list_folder(const std::string& path) override {
        return path.ends_with("locked") ? throw RuntimeError(ErrorNumber::PermissionDenied, path)
                                        : FaultyDisk::list_folder(path);
    }
    std::unique_ptr<ReadableFile> open_for_reading(const std::string& path) override {
        return path.ends_with("broken.bgl") ? throw RuntimeError(ErrorNumber::DeviceIo, path)
                                            : FaultyDisk::open_for_reading(path);
    }
};

TEST_F(Search, GoesOnBehindWhatCannotBeRead) {
    folder.write("broken.bgl", test::object_file());
    folder.write("locked/a.bgl", test::object_file());
    folder.write("open/b.bgl", test::object_file());
    DamagedDisk damaged;
    Inspector other{{damaged, reporter}, home.path(), programs};
    const SearchResult result = search_folder(other, folder.path(), true, found);
    EXPECT_TRUE(result.done);
    EXPECT_EQ(result.statistics.folders, 3);
    EXPECT_EQ(result.statistics.bgl_files, 2);
    EXPECT_EQ(result.statistics.object_files, 1);
    EXPECT_EQ(result.statistics.invalid_files, 1);
    EXPECT_THAT(reporter.messages,
                ElementsAre("Note: Folders that could not be read and were passed over: 1, the "
                            "first is " +
                            folder.file("locked") + "."));
}

TEST_F(Search, ItCanBeStoppedAmongTheFilesOfOneFolder) {
    for (int i = 0; i < 100; ++i) {
        folder.write("lib" + std::to_string(i) + ".bgl", test::object_file());
    }
    // Stops at the second question about files, which comes before the 65th.
    class Impatient final : public Reporter {
      public:
        void add_message(std::string_view) override {}
        void clear_messages() override {}
        void message_box(std::string_view, Icon) override {}
        bool ask(std::string_view, Icon, std::string_view) override { return false; }
        bool progress(std::string_view what, std::size_t, std::size_t) override {
            return what != "Searching folders" || questions++ == 0;
        }
        int questions = 0;
    } impatient;
    Inspector other{{*disk, impatient}, home.path(), programs};
    const SearchResult result = search_folder(other, folder.path(), true, found);
    EXPECT_FALSE(result.done);
    EXPECT_EQ(result.statistics.object_files, 64);
}

TEST_F(Search, AMissingFolderIsAnError) {
    const SearchResult result = search_folder(inspector, folder.file("missing"), true);
    EXPECT_FALSE(result.done);
    EXPECT_THAT(reporter.boxes,
                ElementsAre(Box{"Error while searching: 76 : Path not found", Icon::None}));
}

TEST_F(Search, AnEmptyFolderGivesASummaryOfZeros) {
    EXPECT_TRUE(search().done);
    EXPECT_THAT(inspector.box.text(), HasSubstr("Library objects......: 0\r\n"));
}

TEST_F(Search, TheUserCanStopIt) {
    folder.write("a/lib.bgl", test::library_file({.objects = {{}}}));
    reporter.keep_going = false;
    const SearchResult result = search();
    EXPECT_FALSE(result.done);
    EXPECT_THAT(reporter.boxes, IsEmpty());
    EXPECT_THAT(inspector.box.text(), HasSubstr("Library objects......: 0\r\n"));
    EXPECT_THAT(reporter.messages, ElementsAre(HasSubstr("stopped")));
}

TEST_F(Search, CompressedLibrariesAreCountedThoughTheyCannotBeUnpacked) {
    const std::string packed =
        test::library_file({.header = {.FL_world_set = 1, .FL_spare2 = 1}, .objects = {{}}});
    folder.write("one.bgl", packed);
    folder.write("two.bgl", packed);
    home.write("tmp.bgl", test::library_file({.objects = {{.name = "Stale"}}}));
    const SearchResult result = search();
    EXPECT_EQ(result.statistics.compressed_files, 2);
    EXPECT_EQ(result.statistics.library_files, 0);
    EXPECT_EQ(result.statistics.object_files, 0);
    EXPECT_EQ(result.statistics.invalid_files, 0);
    EXPECT_EQ(reporter.messages.size(), 1U) << "the same hint once only";
}

} // namespace
} // namespace morvane
