// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/guid128.h"

#include <gtest/gtest.h>

#include <random>

namespace morvane {
namespace {

TEST(GuidWord, HasNineDigits) {
    EXPECT_EQ(guid_word(1), "000000001");
    EXPECT_EQ(guid_word(0), "000000000");
    EXPECT_EQ(guid_word(-1), "0FFFFFFFF");
    EXPECT_EQ(guid_word(static_cast<std::int32_t>(0xAAAAAAAA)), "0AAAAAAAA");
}

TEST(ParseIdentifier, TakesTheDefaultText) {
    const auto guid = parse_identifier("0AAAAAAAA, 0AAAAAAAA, 0AAAAAAAA, 000000001");
    ASSERT_TRUE(guid);
    EXPECT_EQ(static_cast<std::uint32_t>((*guid)[0]), 0xAAAAAAAAU);
    EXPECT_EQ(static_cast<std::uint32_t>((*guid)[1]), 0xAAAAAAAAU);
    EXPECT_EQ(static_cast<std::uint32_t>((*guid)[2]), 0xAAAAAAAAU);
    EXPECT_EQ((*guid)[3], 1);
}

TEST(ParseIdentifier, IgnoresBlanksAndReadsUpToTheFirstOtherCharacter) {
    const auto guid = parse_identifier("0 5ADE 0809h,042E14DCFH,  ab h ,7z9");
    ASSERT_TRUE(guid);
    EXPECT_EQ(*guid, (Guid128{0x5ADE0809, 0x42E14DCF, 0xAB, 7}));
}

TEST(ParseIdentifier, RefusesThreeOrFiveParts) {
    EXPECT_FALSE(parse_identifier("1, 2, 3"));
    EXPECT_FALSE(parse_identifier("1, 2, 3, 4, 5"));
    EXPECT_FALSE(parse_identifier("1, 2, 3, 4,"));
    EXPECT_FALSE(parse_identifier(""));
}

TEST(ParseIdentifier, RefusesAWordOfMoreThan32Bits) {
    EXPECT_FALSE(parse_identifier("123456789, 2, 3, 4"));
    EXPECT_TRUE(parse_identifier("0000FFFFFFFFh, 2, 3, 4"));
}

TEST(IdentifierText, WritesNineDigitsAWord) {
    const Guid128 guid{static_cast<std::int32_t>(0xAAAAAAAA), static_cast<std::int32_t>(0xAAAAAAAA),
                       static_cast<std::int32_t>(0xAAAAAAAA), 1};
    EXPECT_EQ(identifier_text(guid, true), "0AAAAAAAAh, 0AAAAAAAAh, 0AAAAAAAAh, 000000001h");
    EXPECT_EQ(identifier_text(guid, false), "0AAAAAAAA, 0AAAAAAAA, 0AAAAAAAA, 000000001");
    EXPECT_EQ(identifier_text({0xABC, 0, -1, 0x10}, true),
              "000000ABCh, 000000000h, 0FFFFFFFFh, 000000010h");
}

TEST(IdentifierText, IsReadBack) {
    std::mt19937 random(7);
    for (int round = 0; round < 1000; ++round) {
        Guid128 guid{};
        for (std::int32_t& word : guid) {
            word = static_cast<std::int32_t>(random() >> (random() % 32));
        }
        EXPECT_EQ(parse_identifier(identifier_text(guid, round % 2 == 0)), guid);
    }
}

} // namespace
} // namespace morvane
