// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/wide_text.h"
#include "system/absolute_path.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace morvane::test {
namespace {

TEST(AbsolutePath, BeginsAtTheCurrentFolder) {
    const std::string here = narrow_text(std::filesystem::current_path().wstring());
    const auto separator = static_cast<char>(std::filesystem::path::preferred_separator);
    // Letters beyond the system's 8-bit set come through.
    EXPECT_EQ(absolute_path("\xE4\xBC\x9A.bgl"), here + separator + "\xE4\xBC\x9A.bgl");
    EXPECT_EQ(absolute_path(here), here);
}

} // namespace
} // namespace morvane::test
