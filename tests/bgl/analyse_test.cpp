// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/paths.h"
#include "bgl/inspector.h"
#include "bgl_files.h"
#include "support/faulty_disk.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/recording_programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane {
namespace {

using test::crlf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;
using Box = test::RecordingReporter::Box;

class Analyse : public ::testing::Test {
  protected:
    Analysis analyse(const std::string& path, bool show_raw = false) {
        return analyse_file(inspector, path, show_raw, true);
    }

    test::TempFolder folder;
    test::TempFolder home;
    test::RecordingReporter reporter;
    test::RecordingPrograms programs;
    test::FaultyDisk disk;
    Inspector inspector{{disk, reporter}, home.path(), programs};
};

TEST_F(Analyse, ReportAndResultsAreWindows1252Throughout) {
    const std::string path = folder.write("k\xC3\xBC"
                                          "che.bgl",
                                          test::library_file({.objects = {{.name = "Caf\xE9"}}}));
    analyse(path);
    const std::string results = home.read("out.txt");
    EXPECT_EQ(results, inspector.box.text() + "\r\n");
    EXPECT_NE(results.find("k\xFC"
                           "che.bgl\r\n"),
              std::string::npos);
    EXPECT_NE(results.find(" Caf\xE9\r\n"), std::string::npos);
}

TEST_F(Analyse, LibraryWithObjects) {
    const auto word = static_cast<std::int32_t>(0xAAAAAAAA);
    const std::string path =
        folder.write("lib.bgl", test::library_file({.library_start = 0x100,
                                                    .objects = {{.guid = {word, word, word, 1}},
                                                                {.guid = {1, 2, 3, 4},
                                                                 .power = 7,
                                                                 .stored_scale = 0,
                                                                 .type = 5,
                                                                 .name = "Shed 2"}}}));
    const Analysis analysis = analyse(path);
    const std::string expected =
        crlf({path,
              " This is a Visual/Default data file",
              " Old file format (pre fs-7) ",
              " Lat bounds : 0* 0.0 to 0* 0.0",
              " Lon bounds : 0* 0.0 to 0* 0.0",
              " UNCOMPRESSED file (FL_Spare2=0)",
              "    no object data",
              "  >> LIBRARY data at offset 100",
              "    no terrain data",
              "    no msa data",
              "    no VOR data",
              "    no ADF data",
              "    no facility data",
              "    no dynamic data",
              "    no Ecxeption data",
              "    no misc data",
              "    no mag.var.data",
              "    no afd data",
              "=============================================",
              "Library Objects : 2",
              " 0AAAAAAAAh,0AAAAAAAAh,0AAAAAAAAh,000000001h, 1.0 0 100 NewObject",
              " 000000001h,000000002h,000000003h,000000004h, 0.0  5 7 Shed 2",
              "============================================="});
    EXPECT_EQ(inspector.box.text(), expected);
    EXPECT_EQ(home.read("out.txt"), expected + "\r\n");
    EXPECT_TRUE(analysis.done);
    EXPECT_EQ(analysis.objects.size(), 2U);
    EXPECT_EQ(analysis.header.FL_library_ptr, 0x100);
}

TEST_F(Analyse, EmptyIndexListsNoObjects) {
    EXPECT_TRUE(analyse(folder.write("lib.bgl", test::library_file({}))).done);
    EXPECT_THAT(inspector.box.text(),
                EndsWith("\r\nLibrary Objects : 0\r\n"
                         "=============================================\r\n"));
}

TEST_F(Analyse, NoLibraryDataNoList) {
    EXPECT_TRUE(analyse(folder.write("a.bgl", test::object_file())).done);
    EXPECT_THAT(inspector.box.text(), Not(HasSubstr("Library Objects")));
}

TEST_F(Analyse, RawHeaderIsShownOnRequest) {
    const std::string path = folder.write("a.bgl", test::object_file());
    analyse(path);
    EXPECT_THAT(inspector.box.text(), Not(HasSubstr("Raw header data")));
    analyse(path, true);
    EXPECT_THAT(inspector.box.text(), HasSubstr("-------------------- Raw header data\r\n"));
}

TEST_F(Analyse, InvalidFileIsDumpedAndRecorded) {
    home.write("out.txt", "of the last command");
    const std::string path = folder.write("bad.bgl", "\x02");
    EXPECT_FALSE(analyse(path).done);
    EXPECT_THAT(inspector.box.text(), StartsWith(path + "\r\n"
                                                        "This file has not a valid BGL format\r\n"
                                                        "-------------------- Raw header data\r\n"
                                                        " 000 FL_world_set:        2\r\n"
                                                        " 002 FL_north_bounds:     0\r\n"));
    EXPECT_THAT(inspector.box.text(), EndsWith(" 126 FL_spare3:           0\r\n"));
    EXPECT_EQ(home.read("error.txt"), path + "\r\n");
    EXPECT_EQ(home.read("out.txt"), "of the last command");
    EXPECT_FALSE(analyse(path).done);
    EXPECT_EQ(home.read("error.txt"), path + "\r\n" + path + "\r\n");
}

TEST_F(Analyse, EmptyFileIsInvalid) {
    EXPECT_EQ(analyse(folder.write("empty.bgl", "")).state, BglState::Invalid);
}

TEST_F(Analyse, MissingOrMisnamedFileEndsQuietly) {
    for (const std::string& path :
         {folder.file("missing.bgl"), folder.write("lib.txt", test::library_file({})),
          folder.path(), folder.file("")}) {
        reporter.messages.clear();
        EXPECT_EQ(analyse(path).state, BglState::NotABgl);
        EXPECT_EQ(inspector.box.text(), path + "\r\n");
        EXPECT_THAT(reporter.boxes, IsEmpty());
        EXPECT_THAT(reporter.messages, ElementsAre(StartsWith("Note: " + path)));
    }
    EXPECT_THAT(home.names(), IsEmpty());
}

TEST_F(Analyse, FolderNamedLikeAFileIsMissing) {
    folder.write("folder.bgl/a", "");
    EXPECT_EQ(analyse(folder.file("folder.bgl")).state, BglState::NotABgl);
    EXPECT_THAT(reporter.boxes, IsEmpty());
}

TEST_F(Analyse, APathBelowAFileIsMissing) {
    const std::string path = join_path(folder.write("file", ""), "a.bgl");
    EXPECT_EQ(analyse(path).state, BglState::NotABgl);
    EXPECT_EQ(inspector.box.text(), path + "\r\n");
    EXPECT_THAT(reporter.boxes, IsEmpty());
    EXPECT_THAT(reporter.messages, ElementsAre("Note: " + path + " does not exist."));
}

TEST_F(Analyse, TheBoxIsKeptUnlessCleared) {
    const std::string path = folder.write("a.bgl", test::object_file());
    analyse_file(inspector, path, false, false);
    const std::string once = inspector.box.text();
    analyse_file(inspector, path, false, false);
    EXPECT_EQ(inspector.box.text(), once + once);
    EXPECT_EQ(home.read("out.txt"), once + once + "\r\n");
}

TEST_F(Analyse, TooManyObjectsAreARangeError) {
    const std::string path = folder.write(
        "big.bgl", test::library_file({.objects = std::vector<test::ObjectSpec>(2001)}));
    EXPECT_FALSE(analyse(path).done);
    EXPECT_THAT(reporter.boxes,
                ElementsAre(Box{"Error while analysing: 9 : Subscript out of range", Icon::None}));
    EXPECT_THAT(reporter.messages, ElementsAre(HasSubstr(path)));
}

TEST_F(Analyse, LongReportOverflowsIntoTheResultsFile) {
    std::mt19937 random(1);
    const std::string path = folder.write(
        "big.bgl", test::library_file({.objects = test::random_objects(random, 2000)}));
    std::string report;
    inspector.box.on_text = [&](std::string_view text) { report += text; };
    EXPECT_TRUE(analyse(path).done);
    EXPECT_GT(report.size(), 65401U);
    EXPECT_EQ(reporter.boxes.size(), report.size() / 65401);
    std::string results = home.read("out.txt");
    // Each part of the report was written as a record with a line end of its own.
    EXPECT_EQ(results.size(), report.size() + 2 * (reporter.boxes.size() + 1));
    EXPECT_THAT(results, StartsWith(report.substr(0, 65000)));
    EXPECT_THAT(results, EndsWith(report.substr(report.size() - 100) + "\r\n"));
}

TEST_F(Analyse, EveryTruncationIsReportedOrRefused) {
    const std::string bytes = test::library_file(
        {.header = {.FL_world_set = 1, .FL_magic = 1},
         .library_start = 168,
         .objects = {{.name = "One", .code = "ab"}, {.name = "Two", .code = ""}}});
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        const std::string path = folder.write("cut.bgl", std::string_view(bytes).substr(0, length));
        const Analysis analysis = analyse(path);
        EXPECT_EQ(analysis.done, length > 0) << length;
        EXPECT_LE(analysis.objects.size(), 2U) << length;
    }
    EXPECT_THAT(reporter.boxes, IsEmpty());
}

TEST_F(Analyse, EveryFailingCallIsOneMessage) {
    const std::string path = folder.write("a.bgl", test::object_file());
    disk.fail_at(0);
    analyse(path);
    const std::size_t calls = disk.calls();
    for (std::size_t n = 1; n <= calls; ++n) {
        reporter.boxes.clear();
        disk.fail_at(n, ErrorNumber::PermissionDenied);
        const bool done = analyse(path).done;
        EXPECT_EQ(reporter.boxes.size(), done ? 0U : 1U) << n;
        if (!done) {
            EXPECT_EQ(reporter.boxes[0].text, "Error while analysing: 70 : Permission denied");
        }
    }
}

} // namespace
} // namespace morvane
