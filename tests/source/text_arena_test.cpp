#include "source/text_arena.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

namespace morvane {
namespace {

/// An arena beside plain strings.
struct Kept {
    TextArena arena;
    std::vector<std::pair<TextArena::Handle, std::string>> texts;

    void add(const std::string& text) { texts.emplace_back(arena.add(text), text); }
    void expect_all_there() const {
        for (const auto& [handle, text] : texts) {
            ASSERT_TRUE(arena[handle] == text);
        }
    }
};

std::string random_text(std::mt19937& random) {
    // Now and then around the size from which a text has memory of its own, and far more.
    const std::size_t size = random() % 50 != 0   ? random() % 300
                             : random() % 10 != 0 ? 131'000 + random() % 150
                                                  : random() % 3'000'000;
    std::string text(size, ' ');
    for (char& byte : text) {
        byte = static_cast<char>(random());
    }
    return text;
}

TEST(TextArena, KeepsWhatIsAdded) {
    std::mt19937 random(1);
    Kept kept;
    for (int i = 0; i < 10'000; ++i) {
        kept.add(random_text(random));
        ASSERT_LT(kept.texts.back().first, TextArena::Handle{1} << 63);
    }
    kept.expect_all_there();
}

TEST(TextArena, ViewsStayWhereTheyAre) {
    TextArena arena;
    const std::string_view first = arena[arena.add("first")];
    for (int i = 0; i < 30'000; ++i) {
        arena.add(std::string(100, 'x'));
    }
    const TextArena moved = std::move(arena);
    EXPECT_EQ(first, "first");
}

TEST(TextArena, CopiesGrowApart) {
    std::mt19937 random(2);
    std::vector<Kept> all(1);
    for (int i = 0; i < 3000; ++i) {
        all[random() % all.size()].add(random_text(random));
        if (random() % 100 == 0) {
            const Kept copy = all[random() % all.size()];
            if (all.size() < 5) {
                all.push_back(copy);
            } else {
                all[random() % all.size()] = copy;
            }
        }
    }
    for (const Kept& kept : all) {
        kept.expect_all_there();
    }
}

TEST(TextArena, AnEmptyText) {
    TextArena arena;
    EXPECT_EQ(arena[arena.add("")], "");
}

TEST(TextArena, ATextOfItsOwn) {
    TextArena arena;
    TextArena::Handle handle = arena.add("a text");
    for (int i = 0; i < 20; ++i) {
        handle = arena.add(arena[handle]);
    }
    EXPECT_EQ(arena[handle], "a text");
}

} // namespace
} // namespace morvane
