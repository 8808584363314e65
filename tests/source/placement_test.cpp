// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "source/open_set.h"
#include "support/recording_reporter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace morvane {
namespace {

using test::RecordingReporter;
using testing::ElementsAre;
using testing::IsEmpty;

// Latitude 00500000h + 8000h / 65536 where the longitude's fraction is taken for both.
const std::string scale_line =
    "    SCALE_AGL dest, 1, 2000, 65536, 00500000h, 0ABCDh, 0C0000010h, 08000h, 0, 0";

class ReadPlacement : public testing::Test {
  protected:
    Placement read(const std::vector<std::string>& lines) {
        return read_placement(LineStore(lines), reporter);
    }
    RecordingReporter reporter;
};

TEST_F(ReadPlacement, LatitudeAndLongitudeShareOneFraction) {
    const Placement placement = read({"x", scale_line, "y"});
    EXPECT_EQ(placement.longitude, -1073741808 + 0.5);
    EXPECT_EQ(placement.latitude, 0x500000 + 0.5);
    EXPECT_EQ(placement.latitude_degrees, (0x500000 + 0.5) / 12734620 * 360 / 3.14159265358979);
    EXPECT_EQ(placement.scale_line, scale_line);
    EXPECT_EQ(placement.rotation, 0);
    EXPECT_THAT(reporter.messages, IsEmpty());
}

TEST_F(ReadPlacement, LastScaleLineWins) {
    const std::string second = "SCALE_AGL d,1,2,3,010h,0h,020h,0h,0,0";
    const Placement placement =
        read({scale_line, "    INSTANCE_CALL dest,0,0,04000h,0", second, "x"});
    EXPECT_EQ(placement.longitude, 0x20);
    EXPECT_EQ(placement.latitude, 0x10);
    EXPECT_EQ(placement.scale_line, second);
    EXPECT_EQ(placement.rotation, 0);
    EXPECT_THAT(reporter.messages, ElementsAre("Rotation is 90 degrees"));
}

TEST_F(ReadPlacement, RotationOfTheCallDirectlyBehind) {
    EXPECT_EQ(read({scale_line, "    INSTANCE_CALL dest,0,0,04000h "}).rotation, 0x4000);
    EXPECT_EQ(read({scale_line, "", "INSTANCE_CALL dest,0,0,04000h"}).rotation, 0);
    EXPECT_EQ(read({scale_line, "instance_call dest,0,0,04000h"}).rotation, 0);
    EXPECT_EQ(read({scale_line, "INSTANCE_CALL32 dest,0,0,0C000h,0"}).rotation, 0xC000);
}

TEST_F(ReadPlacement, RotationIsStoredWithoutItsLastCharacter) {
    // The "h" goes with the last character of the line, and does not matter anyway.
    EXPECT_EQ(read({scale_line, "INSTANCE_CALL dest,0,0,0C000h"}).rotation, 0xC000);
    EXPECT_EQ(read({scale_line, "INSTANCE_CALL dest,0,0,0C000"}).rotation, 0xC00);
    EXPECT_THAT(reporter.messages,
                ElementsAre("Rotation is 270 degrees", "Rotation is 16.875 degrees"));
}

TEST_F(ReadPlacement, ScaleLineAtTheEndHasNoRotation) {
    const Placement placement = read({scale_line});
    EXPECT_EQ(placement.latitude, 0x500000 + 0.5);
    EXPECT_EQ(placement.rotation, 0);
    EXPECT_THAT(reporter.messages, IsEmpty());
}

TEST_F(ReadPlacement, FractionWithoutItsLetterIsZero) {
    const Placement placement = read({"SCALE_AGL d,1,2,3,010h,0,020h,0,0,0"});
    EXPECT_EQ(placement.longitude, 0x20);
    EXPECT_EQ(placement.latitude, 0x10);
}

TEST_F(ReadPlacement, NothingWithoutAScaleLine) {
    const Placement placement = read({"; SCALE_AGL d,1,2,3,010h,0,020h,0,0,0", "BGL_END"});
    EXPECT_EQ(placement.longitude, 0);
    EXPECT_EQ(placement.scale_line, "");
    EXPECT_EQ(read({}).latitude, 0);
}

} // namespace
} // namespace morvane
