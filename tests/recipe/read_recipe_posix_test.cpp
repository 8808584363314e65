// SPDX-License-Identifier: GPL-3.0-or-later
#include "recipe/recipe.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace morvane {
namespace {

TEST(ReadRecipe, RefusesANamedPipeAtOnce) {
    const test::TempFolder folder;
    const auto disk = make_system_disk();
    const std::string pipe = folder.file("pipe.toml");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const RecipeReading reading = read_recipe(*disk, pipe, "");
    EXPECT_FALSE(reading.recipe);
    EXPECT_THAT(reading.errors, testing::ElementsAre(testing::StartsWith(pipe + ": ")));
}

} // namespace
} // namespace morvane
