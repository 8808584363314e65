// SPDX-License-Identifier: GPL-3.0-or-later
#include "source/line_store.h"
#include "source/source_set.h"
#include "support/faulty_disk.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "upkeep/backup.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace morvane::test {
namespace {

using Names = std::vector<std::string>;

class Backup : public testing::Test {
  protected:
    TempFolder folder;
    FaultyDisk disk;
    RecordingReporter reporter;
    Services services{disk, reporter};
    std::string base = folder.file("plane");
};

TEST_F(Backup, CopiesBothFilesAsTextWithTheExtraEmptyLine) {
    folder.write("plane.asm", "frame\n  second");
    folder.write("plane_0.asm", "model\r\n");
    EXPECT_EQ(backup_source_set(services, base).outcome, Outcome::Done);
    EXPECT_TRUE(reporter.questions.empty());
    EXPECT_EQ(folder.read("plane_azm.bck"), "frame\r\n  second\r\n\r\n");
    EXPECT_EQ(folder.read("plane_asm.bck"), "model\r\n\r\n");
    EXPECT_EQ(folder.read("plane.asm"), "frame\n  second");
}

TEST_F(Backup, AsksWhenTheFramesBackupIsThere) {
    folder.write("plane.asm", "new\r\n");
    folder.write("plane_azm.bck", "old\r\n");
    reporter.answer = false;
    EXPECT_EQ(backup_source_set(services, base).outcome, Outcome::Declined);
    ASSERT_EQ(reporter.questions.size(), 1U);
    EXPECT_EQ(reporter.questions[0].text,
              "A previous backup of the file exists. Do you want to overwrite it ?");
    EXPECT_EQ(reporter.questions[0].icon, Icon::Exclamation);
    EXPECT_EQ(folder.read("plane_azm.bck"), "old\r\n");
    reporter.answer = true;
    EXPECT_EQ(backup_source_set(services, base).outcome, Outcome::Done);
    EXPECT_EQ(folder.read("plane_azm.bck"), "new\r\n\r\n");
}

TEST_F(Backup, OnlyTheModelsBackupThereRaisesNoQuestion) {
    folder.write("plane.asm", "frame\r\n");
    folder.write("plane_0.asm", "model\r\n");
    folder.write("plane_asm.bck", "old\r\n");
    reporter.answer = false;
    EXPECT_EQ(backup_source_set(services, base).outcome, Outcome::Done);
    EXPECT_TRUE(reporter.questions.empty());
    EXPECT_EQ(folder.read("plane_azm.bck"), "frame\r\n\r\n");
    EXPECT_EQ(folder.read("plane_asm.bck"), "model\r\n\r\n");
}

TEST_F(Backup, TheOddNameIsTheOneAskedFor) {
    folder.write("plane.asm", "frame\r\n");
    folder.write("plane_0_asm.bck", "");
    reporter.answer = false;
    EXPECT_EQ(backup_source_set(services, base).outcome, Outcome::Declined);
    EXPECT_EQ(folder.names(), (Names{"plane.asm", "plane_0_asm.bck"}));
}

TEST_F(Backup, AMissingFileIsPassedOver) {
    folder.write("plane_0.asm", "model\r\n");
    EXPECT_EQ(backup_source_set(services, base).outcome, Outcome::Done);
    EXPECT_TRUE(reporter.boxes.empty());
    EXPECT_EQ(folder.names(), (Names{"plane_0.asm", "plane_asm.bck"}));
    EXPECT_EQ(reporter.messages,
              (Names{"Note: " + base + ".asm: there is no such file, so it was not copied."}));
}

TEST_F(Backup, NothingToCopyIsNoErrorButAHint) {
    const CopyResult result = backup_source_set(services, base);
    EXPECT_EQ(result.outcome, Outcome::Done);
    EXPECT_TRUE(reporter.boxes.empty());
    EXPECT_EQ(reporter.messages,
              (Names{"Note: " + base + ".asm: there is no such file, so it was not copied.",
                     "Note: " + base + "_0.asm: there is no such file, so it was not copied."}));
    EXPECT_EQ(result.bases_without_files(), Names{base});
}

TEST_F(Backup, TellsWhatWasCopiedAndWhatWasMissing) {
    folder.write("plane.asm", "frame\r\n");
    folder.write("high.asm", "high\r\n");
    folder.write("high_0.asm", "high\r\n");
    const std::string high = folder.file("high");
    const std::string none = folder.file("none");
    const CopyResult result = backup_aircraft_sets(services, {base, none, high});
    EXPECT_EQ(result.outcome, Outcome::Done);
    Names copied;
    for (const FileCopy& copy : result.copied) {
        copied.push_back(copy.from + " " + copy.to);
    }
    EXPECT_EQ(copied, (Names{base + ".asm " + base + "_azm.bck", high + ".asm " + high + "_azm.bck",
                             high + "_0.asm " + high + "_asm.bck"}));
    Names missing;
    for (const FileCopy& copy : result.missing) {
        missing.push_back(copy.from);
    }
    EXPECT_EQ(missing, (Names{base + "_0.asm", none + ".asm", none + "_0.asm"}));
    EXPECT_EQ(result.bases_without_files(), Names{none});
}

TEST_F(Backup, WithoutAskingOverAnEarlierBackup) {
    folder.write("plane.asm", "new\r\n");
    folder.write("plane_azm.bck", "old\r\n");
    reporter.answer = false;
    EXPECT_EQ(backup_without_asking(services, base).outcome, Outcome::Done);
    EXPECT_TRUE(reporter.questions.empty());
    EXPECT_EQ(folder.read("plane_azm.bck"), "new\r\n\r\n");
}

TEST_F(Backup, TheAircraftAsksOnceForAnyBackupOfAnySet) {
    const std::vector<std::string> bases{base, folder.file("low")};
    folder.write("low_0.asm", "low\r\n");
    folder.write("low_asm.bck", "old\r\n");
    reporter.answer = false;
    EXPECT_EQ(backup_aircraft_sets(services, bases).outcome, Outcome::Declined);
    ASSERT_EQ(reporter.questions.size(), 1U);
    EXPECT_EQ(reporter.questions[0].text,
              "A previous backup of the selected files exists. Do you want to overwrite it ?");
    EXPECT_EQ(reporter.questions[0].icon, Icon::Exclamation);
    EXPECT_EQ(folder.read("low_asm.bck"), "old\r\n");
}

TEST_F(Backup, TheAircraftDoesNotAskForTheOddName) {
    folder.write("plane.asm", "frame\r\n");
    folder.write("plane_0_asm.bck", "");
    EXPECT_EQ(backup_aircraft_sets(services, {base, base}).outcome, Outcome::Done);
    EXPECT_TRUE(reporter.questions.empty());
    EXPECT_EQ(folder.read("plane_azm.bck"), "frame\r\n\r\n");
}

TEST_F(Backup, EmptyPathsNameFilesOfTheCurrentFolder) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    EXPECT_EQ(backup_aircraft_sets(services, Names(5)).outcome, Outcome::Done);
    EXPECT_TRUE(folder.names().empty());
    folder.write("_0.asm", "model\r\n");
    EXPECT_EQ(backup_aircraft_sets(services, Names(1)).outcome, Outcome::Done);
    std::filesystem::current_path(before);
    EXPECT_EQ(folder.names(), (Names{"_0.asm", "_asm.bck"}));
}

TEST_F(Backup, AFailureStopsTheCopyingAndKeepsWhatWasCopied) {
    folder.write("plane.asm", "frame\r\n");
    folder.write("plane_0.asm", "model\r\n");
    std::filesystem::create_directory(folder.file("plane_asm.bck"));
    EXPECT_EQ(backup_source_set(services, base).outcome, Outcome::Failed);
    EXPECT_EQ(reporter.boxes, (std::vector<RecordingReporter::Box>{
                                  {"Error while copying: 75 : Path/File access error"}}));
    EXPECT_EQ(folder.read("plane_azm.bck"), "frame\r\n\r\n");
    EXPECT_EQ(reporter.messages[0],
              "Note: " + base + "_azm.bck had already been written from " + base + ".asm.");
}

using Boxes = std::vector<RecordingReporter::Box>;

TEST_F(Backup, ASourceThatCannotBeReadStopsTheCopying) {
    folder.write("plane.asm", "frame\r\n");
    folder.write("plane_0.asm", "model\r\n");
    disk.fail_at(1, ErrorNumber::PermissionDenied);
    EXPECT_EQ(backup_source_set(services, base).outcome, Outcome::Failed);
    EXPECT_EQ(reporter.boxes, (Boxes{{"Error in load_file2array: 70 :Permission denied"},
                                     {"Error while copying: 70 : Permission denied"}}));
    EXPECT_EQ(folder.names(), (Names{"plane.asm", "plane_0.asm"}));
}

TEST_F(Backup, ABackupThatCannotBeReadStopsTheRestoring) {
    folder.write("plane.asm", "frame of now\r\n");
    folder.write("plane_0.asm", "model of now\r\n");
    folder.write("plane_azm.bck", "frame\r\n");
    folder.write("plane_asm.bck", "model\r\n");
    disk.fail_at(1, ErrorNumber::PermissionDenied);
    EXPECT_EQ(restore_source_sets(services, {base}).outcome, Outcome::Failed);
    EXPECT_EQ(reporter.boxes, (Boxes{{"Error in load_file2array: 70 :Permission denied"},
                                     {"Error while restoring: 70 : Permission denied"}}));
    EXPECT_EQ(folder.read("plane.asm"), "frame of now\r\n");
    EXPECT_EQ(folder.read("plane_0.asm"), "model of now\r\n");
}

TEST_F(Backup, EveryFaultOfARestoreLeavesOldFilesOrNewOnes) {
    for (std::size_t n = 1; n < 40; ++n) {
        folder.write("plane.asm", "changed\r\n");
        folder.write("plane_0.asm", "changed too\r\n");
        folder.write("plane_azm.bck", "frame\r\n");
        folder.write("plane_asm.bck", "model\r\n");
        disk.fail_at(n, ErrorNumber::DiskFull);
        const Outcome outcome = restore_source_sets(services, {base}).outcome;
        const std::string frame = folder.read("plane.asm");
        const std::string model = folder.read("plane_0.asm");
        EXPECT_TRUE(frame == "changed\r\n" || frame == "frame\r\n\r\n") << n << frame;
        EXPECT_TRUE(model == "changed too\r\n" || model == "model\r\n\r\n") << n << model;
        EXPECT_EQ(folder.names().size(), 4U) << n;
        if (disk.calls() < n) {
            EXPECT_EQ(outcome, Outcome::Done);
            return;
        }
    }
    FAIL() << "a restore made too many calls";
}

TEST_F(Backup, RestoreAsksAndDoesNothingOnNo) {
    folder.write("plane_azm.bck", "frame\r\n");
    reporter.answer = false;
    EXPECT_EQ(restore_source_sets(services, {base}).outcome, Outcome::Declined);
    ASSERT_EQ(reporter.questions.size(), 1U);
    EXPECT_EQ(reporter.questions[0].text, "Do you want to overwrite the working files ?");
    EXPECT_EQ(reporter.questions[0].icon, Icon::Exclamation);
    EXPECT_EQ(folder.names(), Names{"plane_azm.bck"});
}

TEST_F(Backup, RestoreWithoutBackupsShowsOnlyTheQuestion) {
    folder.write("plane.asm", "frame\r\n");
    EXPECT_EQ(restore_source_sets(services, {base}).outcome, Outcome::Done);
    EXPECT_EQ(reporter.questions.size(), 1U);
    EXPECT_TRUE(reporter.boxes.empty());
    EXPECT_TRUE(reporter.plain_messages().empty());
    EXPECT_EQ(folder.read("plane.asm"), "frame\r\n");
}

TEST_F(Backup, AFailingRestoreSaysSo) {
    folder.write("plane_azm.bck", "frame\r\n");
    std::filesystem::create_directory(folder.file("plane.asm"));
    EXPECT_EQ(restore_source_sets(services, {base}).outcome, Outcome::Failed);
    EXPECT_EQ(reporter.boxes, (std::vector<RecordingReporter::Box>{
                                  {"Error while restoring: 75 : Path/File access error"}}));
}

std::vector<std::string> lines_of(const std::string& path) {
    const auto real = make_system_disk();
    const LineStore store(read_bytes(*real, path));
    std::vector<std::string> lines;
    for (std::size_t i = 1; i <= store.count(); ++i) {
        lines.emplace_back(store.line(i));
    }
    return lines;
}

TEST_F(Backup, RestoreGivesTheOriginalLinesBack) {
    const Names bases{base, folder.file("high")};
    const std::string odd = "\tframe  ,; \x80\xff\rsecond\n\n  last without an end";
    folder.write("plane.asm", odd);
    folder.write("plane_0.asm", "model\r\n");
    folder.write("high_0.asm", "");
    const Names before = lines_of(base + ".asm");
    ASSERT_EQ(backup_aircraft_sets(services, bases).outcome, Outcome::Done);
    folder.write("plane.asm", "rewritten\r\n");
    folder.write("plane_0.asm", "");
    folder.write("high_0.asm", "much\r\nmore\r\n");
    ASSERT_EQ(restore_source_sets(services, bases).outcome, Outcome::Done);
    Names after = lines_of(base + ".asm");
    // Each of the two copies adds one empty line.
    EXPECT_EQ(after.size(), before.size() + 2);
    after.resize(before.size());
    EXPECT_EQ(after, before);
    EXPECT_EQ(lines_of(base + "_0.asm"), (Names{"model", "", ""}));
    EXPECT_EQ(lines_of(folder.file("high_0.asm")), (Names{"", ""}));
}

const Names exported{
    "    MATERIAL_LIST_BEGIN", "    MATERIAL_DEF 1,0,0,1, 1,0,0, 1.0,0.0,0.0, 0,0,0, 0 ; 0",
    "    MATERIAL_LIST_END",   "    MATERIAL 0,0",
    "    DRAW_TRI_BEGIN 0, 3", "    DRAW_TRI 0, 1, 2",
    "    DRAW_TRI_END"};
const Names rewritten{exported[0],
                      exported[1],
                      exported[2],
                      exported[3],
                      ";     DRAW_TRI_BEGIN 0, 3",
                      ";     DRAW_TRI 0, 1, 2",
                      ";     DRAW_TRI_END"};

TEST_F(Backup, ARewrittenSetOverTheBackupOfAnExportWouldLoseIt) {
    folder.write("plane_0.asm", crlf(rewritten));
    folder.write("plane_asm.bck", crlf(exported));
    EXPECT_TRUE(would_lose_export(services, {folder.file("other"), base}));
    EXPECT_EQ(reporter.boxes,
              (Boxes{{base + "_asm.bck holds the model as it was exported, and " + base +
                          "_0.asm was rewritten since. Nothing was copied; --force copies it all "
                          "the same.",
                      Icon::Critical}}));
}

TEST_F(Backup, OtherSetsLoseNothing) {
    folder.write("plane_0.asm", crlf(rewritten));
    EXPECT_FALSE(would_lose_export(services, {base})); // no backup yet
    folder.write("plane_asm.bck", crlf(rewritten));
    EXPECT_FALSE(would_lose_export(services, {base}));
    folder.write("plane_0.asm", crlf(exported));
    EXPECT_FALSE(would_lose_export(services, {base}));
    folder.write("plane_asm.bck", crlf(exported));
    EXPECT_FALSE(would_lose_export(services, {base}));
    EXPECT_TRUE(reporter.boxes.empty());
}

TEST_F(Backup, WhatCannotBeFoundOutMayLoseAnExport) {
    folder.write("plane_0.asm", crlf(rewritten));
    folder.write("plane_asm.bck", crlf(exported));
    for (const std::size_t file : {1U, 2U}) {
        disk.fail_at(file, ErrorNumber::PermissionDenied);
        reporter.boxes.clear();
        EXPECT_TRUE(would_lose_export(services, {base}));
        EXPECT_EQ(reporter.boxes, (Boxes{{"Error while copying: 70 : Permission denied"}}));
    }
}

std::filesystem::perms permissions_of(const std::string& path) {
    return std::filesystem::status(path).permissions();
}

TEST_F(Backup, KeepsThePermissionsOfTheOriginal) {
    using std::filesystem::perms;
    const perms private_mode = perms::owner_read | perms::owner_write | perms::group_read;
    std::filesystem::permissions(folder.write("plane.asm", "frame\r\n"), private_mode);
    std::filesystem::permissions(folder.write("plane_0.asm", "model\r\n"), private_mode);
    folder.write("plane_asm.bck", "of before, open to all\r\n");
    const perms kept = permissions_of(base + ".asm"); // Windows knows fewer
    ASSERT_EQ(backup_source_set(services, base).outcome, Outcome::Done);
    EXPECT_EQ(permissions_of(base + "_azm.bck"), kept);
    EXPECT_EQ(permissions_of(base + "_asm.bck"), kept);
}

TEST_F(Backup, ARestoredFileKeepsItsPermissions) {
    using std::filesystem::perms;
    const perms private_mode = perms::owner_read | perms::owner_write | perms::group_read;
    folder.write("plane_azm.bck", "of an earlier version, open to all\r\n");
    std::filesystem::permissions(folder.write("plane.asm", "frame\r\n"), private_mode);
    std::filesystem::permissions(folder.write("plane_asm.bck", "model\r\n"), private_mode);
    const perms kept = permissions_of(base + ".asm");
    ASSERT_EQ(restore_source_sets(services, {base}).outcome, Outcome::Done);
    EXPECT_EQ(permissions_of(base + ".asm"), kept);
    EXPECT_EQ(permissions_of(base + "_0.asm"), kept); // it was gone
}

} // namespace
} // namespace morvane::test
