// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "base/paths.h"
#include "support/faulty_disk.h"
#include "support/temp_folder.h"
#include "support/without_rights.h"
#include "system/disk.h"
#include "system/program_places.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace morvane::test {
namespace {

class ProgramFolder : public testing::Test {
  protected:
    TempFolder folder;
    std::unique_ptr<Disk> disk = make_system_disk();
};

TEST_F(ProgramFolder, TakesTheFirstChoice) {
    ProgramFolderChoices choices{folder.file("option"), folder.file("home"), folder.path(),
                                 folder.file("data")};
    EXPECT_EQ(resolve_program_folder(*disk, choices), folder.file("option"));
    choices.option.clear();
    EXPECT_EQ(resolve_program_folder(*disk, choices), folder.file("home"));
    choices.environment.clear();
    EXPECT_EQ(resolve_program_folder(*disk, choices), folder.path());
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"home", "option"}));
}

TEST_F(ProgramFolder, FallsBackToTheUsersOwnFolderAndCreatesIt) {
    const ProgramFolderChoices choices{"", "", folder.file("no such folder"),
                                       folder.file("share/morvane")};
    EXPECT_EQ(resolve_program_folder(*disk, choices), folder.file("share/morvane"));
    EXPECT_TRUE(disk->is_folder(folder.file("share/morvane")));
}

TEST_F(ProgramFolder, AFolderThatCannotBeMadeIsAnError) {
    folder.write("file", "");
    EXPECT_THROW(resolve_program_folder(*disk, {folder.file("file/sub"), "", "", ""}),
                 RuntimeError);
    EXPECT_THROW(resolve_program_folder(*disk, {}), RuntimeError);
}

// Root may write there.
TEST_F(ProgramFolder, AFolderOfTheSystemIsPassedOver) {
    class WritableEverywhere final : public FaultyDisk {
      public:
        bool is_writable_folder(const std::string& /*path*/) override { return true; }
    } everywhere;
    const std::string data = folder.file("data");
    for (const char* bin : {"/usr/bin", "/usr", "/usr/local/bin", "/bin", "/opt/morvane", "/sbin",
                            "/usr/lib/morvane"}) {
        EXPECT_EQ(resolve_program_folder(everywhere, {"", "", bin, data}), data) << bin;
    }
    for (const char* bin : {"/home/me/bin", "/usrlocal", "/optical", "/srv/morvane"}) {
        EXPECT_EQ(resolve_program_folder(everywhere, {"", "", bin, data}), bin);
    }
    // What was asked for is taken all the same.
    EXPECT_FALSE(is_system_folder(""));
    EXPECT_EQ(resolve_program_folder(everywhere, {data, "", "/usr/bin", ""}), data);
}

TEST(HelperFolders, AreBesideTheProgramAndInTheInstalledLibraryFolder) {
    EXPECT_EQ(
        helper_folders(join_path("prefix", "bin")),
        (std::vector<std::string>{
            join_path("prefix", "bin"),
            join_path(join_path(join_path(join_path("prefix", "bin"), ".."), "lib"), "morvane")}));
}

// The folders that are there are compared, whatever ".." they are written with.
TEST_F(ProgramFolder, DocumentsAndMacrosAreFoundInEveryLayout) {
    const auto found = [&](const std::vector<std::string>& folders, const std::string& file) {
        std::vector<std::string> places;
        for (const std::string& path : folders) {
            if (disk->is_file(join_path(path, file))) {
                places.push_back(std::filesystem::path(path)
                                     .lexically_normal()
                                     .lexically_relative(folder.path())
                                     .generic_string());
            }
        }
        return places;
    };
    for (const std::string file :
         {"windows/docs/guide.md", "windows/morvane.inc", "usr/share/doc/morvane/guide.md",
          "usr/share/morvane/morvane.inc", "checkout/docs/guide.md",
          "checkout/share/morvane.inc"}) {
        folder.write(file, "");
    }
    for (const std::string programs : {"windows", "usr/bin", "checkout/build/test/src/cli"}) {
        std::filesystem::create_directories(folder.file(programs));
    }
    using Places = std::vector<std::string>;
    const auto documents = [&](const std::string& program) {
        return found(document_folders(folder.file(program)), "guide.md");
    };
    EXPECT_EQ(documents("windows"), Places{"windows/docs"});
    EXPECT_EQ(documents("usr/bin"), Places{"usr/share/doc/morvane"});
    EXPECT_EQ(documents("checkout/build/test/src/cli"), Places{"checkout/docs"});
    const auto macros = [&](const std::string& program) {
        return found(macro_folders(folder.file(program)), "morvane.inc");
    };
    EXPECT_EQ(macros("windows"), Places{"windows"});
    EXPECT_EQ(macros("usr/bin"), Places{"usr/share/morvane"});
    EXPECT_EQ(macros("checkout/build/test/src/cli"), Places{"checkout/share"});
}

#ifndef _WIN32
TEST_F(ProgramFolder, AReadOnlyExecutableFolderIsPassedOver) {
    std::filesystem::create_directory(folder.file("bin"));
    std::filesystem::create_directory(folder.file("data"));
    std::filesystem::permissions(folder.file("bin"), std::filesystem::perms(0555));
    // Nothing is forbidden to root, so another user looks.
    EXPECT_TRUE(test::holds_without_rights([&] {
        return resolve_program_folder(*disk, {"", "", folder.file("bin"), folder.file("data")}) ==
               folder.file("data");
    }));
}
#endif

#ifndef _WIN32
TEST(UserDataFolder, FollowsTheDesktopsRules) {
    EXPECT_EQ(user_data_folder("/data", "/home/me"), "/data/morvane");
    EXPECT_EQ(user_data_folder("", "/home/me"), "/home/me/.local/share/morvane");
    EXPECT_EQ(user_data_folder("relative", "/home/me"), "/home/me/.local/share/morvane");
    EXPECT_EQ(user_data_folder("", ""), "");
}
#endif

} // namespace
} // namespace morvane::test
