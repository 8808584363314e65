#include "source/line_ends.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace morvane {
namespace {

using Places = std::vector<std::ptrdiff_t>;

/// Where the ends of a text are found that comes in by stretches of up to `most` bytes.
Places found(const std::string& text, std::size_t most, std::mt19937& random) {
    Places places;
    LineEnds ends(text.data());
    for (std::size_t there = 0; there < text.size();) {
        const std::size_t more = std::min(1 + random() % most, text.size() - there);
        ends.extend(more);
        there += more;
        for (const char* end = ends.next(); end != ends.edge(); end = ends.next()) {
            places.push_back(end - text.data());
        }
    }
    return places;
}

Places expected(const std::string& text) {
    Places places;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' || text[i] == '\n') {
            places.push_back(static_cast<std::ptrdiff_t>(i));
        }
    }
    return places;
}

TEST(LineEnds, AreFoundAmongAllBytes) {
    std::mt19937 random(1);
    for (int i = 0; i < 3000; ++i) {
        std::string text(random() % 200, ' ');
        for (char& c : text) {
            // Every byte there is, and often the ends and those beside them.
            c = static_cast<char>(random() % 2 == 0 ? random() % 256 : 8 + random() % 8);
        }
        ASSERT_EQ(found(text, 1 + random() % 50, random), expected(text))
            << testing::PrintToString(text);
    }
}

TEST(LineEnds, EveryByteAtEveryPlaceOfAWord) {
    std::mt19937 random(1);
    for (int byte = 0; byte < 256; ++byte) {
        for (std::size_t at = 0; at < 16; ++at) {
            for (const char other : {' ', '\n', '\0', '\x0b', '\xff', '\x7f', '\x80'}) {
                std::string text(16, other);
                text[at] = static_cast<char>(byte);
                ASSERT_EQ(found(text, 16, random), expected(text)) << byte << " at " << at;
            }
        }
    }
}

TEST(LineEnds, NoBytesHaveNone) {
    const char nothing = '\n';
    LineEnds ends(&nothing);
    EXPECT_EQ(ends.next(), ends.edge());
    EXPECT_EQ(ends.next(), &nothing);
}

} // namespace
} // namespace morvane
