// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/libraries.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace morvane::test {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr const char* results =
    "scenery/world/airport.bgl :2\r\n"
    "005ADE080h,042E14DCFh,073AEB9A1h,0FFFFFFFEh,1.0,0,Tower\r\n"
    "000000001h,000000002h,000000003h,000000004h,0.0 ,7,no scale\r\n"
    "C:\\a :b\\c.bgl :1\r\n"
    "000000001h,000000002h,000000003h,000000004h,0.333,7,ends like a file :5\r\n"
    "==============================\r\n"
    "Library objects......: 3\r\n";

TEST(SearchedLibraries, ObjectsHaveIdentifierScaleAndFile) {
    const std::vector<KnownObject> objects = listed_objects(results);
    ASSERT_THAT(objects, SizeIs(3));
    EXPECT_EQ(objects[0].guid, (Guid128{0x05ADE080, 0x42E14DCF, 0x73AEB9A1, -2}));
    EXPECT_EQ(objects[0].scale, 1.0);
    EXPECT_EQ(objects[0].file, "scenery/world/airport.bgl");
    EXPECT_EQ(objects[1].scale, std::nullopt);
    EXPECT_EQ(objects[2].guid, objects[1].guid);
    EXPECT_EQ(objects[2].scale, 0.333);
    EXPECT_EQ(objects[2].file, "C:\\a :b\\c.bgl");
}

TEST(SearchedLibraries, AFileThatWasSearchedTwiceCountsOnce) {
    EXPECT_THAT(listed_objects(std::string(results) + results), SizeIs(3));
}

TEST(SearchedLibraries, AReportOfAFileListsNothing) {
    EXPECT_THAT(listed_objects("Library Objects : 1\r\n"
                               " 0AAAAAAAAh,0AAAAAAAAh,0AAAAAAAAh,000000001h, 1.0 0 100 NewObject"),
                IsEmpty());
    EXPECT_THAT(listed_objects("0AAAAAAAAh,0AAAAAAAAh,0AAAAAAAAh,000000001h,1.0,0,of no file"),
                IsEmpty());
    EXPECT_THAT(listed_objects(""), IsEmpty());
    EXPECT_THAT(listed_objects("a.bgl :1\n1h,2h,3h,4h\n1h,2h,3h,4h,x,0,n\n1h,2h,3h,4,1.0,0,n"),
                IsEmpty());
}

TEST(SearchedLibraries, AreReadFromTheResultsFile) {
    TempFolder folder;
    const std::unique_ptr<Disk> disk = make_system_disk();
    EXPECT_THAT(searched_objects(*disk, folder.path()), IsEmpty());
    folder.write("out.txt", results);
    EXPECT_THAT(searched_objects(*disk, folder.path()), SizeIs(3));
}

} // namespace
} // namespace morvane::test
