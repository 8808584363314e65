// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/guid128.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

TEST(GuidWord, HasNineDigits) {
    EXPECT_EQ(guid_word(1), "000000001");
    EXPECT_EQ(guid_word(0), "000000000");
    EXPECT_EQ(guid_word(-1), "0FFFFFFFF");
    EXPECT_EQ(guid_word(static_cast<std::int32_t>(0xAAAAAAAA)), "0AAAAAAAA");
}

} // namespace
} // namespace morvane
