// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "base/reporter.h"
#include "source/open_set.h"
#include "support/recording_reporter.h"
#include "support/thrown.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

namespace morvane {
namespace {

using test::RecordingReporter;
using test::thrown_by;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(RuntimeError, NumbersAndDescriptions) {
    const std::map<int, std::string> texts{{5, "Invalid procedure call or argument"},
                                           {6, "Overflow"},
                                           {7, "Out of memory"},
                                           {9, "Subscript out of range"},
                                           {11, "Division by zero"},
                                           {13, "Type mismatch"},
                                           {53, "File not found"},
                                           {57, "Device I/O error"},
                                           {61, "Disk full"},
                                           {62, "Input past end of file"},
                                           {70, "Permission denied"},
                                           {75, "Path/File access error"},
                                           {76, "Path not found"}};
    for (const auto& [number, text] : texts) {
        const RuntimeError error(static_cast<ErrorNumber>(number));
        EXPECT_EQ(error.number(), number);
        EXPECT_EQ(error.description(), text);
    }
}

TEST(RuntimeError, WhatItIsAboutIsNoneOfItsDescription) {
    const RuntimeError error(ErrorNumber::DiskFull, "a.asm");
    EXPECT_STREQ(error.description(), "Disk full");
    EXPECT_EQ(error.about(), "a.asm");
    EXPECT_STREQ(error.what(), "61 : Disk full (a.asm)");
}

TEST(ReportError, BoxAndNote) {
    RecordingReporter reporter;
    report_error(reporter, RuntimeError(ErrorNumber::DiskFull, "a.asm"), "Error : ", " :",
                 Icon::Critical);
    EXPECT_THAT(reporter.boxes,
                ElementsAre(RecordingReporter::Box{"Error : 61 :Disk full", Icon::Critical}));
    EXPECT_THAT(reporter.messages, ElementsAre("Note: Disk full: a.asm"));
}

TEST(ReportError, NoNoteWhereThereIsNothingToSay) {
    RecordingReporter reporter;
    report_error(reporter, RuntimeError(ErrorNumber::Overflow), "Error : ", " : ");
    EXPECT_THAT(reporter.boxes,
                ElementsAre(RecordingReporter::Box{"Error : 6 : Overflow", Icon::None}));
    EXPECT_THAT(reporter.messages, IsEmpty());
}

TEST(OpenSet, TranslationRowsAreCountedFromOne) {
    OpenSet set;
    set.translations.resize(2);
    set.translations[1].processed = "Lights";
    EXPECT_EQ(set.translation(2).processed, "Lights");
    EXPECT_EQ(set.unprocessed(), 1U);
    EXPECT_EQ(thrown_by([&] { set.translation(0); }).number(), 9);
    EXPECT_EQ(thrown_by([&] { set.translation(3); }).number(), 9);
}

} // namespace
} // namespace morvane
