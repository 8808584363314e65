// SPDX-License-Identifier: GPL-3.0-or-later

// What the written source becomes when it is assembled, byte by byte.

#include "library/libcomp_fixture.h"
#include "library/mini_assembler.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

// Reads the number of `width` bytes at `at`, lowest byte first, with its sign.
std::int64_t number(const std::string& bytes, std::size_t at, std::size_t width) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < width; ++i) {
        value |= std::uint64_t{static_cast<unsigned char>(bytes.at(at + i))} << (8 * i);
    }
    const bool negative = width < 8 && ((value >> (8 * width - 1)) & 1) != 0;
    return static_cast<std::int64_t>(value) - (negative ? std::int64_t{1} << (8 * width) : 0);
}

std::int64_t dword(const std::string& bytes, std::size_t at) {
    return number(bytes, at, 4);
}

class LibraryBytes : public test::LibraryTest {
  protected:
    void SetUp() override {
        list.entries = {
            {{-1, 2, 3, 4}, 100, 40, 65536, 0, 0, "Hangar"},
            {{0x11, 0x22, 0x33, 0x44}, 200, -12, 131072, -5, 0, "Z\xFCrich, "},
        };
        list.lines = {{"hangar", folder.file("hangar"), 0}, {"tower", folder.file("tower"), 1}};
        ASSERT_TRUE(create_library(services, list, folder.file("lib.asm")));
        bytes_ = test::assemble(folder.read("lib.asm"), [](const std::string& path) {
            return path == "hangar_0.asm" ? "    dw 3 dup(0EEEEh)\r\n" : "    db 7\r\n";
        });
    }

    std::string bytes_;
};

TEST_F(LibraryBytes, TheHeaderHasItsFieldsAndPointsTo130) {
    EXPECT_EQ(number(bytes_, 0, 2), 1);
    EXPECT_EQ(dword(bytes_, 2), 10001751);
    EXPECT_EQ(dword(bytes_, 6), -9890619);
    EXPECT_EQ(dword(bytes_, 10), 2147483647);
    EXPECT_EQ(dword(bytes_, 14), -2135553182);
    EXPECT_EQ(bytes_.substr(18, 44), std::string(44, '\0'));
    EXPECT_EQ(dword(bytes_, 62), 130);
    EXPECT_EQ(bytes_.substr(66, 20), std::string(20, '\0'));
    EXPECT_EQ(dword(bytes_, 86), 0x11); // the smaller identifier as text
    EXPECT_EQ(dword(bytes_, 90), 0x22);
    EXPECT_EQ(dword(bytes_, 94), -1);
    EXPECT_EQ(dword(bytes_, 98), 2);
    EXPECT_EQ(bytes_.substr(102, 28), std::string(28, '\0'));
}

TEST_F(LibraryBytes, TheIndexHasTwentyBytesAnObjectAndAnEnd) {
    const std::size_t data = 130;
    EXPECT_EQ(dword(bytes_, data), 56); // two entries and the end
    EXPECT_EQ(dword(bytes_, data + 4), -1);
    EXPECT_EQ(dword(bytes_, data + 16), 4);
    EXPECT_EQ(dword(bytes_, data + 20), 56 + 41 + 6 + 4 + 6);
    EXPECT_EQ(dword(bytes_, data + 24), 0x11);
    EXPECT_EQ(dword(bytes_, data + 36), 0x44);
    EXPECT_EQ(dword(bytes_, data + 40), 0);
    EXPECT_EQ(dword(bytes_, data + 44), 6);
    EXPECT_EQ(dword(bytes_, data + 48), 8);
    EXPECT_EQ(dword(bytes_, data + 52), 130);
}

TEST_F(LibraryBytes, TheRecordHas41BytesNameAndFourZeros) {
    const std::size_t record = 130 + 56;
    for (std::size_t word = 0; word < 4; ++word) {
        EXPECT_EQ(dword(bytes_, record + 4 * word), list.entries[0].guid[word]);
    }
    EXPECT_EQ(number(bytes_, record + 16, 1), 100);
    EXPECT_EQ(dword(bytes_, record + 17), 41 + 6 + 4); // record length
    EXPECT_EQ(dword(bytes_, record + 21), 6);          // length of the drawing code
    EXPECT_EQ(dword(bytes_, record + 25), 40);
    EXPECT_EQ(dword(bytes_, record + 29), 65536);
    EXPECT_EQ(dword(bytes_, record + 33), 0);
    EXPECT_EQ(dword(bytes_, record + 37), 0);
    EXPECT_EQ(bytes_.substr(record + 41, 10), std::string("Hangar\0\0\0\0", 10));
    EXPECT_EQ(bytes_.substr(record + 51, 6), std::string(6, '\xEE'));
}

TEST_F(LibraryBytes, TheSecondRecordFollowsTheFirstOnesCode) {
    const std::size_t record = 130 + 56 + 57;
    EXPECT_EQ(dword(bytes_, record), 0x11);
    EXPECT_EQ(static_cast<unsigned char>(bytes_[record + 16]), 200);
    EXPECT_EQ(dword(bytes_, record + 17), 41 + 7 + 4);
    EXPECT_EQ(dword(bytes_, record + 21), 1);
    EXPECT_EQ(dword(bytes_, record + 25), -12);
    EXPECT_EQ(dword(bytes_, record + 29), 131072);
    EXPECT_EQ(dword(bytes_, record + 33), -5);
    EXPECT_EQ(bytes_.substr(record + 41, 11), std::string("Z\xFCrich,\0\0\0\0", 11));
    EXPECT_EQ(bytes_.substr(record + 52), "\7" + std::string(16, '\0'));
}

} // namespace
} // namespace morvane
