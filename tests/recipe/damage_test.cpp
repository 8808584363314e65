// SPDX-License-Identifier: GPL-3.0-or-later

// Damaged files are refused or taken, and nothing else happens.

#include "library/library_list_file.h"
#include "recipe_files.h"
#include "support/recording_reporter.h"
#include "support/source_folder.h"

#include <gtest/gtest.h>

#include <random>

namespace morvane {
namespace {

const std::string recipe_file = test::source_folder() + "/examples/airport/airport.toml";
const std::string list_file = test::source_folder() + "/examples/library/objects.toml";

void read_recipe_damaged(const std::string& text) {
    const RecipeReading reading = test::read_recipe_text(text);
    EXPECT_NE(reading.recipe.has_value(), !reading.errors.empty());
}

void read_list_damaged(const std::string& text) {
    const test::TempFolder folder;
    const auto disk = make_system_disk();
    test::RecordingReporter reporter;
    const Services services{*disk, reporter};
    const std::string path = folder.write("objects.toml", text);
    folder.write("hangar.asm", "    SCALE_AGL x,0,40,65536,0,0\r\n");
    const LibraryListReading reading = read_library_list(services, path);
    EXPECT_NE(reading.list.has_value(), !reading.errors.empty());
    EXPECT_EQ(folder.read("objects.toml"), text);
}

std::string damaged(std::string text, std::mt19937& random) {
    for (std::size_t i = 0; i < text.size() / 100 + 1; ++i) {
        text[random() % text.size()] = static_cast<char>(random() % 256);
    }
    return text;
}

TEST(DamagedFile, EveryTruncationOfARecipe) {
    const std::string text = test::read_file(recipe_file).substr(0, 600);
    for (std::size_t length = 0; length < text.size(); ++length) {
        read_recipe_damaged(text.substr(0, length));
    }
}

TEST(DamagedFile, RandomDamageToARecipe) {
    const std::string text = test::read_file(recipe_file);
    std::mt19937 random(5);
    for (int round = 0; round < 1000; ++round) {
        read_recipe_damaged(damaged(text, random));
    }
}

TEST(DamagedFile, EveryTruncationOfALibraryList) {
    const std::string text = test::read_file(list_file);
    for (std::size_t length = 0; length < text.size(); ++length) {
        read_list_damaged(text.substr(0, length));
    }
}

TEST(DamagedFile, RandomDamageToALibraryList) {
    const std::string text = test::read_file(list_file);
    std::mt19937 random(6);
    for (int round = 0; round < 1000; ++round) {
        read_list_damaged(damaged(text, random));
    }
}

} // namespace
} // namespace morvane
