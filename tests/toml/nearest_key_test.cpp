// SPDX-License-Identifier: GPL-3.0-or-later
#include "toml/nearest_key.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

const std::vector<std::string_view> keys{"LightType", "LightInt", "FlashMask", "kind"};

TEST(NearestKey, FindsTheKeyThatWasMeant) {
    EXPECT_EQ(nearest_key("LigthType", keys), "LightType"); // swapped
    EXPECT_EQ(nearest_key("lighttype", keys), "LightType"); // letter case
    EXPECT_EQ(nearest_key("FlashMsk", keys), "FlashMask");  // left out
    EXPECT_EQ(nearest_key("LightIntt", keys), "LightInt");  // added
    EXPECT_EQ(nearest_key("kimd", keys), "kind");           // changed
}

TEST(NearestKey, GivesNothingForWhatIsNotLikeAny) {
    EXPECT_EQ(nearest_key("altogether", keys), "");
    EXPECT_EQ(nearest_key("", keys), "");
    EXPECT_EQ(nearest_key(std::string(1000000, 'x'), keys), "");
}

TEST(Suggestion, NamesTheNearestOrAll) {
    EXPECT_EQ(suggestion("Kind", keys), " (did you mean \"kind\"?)");
    EXPECT_EQ(suggestion("altogether", keys), " (there are: LightType, LightInt, FlashMask, kind)");
}

} // namespace
} // namespace morvane
