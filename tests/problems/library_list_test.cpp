// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/libraries.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace morvane::test {
namespace {

TEST(LibraryListProblems, AnotherScaleThanDesignedAndAMissingModel) {
    const TempFolder folder;
    const auto disk = make_system_disk();
    folder.write("tank.asm", "SCALE_AGL skip,0,7,32768,0,0,0,0,0,0\r\n");
    folder.write("tank_0.asm", "BGL_BEGIN 0800h\r\n");
    LibraryList list;
    list.entries.push_back({});
    list.entries[0].stored_scale = 32768;
    list.lines.push_back({"tank", folder.file("tank"), 0});
    EXPECT_TRUE(find_library_list_problems(*disk, list, "objects.toml").empty());

    list.entries[0].stored_scale = 65536;
    list.lines.push_back({"gone", folder.file("gone"), 0});
    const std::vector<Problem> problems = find_library_list_problems(*disk, list, "objects.toml");
    ASSERT_EQ(problems.size(), 2U);
    EXPECT_EQ(problems[0].code, "library-scale");
    EXPECT_EQ(problems[0].path, "objects.toml");
    EXPECT_NE(problems[0].text.find("the 2 that it was designed at"), std::string::npos);
    EXPECT_EQ(problems[1].code, "library-model-missing");
}

} // namespace
} // namespace morvane::test
