#include "base/errors.h"
#include "support/temp_folder.h"
#include "support/without_rights.h"
#include "system/disk.h"
#include "system/program_folder.h"

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
