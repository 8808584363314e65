// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/paths.h"
#include "support/faulty_disk.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "upkeep/settings.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace morvane::test {
namespace {

using Names = std::vector<std::string>;

class Settings : public testing::Test {
  protected:
    TempFolder folder;
    FaultyDisk disk;
    RecordingReporter reporter;
    Services services{disk, reporter};
    MainPaths defaults{"default in", "default out"};
};

TEST_F(Settings, MainPathsAreTwoLinesAsWritten) {
    write_main_paths(disk, folder.path(), {" c:\\sets\\airport ", "out"});
    EXPECT_EQ(folder.read("morvane.ini"), " c:\\sets\\airport \r\nout\r\n");
    EXPECT_EQ(read_main_paths(services, folder.path(), defaults),
              (MainPaths{" c:\\sets\\airport ", "out"}));
    EXPECT_TRUE(reporter.messages.empty());
}

TEST_F(Settings, AFirstStartKeepsTheDefaultsAndWritesNothing) {
    EXPECT_EQ(read_main_paths(services, folder.path(), defaults), defaults);
    EXPECT_TRUE(reporter.messages.empty());
    EXPECT_TRUE(folder.names().empty());
}

TEST_F(Settings, AShortMainFileKeepsTheDefaultsForTheRestAndSaysSo) {
    folder.write("morvane.ini", "first");
    EXPECT_EQ(read_main_paths(services, folder.path(), defaults),
              (MainPaths{"first", "default out"}));
    EXPECT_EQ(reporter.messages, Names{"Note: " + folder.file("morvane.ini") +
                                       " has fewer than 2 lines; defaults are used for the rest."});
    folder.write("morvane.ini", "");
    EXPECT_EQ(read_main_paths(services, folder.path(), defaults), defaults);
}

TEST_F(Settings, AnUnreadableMainFileKeepsTheDefaultsAndSaysSo) {
    folder.write("morvane.ini", "a\r\nb\r\n");
    disk.fail_at(1, ErrorNumber::PermissionDenied);
    EXPECT_EQ(read_main_paths(services, folder.path(), defaults), defaults);
    ASSERT_EQ(reporter.messages.size(), 1U);
    EXPECT_NE(reporter.messages[0].find("Permission denied"), std::string::npos);
}

TEST_F(Settings, AircraftPathsAreWrittenUntrimmedBehindTheHeader) {
    write_aircraft_paths(disk, folder.path(), {" a ", "b", "", "d", "e"});
    EXPECT_EQ(folder.read("model.ini"), "md001\r\n a \r\nb\r\n\r\nd\r\ne\r\n");
}

TEST_F(Settings, AircraftPathsComeBackTrimmedBehindAnyHeader) {
    folder.write("model.ini", "anything at all\r\n  a  \r\n b\r\nc\r\n\r\n e \r\n");
    EXPECT_EQ(read_aircraft_paths(services, folder.path()),
              (AircraftPaths{"a", "b", "c", "", "e"}));
    EXPECT_TRUE(reporter.messages.empty());
}

TEST_F(Settings, AMissingAircraftFileIsCreatedWithEmptyPaths) {
    EXPECT_EQ(read_aircraft_paths(services, folder.path()), AircraftPaths{});
    EXPECT_EQ(folder.read("model.ini"), "md001\r\n\r\n\r\n\r\n\r\n\r\n");
    EXPECT_TRUE(reporter.messages.empty());
}

TEST_F(Settings, AShortAircraftFileSaysSo) {
    folder.write("model.ini", "md001\r\na\r\nb\r\n");
    EXPECT_EQ(read_aircraft_paths(services, folder.path()), (AircraftPaths{"a", "b", "", "", ""}));
    EXPECT_EQ(reporter.messages, Names{"Note: " + folder.file("model.ini") +
                                       " has fewer than 6 lines; defaults are used for the rest."});
}

TEST_F(Settings, TheLibraryFolderComesBackWhileItIsThere) {
    write_library_folder(disk, folder.path(), folder.path());
    EXPECT_EQ(folder.read("libview.ini"), folder.path() + "\r\n");
    EXPECT_EQ(read_library_folder(disk, folder.path()), folder.path());
    write_library_folder(disk, folder.path(), folder.file("gone"));
    EXPECT_EQ(read_library_folder(disk, folder.path()), std::nullopt);
    folder.write("libview.ini", "");
    EXPECT_EQ(read_library_folder(disk, folder.path()), std::nullopt);
}

TEST_F(Settings, ARelativeLibraryFolderCountsFromTheProgramFolder) {
    folder.write("scenery/world/a.bgl", "");
    folder.write("libview.ini", "scenery/world\r\n");
    EXPECT_EQ(read_library_folder(disk, folder.path()), folder.file("scenery/world"));
    folder.write("libview.ini", "scenery/world/..\r\n");
    const auto shown = read_library_folder(disk, folder.path());
    ASSERT_TRUE(shown);
    EXPECT_TRUE(disk.is_folder(join_path(*shown, "world")));
    folder.write("libview.ini", "gone\r\n");
    EXPECT_EQ(read_library_folder(disk, folder.path()), std::nullopt);
}

TEST_F(Settings, AMissingLibraryFileIsPassedOver) {
    EXPECT_EQ(read_library_folder(disk, folder.path()), std::nullopt);
    EXPECT_TRUE(folder.names().empty());
}

TEST_F(Settings, EffectNamesAreTakenAsTheyStand) {
    folder.write("fx_list.txt", "fx_one\r\n fx two \r\n\r\n");
    EXPECT_EQ(read_effect_names(services, folder.path()), (Names{"fx_one", " fx two ", ""}));
}

TEST_F(Settings, AMissingEffectListIsCreatedWithTheStockNames) {
    const Names stock{"fx_beacon",  "fx_strobe",  "fx_navred", "fx_navgre",  "fx_navwhi",
                      "fx_landing", "fx_smoke_w", "fx_sparks", "fx_engfire", "fx_tchdwn"};
    EXPECT_EQ(read_effect_names(services, folder.path()), stock);
    EXPECT_EQ(folder.read("fx_list.txt"), crlf(stock));
}

TEST_F(Settings, AnUnreadableEffectListGivesTheStockNamesAndIsLeftAlone) {
    folder.write("fx_list.txt", "fx_own\r\n");
    disk.fail_at(1, ErrorNumber::PermissionDenied);
    EXPECT_EQ(read_effect_names(services, folder.path()).at(0), "fx_beacon");
    ASSERT_EQ(reporter.messages.size(), 1U);
    EXPECT_TRUE(reporter.messages[0].starts_with("Note: " + folder.file("fx_list.txt")))
        << reporter.messages[0];
    EXPECT_EQ(folder.read("fx_list.txt"), "fx_own\r\n");
}

TEST_F(Settings, AFolderThatCannotBeWrittenToStillGivesDefaults) {
    disk.fail_at(1, ErrorNumber::PermissionDenied);
    EXPECT_EQ(read_aircraft_paths(services, folder.path()), AircraftPaths{});
    EXPECT_EQ(reporter.messages, Names{"Note: " + folder.file("model.ini") +
                                       " is missing and cannot be created (Permission denied)."});
    EXPECT_TRUE(folder.names().empty());
}

} // namespace
} // namespace morvane::test
