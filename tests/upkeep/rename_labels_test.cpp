// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/faulty_disk.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "upkeep/rename_labels.h"

#include <gtest/gtest.h>

namespace morvane::test {
namespace {

using Boxes = std::vector<RecordingReporter::Box>;
using Names = std::vector<std::string>;

class RenameLabels : public testing::Test {
  protected:
    TempFolder folder;
    FaultyDisk disk;
    RecordingReporter reporter;
    Services services{disk, reporter};
};

TEST_F(RenameLabels, LogsAsksAndSaves) {
    const std::string path =
        folder.write("wing_0.asm", "wing label BGLCODE\r\n  CALL wing\r\nend label x\r\n");
    EXPECT_EQ(rename_labels(services, path, "G2"), Outcome::Done);
    EXPECT_EQ(reporter.messages,
              (Names{"Open file returned 4 lines of code", "Labels mofilied : 2", "File saved"}));
    ASSERT_EQ(reporter.questions.size(), 1U);
    EXPECT_EQ(reporter.questions[0].text, "Do you want to save the changes ? ");
    EXPECT_EQ(reporter.questions[0].icon, Icon::None);
    EXPECT_EQ(reporter.questions[0].title, "File replace");
    EXPECT_EQ(folder.read("wing_0.asm"),
              "wingG2 label BGLCODE\r\n  CALL wingG2\r\nendG2 label x\r\n\r\n");
}

TEST_F(RenameLabels, NoDropsTheChanges) {
    const std::string path = folder.write("wing_0.asm", "wing label BGLCODE\n");
    reporter.answer = false;
    EXPECT_EQ(rename_labels(services, path, "G2"), Outcome::Declined);
    EXPECT_EQ(reporter.messages.back(), "Labels mofilied : 1");
    EXPECT_EQ(folder.read("wing_0.asm"), "wing label BGLCODE\n");
}

TEST_F(RenameLabels, AnEmptySuffixSavesTheSameLines) {
    const std::string path = folder.write("wing_0.asm", "wing label BGLCODE\r\n\tx\r\n");
    EXPECT_EQ(rename_labels(services, path, ""), Outcome::Done);
    EXPECT_EQ(folder.read("wing_0.asm"), "wing label BGLCODE\r\n\tx\r\n\r\n");
}

TEST_F(RenameLabels, AMissingFileGivesBothMessages) {
    const std::string path = folder.file("none.asm");
    EXPECT_EQ(rename_labels(services, path, "G2"), Outcome::Failed);
    EXPECT_EQ(reporter.boxes,
              (Boxes{{"Error ! File does not exist: (" + path + ").", Icon::Critical},
                     {"File returns no lines.", Icon::Critical}}));
    EXPECT_TRUE(folder.names().empty());
}

TEST_F(RenameLabels, AnEmptyFileReturnsNoLines) {
    const std::string path = folder.write("empty.asm", "");
    EXPECT_EQ(rename_labels(services, path, "G2"), Outcome::Failed);
    EXPECT_EQ(reporter.boxes, (Boxes{{"File returns no lines.", Icon::Critical}}));
    EXPECT_EQ(folder.read("empty.asm"), "");
    EXPECT_TRUE(reporter.questions.empty());
}

TEST_F(RenameLabels, TooManyLabelsIsReportedAndNothingSaved) {
    std::string text;
    for (int i = 0; i < 2001; ++i) {
        text += "n" + std::to_string(i) + " label x\r\n";
    }
    const std::string path = folder.write("many.asm", text);
    EXPECT_EQ(rename_labels(services, path, "G2"), Outcome::Failed);
    EXPECT_EQ(reporter.boxes, (Boxes{{"Error : 9 :Subscript out of range", Icon::None}}));
    EXPECT_EQ(folder.read("many.asm"), text);
}

TEST_F(RenameLabels, EveryFaultLeavesTheOldFileOrTheNew) {
    const std::string old_text = "wing label BGLCODE\r\n";
    for (std::size_t n = 1; n < 30; ++n) {
        const std::string path = folder.write("wing.asm", old_text);
        disk.fail_at(n, ErrorNumber::PermissionDenied);
        reporter.boxes.clear();
        const Outcome outcome = rename_labels(services, path, "G2");
        EXPECT_EQ(folder.names(), Names{"wing.asm"}) << n;
        const bool saved = outcome == Outcome::Done;
        EXPECT_EQ(folder.read("wing.asm"), saved ? "wingG2 label BGLCODE\r\n\r\n" : old_text);
        if (disk.calls() < n) {
            EXPECT_TRUE(saved);
            return;
        }
        if (n > 1 && !saved) {
            EXPECT_EQ(reporter.boxes, (Boxes{{"Error : 70 :Permission denied", Icon::None}})) << n;
        }
    }
    FAIL() << "saving made too many calls";
}

TEST_F(RenameLabels, TheSuffixIsWrittenInWindows1252) {
    const std::string path = folder.write("a.asm", "a label BGLCODE\r\n");
    EXPECT_EQ(rename_labels(services, path, "\xC3\xBC"), Outcome::Done);
    EXPECT_EQ(folder.read("a.asm"), "a\xFC label BGLCODE\r\n\r\n");
}

TEST_F(RenameLabels, RefusesASuffixThatSourceFilesCannotHold) {
    const std::string path = folder.write("a.asm", "a label BGLCODE\r\n");
    EXPECT_EQ(rename_labels(services, path, "\xD0\x96"), Outcome::Failed);
    EXPECT_EQ(reporter.boxes,
              (Boxes{{"The suffix \xD0\x96 holds the character \"\xD0\x96\", which source files "
                      "(Windows-1252) cannot hold.",
                      Icon::Critical}}));
    EXPECT_EQ(folder.read("a.asm"), "a label BGLCODE\r\n");
}

TEST_F(RenameLabels, NotesAnEmptySuffix) {
    const std::string path = folder.write("a.asm", "a label BGLCODE\r\n");
    rename_labels(services, path, "");
    ASSERT_EQ(reporter.notes.size(), 1U);
    EXPECT_EQ(place_and_text(reporter.notes[0]),
              path + ": the suffix is empty, so that no label changes.");
}

TEST_F(RenameLabels, NotesASuffixThatMakesNoNames) {
    const std::string path = folder.write("a.asm", "a label BGLCODE\r\n");
    for (const std::string suffix : {"-2", " 2", "\xC3\xBC", "a.b"}) {
        rename_labels(services, path, suffix);
        ASSERT_EQ(reporter.notes.size(), 1U) << suffix;
        EXPECT_NE(reporter.notes[0].text.find("are not names"), std::string::npos);
        reporter.clear_messages();
    }
    for (const std::string suffix : {"G2", "_x", "2", "@", "$?"}) {
        rename_labels(services, path, suffix);
        EXPECT_TRUE(reporter.notes.empty()) << suffix;
    }
}

} // namespace
} // namespace morvane::test
