// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/encodings.h"
#include "base/paths.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace morvane {
namespace {

TEST(Paths, FolderPart) {
    EXPECT_EQ(folder_part("C:\\scenery\\tower"), "C:\\scenery");
    EXPECT_EQ(folder_part("C:\\tower"), "C:");
    EXPECT_EQ(folder_part("\\tower"), "");
    EXPECT_EQ(folder_part("C:\\scenery\\"), "C:\\scenery");
}

TEST(Paths, FolderPartWithoutASeparatorIsEmpty) {
    EXPECT_EQ(folder_part("tower"), "");
    EXPECT_EQ(folder_part(""), "");
}

TEST(Paths, FileNamePart) {
    EXPECT_EQ(file_name_part("C:\\scenery\\tower.asm"), "tower.asm");
    EXPECT_EQ(file_name_part("C:\\scenery\\"), "");
}

TEST(Paths, FileNamePartWithoutASeparatorIsTheWholePath) {
    EXPECT_EQ(file_name_part("tower.asm"), "tower.asm");
    EXPECT_EQ(file_name_part(""), "");
}

TEST(Paths, BothSeparatorsCount) {
    EXPECT_EQ(folder_part("/home/me\\tower"), "/home/me");
    EXPECT_EQ(folder_part("a\\b/c"), "a\\b");
    EXPECT_EQ(file_name_part("a\\b/c"), "c");
    EXPECT_EQ(file_name_part("a/b\\c"), "c");
}

TEST(Paths, ExtensionInUpperCase) {
    EXPECT_EQ(extension_part("C:\\scenery\\tower.asm"), "ASM");
    EXPECT_EQ(extension_part("tower.tar.Bgl"), "BGL");
    EXPECT_EQ(extension_part("tower."), "");
}

TEST(Paths, ExtensionWithoutADotIsEmpty) {
    EXPECT_EQ(extension_part("tower"), "");
    EXPECT_EQ(extension_part(""), "");
}

TEST(Paths, DotInAFolderNameCountsWhenTheFileNameHasNone) {
    EXPECT_EQ(extension_part("C:\\my.scenery\\tower"), "SCENERY\\TOWER");
}

TEST(Paths, EndingInAnyCase) {
    EXPECT_TRUE(has_ending("a.BGL", ".bgl"));
    EXPECT_TRUE(has_ending("a_0.Asm", "_0.asm"));
    EXPECT_FALSE(has_ending("bgl", ".bgl"));
    EXPECT_FALSE(has_ending("a.bg", ".bgl"));
}

TEST(Paths, Joining) {
    const std::string separator(1, static_cast<char>(std::filesystem::path::preferred_separator));
    EXPECT_EQ(join_path("folder", "name"), "folder" + separator + "name");
    EXPECT_EQ(join_path("folder/", "name"), "folder/name");
    EXPECT_EQ(join_path("C:\\", "name"), "C:\\name");
    EXPECT_EQ(join_path("", "name"), "name");
}

TEST(AbsolutePath, BeginsAtTheCurrentFolder) {
    const std::string here = narrow_text(std::filesystem::current_path().wstring());
    const auto separator = static_cast<char>(std::filesystem::path::preferred_separator);
    // Letters beyond the system's 8-bit set come through.
    EXPECT_EQ(absolute_path("\xE4\xBC\x9A.bgl"), here + separator + "\xE4\xBC\x9A.bgl");
    EXPECT_EQ(absolute_path(here), here);
}

} // namespace
} // namespace morvane
