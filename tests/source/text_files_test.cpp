// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "source/source_set.h"
#include "support/faulty_disk.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "support/thrown.h"
#include "system/disk.h"
#include "system/file_bytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace morvane {
namespace {

using test::crlf;
using test::RecordingReporter;
using test::TempFolder;
using test::thrown_by;
using testing::ElementsAre;
using testing::IsEmpty;
using Box = RecordingReporter::Box;

class TextFiles : public testing::Test {
  protected:
    TempFolder folder;
    std::unique_ptr<Disk> disk = make_system_disk();
    RecordingReporter reporter;
    Services services{*disk, reporter};
    LineStore store;
};

TEST_F(TextFiles, EmptyFileIsSavedAsOneEmptyLine) {
    EXPECT_EQ(load_file2array(services, folder.write("a.asm", ""), store), 1U);
    EXPECT_EQ(store.element0(), "1");
    EXPECT_EQ(store.line(1), "");
    save_array2file(*disk, folder.file("b.asm"), store);
    EXPECT_EQ(folder.read("b.asm"), "\r\n");
}

TEST_F(TextFiles, ThreeLinesAreSavedAsFour) {
    EXPECT_EQ(load_file2array(services, folder.write("a.asm", "1\n 2\r\n3"), store), 4U);
    EXPECT_EQ(store.element0(), "4");
    save_array2file(*disk, folder.file("a.asm"), store);
    EXPECT_EQ(folder.read("a.asm"), crlf({"1", " 2", "3", ""}));
}

TEST_F(TextFiles, EveryCycleOfLoadingAndSavingAddsAnEmptyLine) {
    folder.write("a.asm", crlf({"1"}));
    for (int i = 0; i < 3; ++i) {
        load_file2array(services, folder.file("a.asm"), store);
        save_array2file(*disk, folder.file("a.asm"), store);
    }
    EXPECT_EQ(folder.read("a.asm"), crlf({"1", "", "", ""}));
}

TEST_F(TextFiles, MissingFileIsToldAndTheStoreStays) {
    store.append_line("old");
    EXPECT_EQ(load_file2array(services, folder.file("none.asm"), store), 0U);
    EXPECT_THAT(reporter.boxes,
                ElementsAre(Box{"Error ! File does not exist: (" + folder.file("none.asm") + ").",
                                Icon::Critical}));
    EXPECT_EQ(store.line(1), "old");
}

TEST_F(TextFiles, FailureWhileLoadingIsTold) {
    test::FaultyDisk faulty;
    const std::string path = folder.write("a.asm", "1\n");
    faulty.fail_at(1, ErrorNumber::PermissionDenied);
    EXPECT_EQ(load_file2array({faulty, reporter}, path, store), 0U);
    EXPECT_THAT(reporter.boxes,
                ElementsAre(Box{"Error in load_file2array: 70 :Permission denied", Icon::None}));
}

TEST_F(TextFiles, CopyTextFileNormalisesAndAddsTheEmptyLine) {
    copy_text_file(services, folder.write("a.asm", "1\n2\r3"), folder.file("b.asm"));
    EXPECT_EQ(folder.read("b.asm"), crlf({"1", "2", "3", ""}));
    EXPECT_THAT(reporter.boxes, IsEmpty());
}

TEST_F(TextFiles, CopyTextFileOfNothingWritesNothing) {
    const RuntimeError error =
        thrown_by([&] { copy_text_file(services, folder.file("none.asm"), folder.file("b.asm")); });
    EXPECT_EQ(error.number(), 53);
    EXPECT_EQ(reporter.boxes.size(), 1U);
    EXPECT_FALSE(folder.has("b.asm"));
}

TEST_F(TextFiles, CopyFileBytesLeavesTheEndOfALongerFile) {
    const std::string source = folder.write("ten", std::string("abc\r\n\0ghij", 10));
    folder.write("twenty", "01234567890123456789");
    copy_file_bytes(*disk, source, folder.file("twenty"));
    EXPECT_EQ(folder.read("twenty"), folder.read("ten") + "0123456789");
}

TEST_F(TextFiles, CopyFileBytesOverNoFileIsIdentical) {
    const std::string source = folder.write("ten", "0123456789");
    copy_file_bytes(*disk, source, folder.file("new"));
    EXPECT_EQ(folder.read("new"), "0123456789");
    EXPECT_THAT(folder.names(), ElementsAre("new", "ten"));
}

TEST_F(TextFiles, CopyFileBytesOverAShorterFileIsIdentical) {
    const std::string source = folder.write("big", std::string(200'000, 'x') + "end");
    folder.write("small", "abc");
    copy_file_bytes(*disk, source, folder.file("small"));
    EXPECT_EQ(folder.read("small"), folder.read("big"));
}

TEST_F(TextFiles, CopyFileBytesOfNothingIsAnErrorAndLeavesTheDestination) {
    folder.write("old", "abc");
    const RuntimeError error =
        thrown_by([&] { copy_file_bytes(*disk, folder.file("none"), folder.file("old")); });
    EXPECT_EQ(error.number(), 53);
    EXPECT_EQ(folder.read("old"), "abc");
    EXPECT_THAT(folder.names(), ElementsAre("old"));
}

TEST_F(TextFiles, SavingIntoAMissingFolderIsAnError) {
    EXPECT_EQ(thrown_by([&] { save_array2file(*disk, folder.file("none/a.asm"), store); }).number(),
              76);
}

class SourceSet : public TextFiles {
  protected:
    LineStore model;
    LineStore frame;
    LoadedSet load() { return load_source_set(services, folder.file("base"), model, frame); }
};

TEST_F(SourceSet, NamesAreConcatenated) {
    EXPECT_EQ(model_file_name("C:\\a\\b"), "C:\\a\\b_0.asm");
    EXPECT_EQ(frame_file_name("C:\\a\\b"), "C:\\a\\b.asm");
    EXPECT_EQ(model_file_name("b.asm"), "b.asm_0.asm");
    EXPECT_EQ(frame_file_name("b.asm"), "b.asm.asm");
}

TEST_F(SourceSet, LoadsBothFiles) {
    folder.write("base_0.asm", crlf({"m1", "m2"}));
    folder.write("base.asm", crlf({"f1"}));
    const LoadedSet loaded = load();
    EXPECT_EQ(loaded.model, 3U);
    EXPECT_EQ(loaded.frame, 2U);
    EXPECT_TRUE(loaded.whole());
    EXPECT_EQ(model.line(2), "m2");
    EXPECT_EQ(frame.line(1), "f1");
}

TEST_F(SourceSet, MissingFileHasItsOwnMessageOnly) {
    folder.write("base.asm", crlf({"f1"}));
    const LoadedSet loaded = load();
    EXPECT_EQ(loaded.model, 0U);
    EXPECT_EQ(loaded.frame, 2U);
    EXPECT_TRUE(loaded.any());
    EXPECT_FALSE(loaded.whole());
    EXPECT_THAT(reporter.boxes,
                ElementsAre(Box{"Error ! File does not exist: (" + folder.file("base_0.asm") + ").",
                                Icon::Critical}));
}

TEST_F(SourceSet, AFileThatCannotBeReadRefusesTheSet) {
    folder.write("base_0.asm", crlf({"m1", "m2"}));
    folder.write("base.asm", crlf({"f1"}));
    const Box of_the_file{"Error in load_file2array: 70 :Permission denied", Icon::None};
    const Box of_the_set{"Error ! Make sure you do not specify the extension, and both azm and "
                         "asm files are in the same folder.",
                         Icon::None};
    test::FaultyDisk faulty;
    for (const std::size_t file : {1U, 2U}) {
        faulty.fail_at(file, ErrorNumber::PermissionDenied);
        reporter.boxes.clear();
        EXPECT_FALSE(load_source_set({faulty, reporter}, folder.file("base"), model, frame).any());
        EXPECT_THAT(reporter.boxes, ElementsAre(of_the_file, of_the_set));
    }
}

} // namespace
} // namespace morvane
