// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/create_library.h"
#include "library/libcomp_fixture.h"
#include "support/faulty_disk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane {
namespace {

using Box = test::RecordingReporter::Box;
using CreateLibrary = test::LibraryTest;

// Everything before the index, for corners of two words each.
std::vector<std::string> head(const std::vector<std::string>& corner_lines) {
    std::vector<std::string> lines{"; Library Compiler - morvane v0.20b",
                                   "; Compile with 'BGLC /BGL lib.asm'",
                                   "; ",
                                   "header label word",
                                   "    dw  0001",
                                   "    dd  000989D57H",
                                   "    dd  0FF6914C5H",
                                   "    dd  07FFFFFFFH",
                                   "    dd  080B60B62H",
                                   "    dw  22 dup(0)",
                                   "    dd  (offset LIBRARY_DATA) - (offset header)",
                                   "    dw  10 dup(0)"};
    lines.insert(lines.end(), corner_lines.begin(), corner_lines.end());
    lines.insert(lines.end(), {"    dw  14 dup(0)", "LIBRARY_DATA label word"});
    return lines;
}

TEST_F(CreateLibrary, AsksForAnOutputFile) {
    EXPECT_FALSE(create_library(services, list, ""));
    EXPECT_EQ(box(), (Box{"Enter an output file.", Icon::Exclamation}));
}

TEST_F(CreateLibrary, WritesTheSourceOfTwoObjects) {
    list.entries = {
        {{static_cast<std::int32_t>(0x9ABCDEF0), 0x12, 3, 4}, 100, 40, 65536, 0, 0, "Hangar"},
        {{0x5ADE0809, 0x42E14DCF, 0x73AEB9A1, -2}, 7, 12, 131072, 5, 0, "Tower 2 "}};
    list.lines = {{"designs\\hangar", folder.file("hangar"), 0},
                  {"tower", folder.file("tower"), 1}};
    design("hangar");
    design("tower");
    ASSERT_TRUE(create_library(services, list, folder.file("lib.asm")));
    std::vector<std::string> expected =
        head({"    dd  05ADE0809h", "    dd  042E14DCFh", "    dd  09ABCDEF0h", "    dd  012h"});
    expected.insert(expected.end(), {
                                        "    dd  (offset LIBRARY_0) - (offset LIBRARY_DATA)",
                                        "    dd  09ABCDEF0h, 000000012h, 000000003h, 000000004h",
                                        "    dd  (offset LIBRARY_1) - (offset LIBRARY_DATA)",
                                        "    dd  05ADE0809h, 042E14DCFh, 073AEB9A1h, 0FFFFFFFEh",
                                        "    dd  0,6,8",
                                        "    dd  (offset LIBRARY_DATA)",
                                        "LIBRARY_0 label word",
                                        "    dd  09ABCDEF0h, 000000012h, 000000003h, 000000004h",
                                        "    db  100",
                                        "    dd  (offset LIBRARY_0_HE) - (offset LIBRARY_0)",
                                        "    dd  (offset LIBRARY_0_END) - (offset LIBRARY_0_START)",
                                        "    dd  40",
                                        "    dd  65536",
                                        "    dd  0",
                                        "    dd  0",
                                        "    db \"Hangar\"",
                                        "    dd 0",
                                        "LIBRARY_0_HE label word",
                                        "LIBRARY_0_START label word",
                                        "    include designs\\hangar_0.asm",
                                        "LIBRARY_0_END label word",
                                        "LIBRARY_1 label word",
                                        "    dd  05ADE0809h, 042E14DCFh, 073AEB9A1h, 0FFFFFFFEh",
                                        "    db  7",
                                        "    dd  (offset LIBRARY_1_HE) - (offset LIBRARY_1)",
                                        "    dd  (offset LIBRARY_1_END) - (offset LIBRARY_1_START)",
                                        "    dd  12",
                                        "    dd  131072",
                                        "    dd  5",
                                        "    dd  0",
                                        "    db \"Tower 2\"",
                                        "    dd 0",
                                        "LIBRARY_1_HE label word",
                                        "LIBRARY_1_START label word",
                                        "    include tower_0.asm",
                                        "LIBRARY_1_END label word",
                                        "    dd 0,0,0,0",
                                    });
    EXPECT_EQ(folder.read("lib.asm"), test::crlf(expected));
    EXPECT_EQ(box(), (Box{"The output file was created successfully. Compile with 'BGLC /BGL " +
                              folder.file("lib.asm") + "'.",
                          Icon::Information}));
    EXPECT_TRUE(reporter.messages.empty());
}

TEST_F(CreateLibrary, AnEmptyListHasHeaderIndexEndAndFileEnd) {
    ASSERT_TRUE(create_library(services, list, folder.file("lib.asm")));
    std::vector<std::string> expected =
        head({"    dd  00h", "    dd  00h", "    dd  00h", "    dd  00h"});
    expected.insert(expected.end(),
                    {"    dd  0,6,8", "    dd  (offset LIBRARY_DATA)", "    dd 0,0,0,0"});
    EXPECT_EQ(folder.read("lib.asm"), test::crlf(expected));
}

TEST_F(CreateLibrary, OneObjectGivesBothCorners) {
    ASSERT_TRUE(
        add_library_object(services, list, fields_with_guid(design("a"), "0ABCD, 12, 3, 4")));
    ASSERT_TRUE(create_library(services, list, folder.file("lib.asm")));
    EXPECT_THAT(folder.read("lib.asm"), ::testing::HasSubstr("    dd  0ABCDh\r\n    dd  012h\r\n"
                                                             "    dd  0ABCDh\r\n    dd  012h\r\n"));
}

TEST_F(CreateLibrary, NumbersLabelsByPositionInTheList) {
    ASSERT_TRUE(add_library_object(services, list, fields_with_guid(design("a"), "1,2,3,4")));
    ASSERT_TRUE(add_library_object(services, list, fields_with_guid(design("b"), "5,6,7,8")));
    remove_library_object(list, 0);
    ASSERT_TRUE(create_library(services, list, folder.file("lib.asm")));
    const std::string text = folder.read("lib.asm");
    EXPECT_THAT(text, ::testing::HasSubstr("LIBRARY_0 label word\r\n    dd  000000005h, "));
    EXPECT_THAT(text, ::testing::Not(::testing::HasSubstr("LIBRARY_1")));
}

TEST_F(CreateLibrary, RefusesTwoObjectsWithOneIdentifier) {
    folder.write("lib.asm", "old");
    for (const std::string guid : {"0F, 2, 3, 4", "1, 2, 3, 4", "0f, 2, 3, 4h", "1, 2, 3, 04"}) {
        ASSERT_TRUE(add_library_object(services, list, fields_with_guid(design("a"), guid)));
    }
    EXPECT_FALSE(create_library(services, list, folder.file("lib.asm")));
    EXPECT_EQ(box(), (Box{"Duplicated ID found : 000000001h, 000000002h, 000000003h, 000000004h",
                          Icon::Exclamation}));
    EXPECT_EQ(folder.read("lib.asm"), "old");
}

TEST_F(CreateLibrary, AllowsTheIdentifierOfARemovedObject) {
    ASSERT_TRUE(add_library_object(services, list, fields(design("a"))));
    ASSERT_TRUE(add_library_object(services, list, fields(design("b"))));
    remove_library_object(list, 0);
    EXPECT_TRUE(create_library(services, list, folder.file("lib.asm")));
}

TEST_F(CreateLibrary, TellsWhatTheCompilerWouldStopAt) {
    folder.write("bare.asm", "SCALE_AGL x,0,1,65536,0,0\r\n");
    LibraryFields chosen = fields(folder.file("bare"));
    chosen.libObjName = "  ";
    ASSERT_TRUE(add_library_object(services, list, chosen));
    ASSERT_TRUE(create_library(services, list, folder.file("lib.asm")));
    EXPECT_THAT(reporter.messages,
                ::testing::ElementsAre("Note: the design " + folder.file("bare") + " has no file " +
                                           folder.file("bare_0.asm") +
                                           ", where the compiler will stop.",
                                       "Note: the object of the design " + folder.file("bare") +
                                           " has no name, which the compiler will not take."));
}

TEST_F(CreateLibrary, AFailingDiskLeavesTheOldFile) {
    folder.write("lib.asm", "old");
    ASSERT_TRUE(add_library_object(services, list, fields(design("a"))));
    test::FaultyDisk faulty;
    const Services failing{faulty, reporter};
    ASSERT_TRUE(create_library(failing, list, folder.file("probe.asm")));
    const std::size_t calls = faulty.calls();
    for (std::size_t n = 1; n <= calls; ++n) {
        reporter.boxes.clear();
        folder.write("lib.asm", "old");
        faulty.fail_at(n, ErrorNumber::DiskFull);
        const bool created = create_library(failing, list, folder.file("lib.asm"));
        ASSERT_EQ(reporter.boxes.size(), 1U);
        if (created) {
            EXPECT_EQ(folder.read("lib.asm").size(), folder.read("probe.asm").size() - 2);
        } else {
            EXPECT_EQ(reporter.boxes[0], (Box{"Error : 61 : Disk full", Icon::None}));
            EXPECT_EQ(folder.read("lib.asm"), "old");
        }
        EXPECT_EQ(folder.names(),
                  (std::vector<std::string>{"a.asm", "a_0.asm", "lib.asm", "probe.asm"}));
    }
    EXPECT_GT(calls, 3U);
}

TEST_F(CreateLibrary, NeverOverwritesAFileOfADesign) {
    const std::string base = design("hangar");
    ASSERT_TRUE(add_library_object(services, list, fields(base)));
    for (const std::string name : {"hangar.asm", "hangar_0.asm", "./hangar_0.asm"}) {
        const std::string before = folder.read(name);
        EXPECT_FALSE(create_library(services, list, folder.file(name)));
        EXPECT_THAT(box().text, testing::HasSubstr("is a file of a design"));
        EXPECT_EQ(folder.read(name), before);
    }
}

TEST_F(CreateLibrary, WritesTheNameOfADesignInWindows1252) {
    const std::string base = design("h\xC3\xBCtte");
    ASSERT_TRUE(add_library_object(services, list, fields(base)));
    ASSERT_TRUE(create_library(services, list, folder.file("lib.asm")));
    EXPECT_THAT(folder.read("lib.asm"), testing::HasSubstr("h\xFCtte_0.asm\r\n"));
}

TEST_F(CreateLibrary, RefusesADesignThatSourceFilesCannotName) {
    const std::string base = design("\xD0\x96");
    ASSERT_TRUE(add_library_object(services, list, fields(base)));
    EXPECT_FALSE(create_library(services, list, folder.file("lib.asm")));
    EXPECT_EQ(box().text, "The design " + base +
                              " holds the character \"\xD0\x96\", which source files "
                              "(Windows-1252) cannot hold.");
    EXPECT_THAT(folder.names(), testing::Not(testing::Contains("lib.asm")));
}

} // namespace
} // namespace morvane
