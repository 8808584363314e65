#include "source/line_store.h"
#include "source/source_set.h"
#include "source/text_files.h"
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
    EXPECT_EQ(backup_source_set(services, base), Outcome::Done);
    EXPECT_TRUE(reporter.questions.empty());
    EXPECT_EQ(folder.read("plane_azm.bck"), "frame\r\n  second\r\n\r\n");
    EXPECT_EQ(folder.read("plane_asm.bck"), "model\r\n\r\n");
    EXPECT_EQ(folder.read("plane.asm"), "frame\n  second");
}

TEST_F(Backup, AsksWhenTheFramesBackupIsThere) {
    folder.write("plane.asm", "new\r\n");
    folder.write("plane_azm.bck", "old\r\n");
    reporter.answer = false;
    EXPECT_EQ(backup_source_set(services, base), Outcome::Declined);
    ASSERT_EQ(reporter.questions.size(), 1U);
    EXPECT_EQ(reporter.questions[0].text,
              "A previous backup of the file exists. Do you want to overwrite it ?");
    EXPECT_EQ(reporter.questions[0].icon, Icon::Exclamation);
    EXPECT_EQ(folder.read("plane_azm.bck"), "old\r\n");
    reporter.answer = true;
    EXPECT_EQ(backup_source_set(services, base), Outcome::Done);
    EXPECT_EQ(folder.read("plane_azm.bck"), "new\r\n\r\n");
}

TEST_F(Backup, OnlyTheModelsBackupThereRaisesNoQuestion) {
    folder.write("plane.asm", "frame\r\n");
    folder.write("plane_0.asm", "model\r\n");
    folder.write("plane_asm.bck", "old\r\n");
    reporter.answer = false;
    EXPECT_EQ(backup_source_set(services, base), Outcome::Done);
    EXPECT_TRUE(reporter.questions.empty());
    EXPECT_EQ(folder.read("plane_azm.bck"), "frame\r\n\r\n");
    EXPECT_EQ(folder.read("plane_asm.bck"), "model\r\n\r\n");
}

TEST_F(Backup, TheOddNameIsTheOneAskedFor) {
    folder.write("plane.asm", "frame\r\n");
    folder.write("plane_0_asm.bck", "");
    reporter.answer = false;
    EXPECT_EQ(backup_source_set(services, base), Outcome::Declined);
    EXPECT_EQ(folder.names(), (Names{"plane.asm", "plane_0_asm.bck"}));
}

TEST_F(Backup, AMissingFileIsPassedOver) {
    folder.write("plane_0.asm", "model\r\n");
    EXPECT_EQ(backup_source_set(services, base), Outcome::Done);
    EXPECT_TRUE(reporter.boxes.empty());
    EXPECT_EQ(folder.names(), (Names{"plane_0.asm", "plane_asm.bck"}));
}

TEST_F(Backup, NothingToCopyIsNoErrorButAHint) {
    EXPECT_EQ(backup_source_set(services, base), Outcome::Done);
    EXPECT_TRUE(reporter.boxes.empty());
    EXPECT_EQ(reporter.messages, (Names{"Note: nothing was copied, since there is no file " + base +
                                        ".asm or " + base + "_0.asm."}));
}

TEST_F(Backup, TheAircraftAsksOnceForAnyBackupOfAnySet) {
    const std::vector<std::string> bases{base, folder.file("low")};
    folder.write("low_0.asm", "low\r\n");
    folder.write("low_asm.bck", "old\r\n");
    reporter.answer = false;
    EXPECT_EQ(backup_aircraft_sets(services, bases), Outcome::Declined);
    ASSERT_EQ(reporter.questions.size(), 1U);
    EXPECT_EQ(reporter.questions[0].text,
              "A previous backup of the selected files exists. Do you want to overwrite it ?");
    EXPECT_EQ(reporter.questions[0].icon, Icon::Exclamation);
    EXPECT_EQ(folder.read("low_asm.bck"), "old\r\n");
}

TEST_F(Backup, TheAircraftDoesNotAskForTheOddName) {
    folder.write("plane.asm", "frame\r\n");
    folder.write("plane_0_asm.bck", "");
    EXPECT_EQ(backup_aircraft_sets(services, {base, base}), Outcome::Done);
    EXPECT_TRUE(reporter.questions.empty());
    EXPECT_EQ(folder.read("plane_azm.bck"), "frame\r\n\r\n");
}

TEST_F(Backup, EmptyPathsNameFilesOfTheCurrentFolder) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    EXPECT_EQ(backup_aircraft_sets(services, Names(5)), Outcome::Done);
    EXPECT_TRUE(folder.names().empty());
    folder.write("_0.asm", "model\r\n");
    EXPECT_EQ(backup_aircraft_sets(services, Names(1)), Outcome::Done);
    std::filesystem::current_path(before);
    EXPECT_EQ(folder.names(), (Names{"_0.asm", "_asm.bck"}));
}

TEST_F(Backup, AFailureStopsTheCopyingAndKeepsWhatWasCopied) {
    folder.write("plane.asm", "frame\r\n");
    folder.write("plane_0.asm", "model\r\n");
    std::filesystem::create_directory(folder.file("plane_asm.bck"));
    EXPECT_EQ(backup_source_set(services, base), Outcome::Failed);
    EXPECT_EQ(reporter.boxes, (std::vector<RecordingReporter::Box>{
                                  {"Error while copying: 75 : Path/File access error"}}));
    EXPECT_EQ(folder.read("plane_azm.bck"), "frame\r\n\r\n");
    EXPECT_EQ(reporter.messages[0],
              "Note: " + base + "_azm.bck had already been written from " + base + ".asm.");
}

TEST_F(Backup, ASourceThatCannotBeReadStopsTheCopying) {
    folder.write("plane.asm", "frame\r\n");
    folder.write("plane_0.asm", "model\r\n");
    disk.fail_at(1, ErrorNumber::PermissionDenied);
    EXPECT_EQ(backup_source_set(services, base), Outcome::Failed);
    EXPECT_EQ(reporter.boxes, (std::vector<RecordingReporter::Box>{
                                  {"Error in load_file2array: 70 :Permission denied"}}));
    EXPECT_EQ(folder.names(), (Names{"plane.asm", "plane_0.asm"}));
}

TEST_F(Backup, EveryFaultOfARestoreLeavesOldFilesOrNewOnes) {
    for (std::size_t n = 1; n < 40; ++n) {
        folder.write("plane.asm", "changed\r\n");
        folder.write("plane_0.asm", "changed too\r\n");
        folder.write("plane_azm.bck", "frame\r\n");
        folder.write("plane_asm.bck", "model\r\n");
        disk.fail_at(n, ErrorNumber::DiskFull);
        const Outcome outcome = restore_source_sets(services, {base});
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
    EXPECT_EQ(restore_source_sets(services, {base}), Outcome::Declined);
    ASSERT_EQ(reporter.questions.size(), 1U);
    EXPECT_EQ(reporter.questions[0].text, "Do you want to overwrite the working files ?");
    EXPECT_EQ(reporter.questions[0].icon, Icon::Exclamation);
    EXPECT_EQ(folder.names(), Names{"plane_azm.bck"});
}

TEST_F(Backup, RestoreWithoutBackupsShowsOnlyTheQuestion) {
    folder.write("plane.asm", "frame\r\n");
    EXPECT_EQ(restore_source_sets(services, {base}), Outcome::Done);
    EXPECT_EQ(reporter.questions.size(), 1U);
    EXPECT_TRUE(reporter.boxes.empty());
    EXPECT_TRUE(reporter.plain_messages().empty());
    EXPECT_EQ(folder.read("plane.asm"), "frame\r\n");
}

TEST_F(Backup, AFailingRestoreSaysSo) {
    folder.write("plane_azm.bck", "frame\r\n");
    std::filesystem::create_directory(folder.file("plane.asm"));
    EXPECT_EQ(restore_source_sets(services, {base}), Outcome::Failed);
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
    ASSERT_EQ(backup_aircraft_sets(services, bases), Outcome::Done);
    folder.write("plane.asm", "rewritten\r\n");
    folder.write("plane_0.asm", "");
    folder.write("high_0.asm", "much\r\nmore\r\n");
    ASSERT_EQ(restore_source_sets(services, bases), Outcome::Done);
    Names after = lines_of(base + ".asm");
    // Each of the two copies adds one empty line.
    EXPECT_EQ(after.size(), before.size() + 2);
    after.resize(before.size());
    EXPECT_EQ(after, before);
    EXPECT_EQ(lines_of(base + "_0.asm"), (Names{"model", "", ""}));
    EXPECT_EQ(lines_of(folder.file("high_0.asm")), (Names{"", ""}));
}

} // namespace
} // namespace morvane::test
