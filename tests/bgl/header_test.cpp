// SPDX-License-Identifier: GPL-3.0-or-later
#include "bgl/bgl_file.h"
#include "bgl_files.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

TEST(Header, DecodesEveryFieldFromItsPlace) {
    std::string bytes(128, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(i);
    }
    const BglHeader header = decode_header(bytes);
    EXPECT_EQ(header.FL_world_set, 0x0100);
    EXPECT_EQ(header.FL_north_bounds, 0x05040302);
    EXPECT_EQ(header.FL_vor_lo, 0x1716);
    EXPECT_EQ(header.FL_vor_hi, 0x1918);
    EXPECT_EQ(header.FL_free[0], 0x1D1C1B1A);
    EXPECT_EQ(header.FL_free[5], 0x31302F2E);
    EXPECT_EQ(header.FL_library_ptr, 0x41403F3E);
    EXPECT_EQ(header.FL_library_max[1], 0x65646362);
    EXPECT_EQ(header.FL_magic, 0x79787776);
    EXPECT_EQ(header.FL_spare2, 0x7D7C7B7A);
    EXPECT_EQ(header.FL_spare3, 0x7F7E);
}

TEST(Header, FieldsLieWithoutGaps) {
    std::size_t end = 0;
    const BglHeader header;
    for_each_field(header, [&](std::size_t offset, const char* name, auto field) {
        EXPECT_EQ(offset, end) << name;
        end += sizeof(field);
    });
    EXPECT_EQ(end, 128U);
    const HeaderExtension extension;
    for_each_field(extension, [&](std::size_t offset, const char* name, auto field) {
        EXPECT_EQ(offset, end) << name;
        end += sizeof(field);
    });
    EXPECT_EQ(end, 168U);
}

TEST(Header, NegativeNumbersAreSigned) {
    const BglHeader header = decode_header(std::string(128, '\xFF'));
    EXPECT_EQ(header.FL_world_set, -1);
    EXPECT_EQ(header.FL_east_bounds, -1);
}

TEST(HeaderExtension, TheUnnamedFieldIsPassedOver) {
    std::string bytes(40, '\0');
    bytes[16] = 1;  // file offset 144
    bytes[20] = 2;  // 148
    bytes[36] = 10; // 164
    const HeaderExtension extension = decode_extension(bytes);
    EXPECT_EQ(extension.unnamed, 1);
    EXPECT_EQ(extension.build_num, 2);
    EXPECT_EQ(extension.facility2_data, 10);
}

TEST(IsValidBgl, TakesKindsOneThreeAndFourOnly) {
    for (int kind = -32768; kind <= 32767; ++kind) {
        const BglHeader header{.FL_world_set = static_cast<std::int16_t>(kind)};
        EXPECT_EQ(is_valid_bgl(header), kind == 1 || kind == 3 || kind == 4) << kind;
    }
}

TEST(IsValidBgl, RefusesFilesOfNewerSimulators) {
    std::string bytes("\x01\x02\x92\x19", 4);
    bytes.resize(128);
    EXPECT_FALSE(is_valid_bgl(decode_header(bytes)));
}

} // namespace
} // namespace morvane
