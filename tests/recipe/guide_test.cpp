// SPDX-License-Identifier: GPL-3.0-or-later

// The examples of the guides are taken as they stand.

#include "library/library_list_file.h"
#include "recipe/recipe.h"
#include "support/recording_reporter.h"
#include "support/source_folder.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane {
namespace {

using ::testing::IsEmpty;

// The blocks of TOML in a page of the guide that hold a certain header.
std::vector<std::string> examples_with(const std::string& page, const std::string& header) {
    const std::string text = test::read_file(test::source_folder() + "/docs/" + page);
    const std::string fence = "```toml\n";
    std::vector<std::string> examples;
    for (std::size_t at = text.find(fence); at != std::string::npos; at = text.find(fence, at)) {
        at += fence.size();
        const std::string example = text.substr(at, text.find("```", at) - at);
        if (example.find(header) != std::string::npos) {
            examples.push_back(example);
        }
    }
    return examples;
}

void expect_good_recipe(const std::string& text) {
    const test::TempFolder folder;
    const auto disk = make_system_disk();
    EXPECT_THAT(read_recipe(*disk, folder.write("a.toml", text), "fx").errors, IsEmpty()) << text;
}

TEST(Guide, ItsRecipesAreRecipes) {
    const auto recipes = examples_with("recipes.md", "[[assign]]");
    EXPECT_GE(recipes.size(), 5U);
    for (const std::string& recipe : recipes) {
        expect_good_recipe(recipe);
    }
    for (const std::string& recipe : examples_with("library.md", "[[assign]]")) {
        expect_good_recipe(recipe);
    }
}

TEST(Guide, ItsLibraryListIsOne) {
    const auto lists = examples_with("library.md", "[[object]]");
    ASSERT_EQ(lists.size(), 1U);
    const test::TempFolder folder;
    folder.write("hangar.asm", "");
    const auto disk = make_system_disk();
    test::RecordingReporter reporter;
    const LibraryListReading reading =
        read_library_list({*disk, reporter}, folder.write("objects.toml", lists[0]));
    EXPECT_THAT(reading.errors, IsEmpty());
}

// Every row of a table of parameters: its key with its example must be taken for the kind.
TEST(Guide, EveryKeyIsTakenWithItsExample) {
    const std::string text = test::read_file(test::source_folder() + "/docs/recipes.md");
    const std::vector<std::pair<std::string, std::string>> sections{{"### `Lights`", "Lights"},
                                                                    {"### `Effects`", "Effects"},
                                                                    {"### `Windsock`", "Windsock"},
                                                                    {"### `Library`", "Library"}};
    std::size_t keys = 0;
    for (const auto& [header, kind] : sections) {
        const std::size_t begin = text.find(header);
        ASSERT_NE(begin, std::string::npos) << header;
        const std::string section = text.substr(begin, text.find("\n##", begin + 3) - begin);
        for (std::size_t at = section.find("\n| `"); at != std::string::npos;
             at = section.find("\n| `", at + 1)) {
            const std::string row = section.substr(at + 3, section.find('\n', at + 1) - at - 3);
            const std::string key = row.substr(1, row.find('`', 1) - 1);
            const std::size_t cell = row.find(" | ", row.find(" | ") + 3) + 4;
            const std::string example = row.substr(cell, row.find('`', cell) - cell);
            expect_good_recipe("[[assign]]\nkind = \"" + kind + "\"\n" + key + " = " + example +
                               "\n");
            ++keys;
        }
    }
    EXPECT_EQ(keys, 18U);
}

} // namespace
} // namespace morvane
