// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "library/libcomp_fixture.h"
#include "library/library_list.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

using Box = test::RecordingReporter::Box;
using LibraryListTest = test::LibraryTest;

TEST_F(LibraryListTest, AddsALineAndItsEntry) {
    const std::string base = design("hangar");
    LibraryFields chosen = fields(base);
    chosen.libScale = "0.5";
    chosen.libObjSize = "40.5";
    chosen.libObjType = "-3";
    ASSERT_TRUE(add_library_object(services, list, chosen));
    ASSERT_EQ(list.lines.size(), 1U);
    EXPECT_EQ(list.lines[0].base, base);
    EXPECT_EQ(list.lines[0].entry, 0U);
    const LibraryEntry& entry = list.entry_of(list.lines[0]);
    EXPECT_EQ(identifier_text(entry.guid, false), "0AAAAAAAA, 0AAAAAAAA, 0AAAAAAAA, 000000001");
    EXPECT_EQ(entry.image_power, 100);
    EXPECT_EQ(entry.stored_scale, 131072);
    EXPECT_EQ(entry.object_size, 40); // halves go to the even number
    EXPECT_EQ(entry.object_type, -3);
    EXPECT_EQ(entry.fourth_dword, 0);
    EXPECT_EQ(entry.name, "NewObject");
    EXPECT_TRUE(reporter.boxes.empty());
}

TEST_F(LibraryListTest, RefusesAFileThatIsNotThere) {
    EXPECT_FALSE(add_library_object(services, list, fields(folder.file("none"))));
    EXPECT_EQ(box(), (Box{"Invalid Filename.", Icon::Exclamation}));
    EXPECT_TRUE(list.lines.empty());
    EXPECT_TRUE(list.entries.empty());
}

TEST_F(LibraryListTest, RefusesIdentifiersOfThreeOrFiveParts) {
    const std::string base = design("hangar");
    for (const std::string guid : {"1, 2, 3", "1, 2, 3, 4, 5"}) {
        EXPECT_FALSE(add_library_object(services, list, fields_with_guid(base, guid)));
        EXPECT_EQ(box(), (Box{"Invalid GUID.", Icon::Exclamation}));
    }
    EXPECT_TRUE(list.lines.empty());
}

TEST_F(LibraryListTest, CutsNamesTo47Bytes) {
    LibraryFields chosen = fields(design("hangar"));
    chosen.libObjName = std::string(46, 'a') + "bcd";
    ASSERT_TRUE(add_library_object(services, list, chosen));
    EXPECT_EQ(list.entries[0].name, std::string(46, 'a') + "b");
}

TEST_F(LibraryListTest, RefusesNamesThatWouldBreakTheSource) {
    LibraryFields chosen = fields(design("hangar"));
    chosen.libObjName = "12\" gun";
    EXPECT_FALSE(add_library_object(services, list, chosen));
    EXPECT_EQ(box(), (Box{"The object name must not hold a double quote.", Icon::Exclamation}));
    chosen.libObjName = "two\r\nlines";
    EXPECT_FALSE(add_library_object(services, list, chosen));
    EXPECT_EQ(box(), (Box{"The object name must not hold a line break.", Icon::Exclamation}));
    EXPECT_TRUE(list.lines.empty());
}

TEST_F(LibraryListTest, ReportsNumbersThatAreNone) {
    const auto refused = [&](auto change) {
        LibraryFields chosen = fields(design("hangar"));
        change(chosen);
        EXPECT_FALSE(add_library_object(services, list, chosen));
        EXPECT_TRUE(list.lines.empty() && list.entries.empty());
        return box().text;
    };
    EXPECT_EQ(refused([](LibraryFields& f) { f.libScale = "0"; }), "Error : 11 : Division by zero");
    EXPECT_EQ(refused([](LibraryFields& f) { f.libScale = ""; }), "Error : 11 : Division by zero");
    EXPECT_EQ(refused([](LibraryFields& f) { f.libScale = "x"; }), "Error : 13 : Type mismatch");
    EXPECT_EQ(refused([](LibraryFields& f) { f.libScale = "0.00001"; }), "Error : 6 : Overflow");
    EXPECT_EQ(refused([](LibraryFields& f) { f.libImgPwr = "256"; }), "Error : 6 : Overflow");
    EXPECT_EQ(refused([](LibraryFields& f) { f.libImgPwr = "-1"; }), "Error : 6 : Overflow");
    EXPECT_EQ(refused([](LibraryFields& f) { f.libObjSize = "3e9"; }), "Error : 6 : Overflow");
}

TEST_F(LibraryListTest, NumbersEntriesInTheOrderOfAddingForGood) {
    for (const std::string name : {"a", "b", "c"}) {
        ASSERT_TRUE(add_library_object(services, list, fields(design(name))));
    }
    remove_library_object(list, 1);
    ASSERT_TRUE(add_library_object(services, list, fields(design("d"))));
    ASSERT_EQ(list.lines.size(), 3U);
    EXPECT_EQ(list.lines[0].entry, 0U);
    EXPECT_EQ(list.lines[1].entry, 2U);
    EXPECT_EQ(list.lines[2].entry, 3U);
    EXPECT_EQ(list.lines[2].base, folder.file("d"));
    remove_library_object(list, 3); // none selected
    EXPECT_EQ(list.lines.size(), 3U);
}

TEST_F(LibraryListTest, TakesAHundredEntriesRemovedOnesIncluded) {
    const std::string base = design("hangar");
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(add_library_object(services, list, fields(base)));
    }
    remove_library_object(list, 0);
    EXPECT_FALSE(add_library_object(services, list, fields(base)));
    EXPECT_EQ(box(), (Box{"Error : 9 : Subscript out of range", Icon::Exclamation}));
    EXPECT_EQ(list.lines.size(), 99U);
    EXPECT_EQ(list.entries.size(), 100U);
}

TEST_F(LibraryListTest, ModifyFillsTheSelectedEntryAnew) {
    ASSERT_TRUE(add_library_object(services, list, fields(design("a"))));
    ASSERT_TRUE(add_library_object(services, list, fields(design("b"))));
    LibraryFields changed = fields("elsewhere");
    changed.libGUID = "1,2,3,4";
    changed.libObjName = "Tower";
    ASSERT_TRUE(modify_library_object(services, list, 1, changed));
    EXPECT_EQ(list.entries[1].name, "Tower");
    EXPECT_EQ(list.entries[1].guid, (Guid128{1, 2, 3, 4}));
    EXPECT_EQ(list.lines[1].base, folder.file("b"));
    EXPECT_EQ(list.entries[0].name, "NewObject");
}

TEST_F(LibraryListTest, ModifyRefusesWithoutSelectionAndWithAWrongIdentifier) {
    EXPECT_FALSE(modify_library_object(services, list, 0, fields("x")));
    EXPECT_EQ(box(), (Box{"Select an object first.", Icon::Exclamation}));
    ASSERT_TRUE(add_library_object(services, list, fields(design("a"))));
    const LibraryEntry before = list.entries[0];
    EXPECT_FALSE(modify_library_object(services, list, 0, fields_with_guid("x", "1,2,3")));
    EXPECT_EQ(box(), (Box{"Invalid GUID.", Icon::Exclamation}));
    EXPECT_EQ(list.entries[0], before);
}

TEST_F(LibraryListTest, ShowsAnEntryInTheFields) {
    LibraryFields chosen = fields(design("hangar"));
    chosen.libScale = "3";
    chosen.libObjSize = "0A0h";
    ASSERT_TRUE(add_library_object(services, list, chosen));
    const LibraryFields shown = fields_of(list, 0);
    EXPECT_EQ(shown.libFileAdd, folder.file("hangar"));
    EXPECT_EQ(shown.libGUID, "0AAAAAAAA, 0AAAAAAAA, 0AAAAAAAA, 000000001");
    EXPECT_EQ(shown.libScale, "3");
    EXPECT_EQ(shown.libObjSize, "160");
    EXPECT_EQ(shown.libObjName, "NewObject");
    EXPECT_EQ(shown.libImgPwr, "100");
    EXPECT_EQ(shown.libObjType, "0");
    EXPECT_THROW(fields_of(list, 1), RuntimeError);
}

TEST_F(LibraryListTest, PuttingShownFieldsBackChangesNothing) {
    const std::string base = design("hangar");
    ASSERT_TRUE(add_library_object(services, list, fields(base)));
    for (const std::string scale :
         {"1", "0.5", "3", "0.1", "1.7", "12345.678", "-2", "200000", "0.0000306", "65536"}) {
        LibraryFields chosen = fields(base);
        chosen.libScale = scale;
        ASSERT_TRUE(modify_library_object(services, list, 0, chosen)) << scale;
        const LibraryEntry before = list.entries[0];
        ASSERT_TRUE(modify_library_object(services, list, 0, fields_of(list, 0))) << scale;
        EXPECT_EQ(list.entries[0], before) << scale;
    }
}

TEST(StoredScale, IsTheUnitDividedByTheScale) {
    EXPECT_EQ(to_stored_scale(1), 65536);
    EXPECT_EQ(to_stored_scale(0.5), 131072);
}

} // namespace
} // namespace morvane
