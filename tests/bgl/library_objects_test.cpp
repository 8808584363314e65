// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "bgl/library_objects.h"
#include "bgl_files.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane {
namespace {

using test::LibrarySpec;
using test::ObjectSpec;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using State = Listing::State;

std::vector<LibraryObject> listed(const std::vector<ObjectSpec>& specs) {
    std::vector<LibraryObject> objects;
    for (const ObjectSpec& spec : specs) {
        objects.push_back(test::listed(spec));
    }
    return objects;
}

// Where the objects' records of a file start, seen from the start of the file.
std::size_t first_record(const LibrarySpec& spec) {
    return spec.library_start + (spec.objects.size() + 1) * 20;
}

TEST(ReadLibraryObjects, NoLibraryDataAndCompressed) {
    test::MemoryFile file("");
    EXPECT_EQ(read_library_objects(file, {.FL_world_set = 1}).state, State::NoLibrary);
    EXPECT_EQ(read_library_objects(file, {.FL_world_set = 1, .FL_library_ptr = 128, .FL_spare2 = 1})
                  .state,
              State::Compressed);
}

TEST(ReadLibraryObjects, EmptyIndexIsNoObjects) {
    const Listing listing = test::list_bytes(test::library_file({}));
    EXPECT_EQ(listing.state, State::Listed);
    EXPECT_TRUE(listing.objects.empty());
}

TEST(ReadLibraryObjects, GapsBetweenRecordsArePassedOver) {
    const LibrarySpec spec{
        .objects = {{.name = "One", .code = std::string(1000, '\xFF')},
                    {.name = "Two", .code = ""},
                    {.guid = {1, -2, 3, -4}, .power = 255, .stored_scale = -5, .type = -6}}};
    const auto entries = test::list_bytes(test::library_file(spec)).objects;
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries, listed(spec.objects));
}

TEST(ReadLibraryObjects, NamesHaveFortySevenCharacters) {
    const std::string name48 = std::string(47, 'n') + "X";
    const LibrarySpec spec{.objects = {{.name = name48},
                                       {.name = "short"},
                                       {.name = std::string("cut\0off", 7)},
                                       {.name = ""}}};
    const auto entries = test::list_bytes(test::library_file(spec)).objects;
    ASSERT_EQ(entries.size(), 4U);
    EXPECT_EQ(entries[0].name, std::string(47, 'n'));
    EXPECT_EQ(entries[1].name, "short" + std::string(42, ' '));
    EXPECT_EQ(entries[2].name, "cut" + std::string(44, ' '));
    EXPECT_EQ(entries[3].name, std::string(47, ' '));
}

TEST(ReadLibraryObjects, WhatWasGeneratedIsWhatIsListed) {
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        LibrarySpec spec;
        spec.header.FL_world_set = 3;
        spec.header.FL_magic = round % 2 == 0 ? 0 : static_cast<std::int32_t>(0x87654321);
        spec.library_start = 168 + random() % 1000;
        spec.objects = test::random_objects(random, random() % 60);
        ASSERT_EQ(test::list_bytes(test::library_file(spec)).objects, listed(spec.objects))
            << "round " << round;
    }
}

TEST(ReadLibraryObjects, TwoThousandObjectsAreTheLimit) {
    std::mt19937 random(2);
    LibrarySpec spec{.objects = test::random_objects(random, 2000)};
    EXPECT_EQ(test::list_bytes(test::library_file(spec)).objects, listed(spec.objects));
    spec.objects.emplace_back();
    EXPECT_THROW(test::list_bytes(test::library_file(spec)), RuntimeError);
}

TEST(ReadLibraryObjects, AnIndexWithoutEndIsRead20000EntriesFar) {
    const BglHeader header{.FL_world_set = 1, .FL_library_ptr = 128};
    test::MemoryFile file(test::encode(header) + std::string(20 * 50000, '\x01'));
    try {
        read_library_objects(file, header);
        FAIL() << "no range error";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.code(), ErrorNumber::SubscriptOutOfRange);
    }
    EXPECT_LE(file.bytes_read, 20U * 20000 + 2 * read_ahead_size);
}

// An overlapping record is not gone back to: records are read one after another.
TEST(ReadLibraryObjects, RecordsThatOverlapAreReadInSequence) {
    LibrarySpec spec{.objects = {{.name = "First", .code = ""}, {.name = "Second", .code = ""}}};
    std::string bytes = test::library_file(spec);
    bytes[spec.library_start + 20] = 60; // the second record's offset, now that of the first
    const auto entries = test::list_bytes(bytes).objects;
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries, listed(spec.objects));
}

TEST(ReadLibraryObjects, ARecordMayLieAtTheVeryBeginning) {
    const test::LibrarySpec spec{.library_start = 256, .objects = {{}}};
    std::string bytes = test::library_file(spec);
    bytes.replace(256, 4, std::string("\x00\xFF\xFF\xFF", 4)); // the record's offset, -256
    const auto entries = test::list_bytes(bytes).objects;
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].guid[0] & 0xFFFF, 1) << "the header's FL_world_set";
}

TEST(ReadLibraryObjects, ARecordLengthBelowTheFixedPartHasNoName) {
    LibrarySpec spec{.objects = {{.name = "", .code = ""}, {.name = "Second"}}};
    std::string bytes = test::library_file(spec);
    bytes[first_record(spec) + 17] = 10; // the first record's length, 41 in truth
    const auto entries = test::list_bytes(bytes).objects;
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].name, std::string(47, ' '));
    // The gap seems to be 31 bytes, counted from behind the fixed part.
    EXPECT_NE(entries[1].name.substr(0, 6), "Second");
}

TEST(ReadLibraryObjects, HugeAndNegativeLengthsReadNothingInVain) {
    for (const int high : {0x7F, 0x80, 0xFF}) {
        LibrarySpec spec{.objects = {{.name = "First"}, {.name = "Second"}, {.name = "Third"}}};
        std::string bytes = test::library_file(spec);
        bytes[first_record(spec) + 20] = static_cast<char>(high);
        test::MemoryFile file(bytes);
        const Listing listing = read_library_objects(file, decode_header(bytes.substr(0, 128)));
        EXPECT_EQ(listing.objects.size(), 3U);
        EXPECT_LE(file.bytes_read, bytes.size());
    }
}

TEST(ReadLibraryObjects, PointersOutsideTheFileReadAsZeros) {
    for (const std::int32_t pointer : {-1, -128, -2147483647 - 1, 2147483647, 1000}) {
        const BglHeader header{.FL_world_set = 1, .FL_library_ptr = pointer};
        test::MemoryFile file(test::encode(header));
        const Listing listing = read_library_objects(file, header);
        EXPECT_EQ(listing.state, State::Listed) << pointer;
        EXPECT_LE(listing.objects.size(), 1U) << pointer;
    }
}

TEST(ReadLibraryObjects, LongDrawingCodeIsNotRead) {
    std::mt19937 random(3);
    LibrarySpec spec{.objects = test::random_objects(random, 40)};
    for (ObjectSpec& object : spec.objects) {
        object.code.assign(100000, '\x7F');
    }
    const std::string bytes = test::library_file(spec);
    test::MemoryFile file(bytes);
    const Listing listing = read_library_objects(file, decode_header(bytes.substr(0, 128)));
    EXPECT_EQ(listing.objects, listed(spec.objects));
    EXPECT_LE(file.bytes_read, (1 + spec.objects.size()) * read_ahead_size);
}

TEST(ReadLibraryObjects, ASmallLibraryIsReadAtOnce) {
    std::mt19937 random(4);
    const LibrarySpec spec{.objects = test::random_objects(random, 15)};
    const std::string bytes = test::library_file(spec);
    test::MemoryFile file(bytes);
    read_library_objects(file, decode_header(bytes.substr(0, 128)));
    EXPECT_EQ(file.ranges.size(), 1U);
}

// Records may begin anywhere, also where what was read ahead ends.
TEST(ReadLibraryObjects, ARecordAcrossTheEndOfWhatWasReadAheadIsWhole) {
    for (std::size_t length = read_ahead_size - 300; length < read_ahead_size; ++length) {
        const LibrarySpec spec{.objects = {{.name = "First", .code = std::string(length, '\x7F')},
                                           {.guid = {5, 6, 7, 8}, .name = std::string(47, 'n')},
                                           {.name = "Third"}}};
        ASSERT_EQ(test::list_bytes(test::library_file(spec)).objects, listed(spec.objects))
            << length;
    }
}

TEST(ListLibrary, PassesOnWhatOpenBglSays) {
    const test::TempFolder folder;
    const auto disk = make_system_disk();
    InvalidFileList invalid(*disk, folder.path());
    const auto list = [&](const std::string& path) {
        return list_library(*disk, path, invalid).state;
    };
    EXPECT_EQ(list(folder.file("none.bgl")), State::NotABgl);
    EXPECT_EQ(list(folder.write("a.txt", test::library_file({}))), State::NotABgl);
    EXPECT_EQ(list(folder.write("bad.bgl", "\x02")), State::Invalid);
    EXPECT_EQ(list(folder.write("objects.bgl", test::object_file())), State::NoLibrary);
    LibrarySpec spec{.objects = {{}, {}}};
    EXPECT_EQ(list(folder.write("lib.BgL", test::library_file(spec))), State::Listed);
    spec.header.FL_spare2 = 5;
    EXPECT_EQ(list(folder.write("packed.bgl", test::library_file(spec))), State::Compressed);
    EXPECT_EQ(folder.read("error.txt"), folder.file("bad.bgl") + "\r\n");
}

TEST(ListLibrary, TheRangeErrorNamesTheFile) {
    const test::TempFolder folder;
    const auto disk = make_system_disk();
    InvalidFileList invalid(*disk, folder.path());
    const LibrarySpec spec{.objects = std::vector<ObjectSpec>(2001)};
    const std::string path = folder.write("big.bgl", test::library_file(spec));
    try {
        list_library(*disk, path, invalid);
        FAIL() << "no range error";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), 9);
        EXPECT_EQ(error.about(), path + " holds more than 2000 library objects");
    }
}

// Damaged files: every outcome is a list or a range error, whatever the bytes say.
void list_damaged(const std::string& bytes) {
    try {
        const Listing listing = test::list_bytes(bytes);
        ASSERT_LE(listing.objects.size(), 2000U);
        ASSERT_TRUE(listing.objects.empty() || listing.state == State::Listed);
    } catch (const RuntimeError& error) {
        ASSERT_EQ(error.code(), ErrorNumber::SubscriptOutOfRange);
    }
}

std::string small_library() {
    return test::library_file({.header = {.FL_world_set = 1, .FL_magic = 1},
                               .library_start = 168,
                               .objects = {{.name = "One"}, {.name = "Two"}, {.name = "Three"}}});
}

TEST(DamagedLibrary, EveryTruncationIsListedWithinBounds) {
    const std::string bytes = small_library();
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        list_damaged(bytes.substr(0, length));
    }
}

TEST(DamagedLibrary, EveryChangeOfOneByteIsListedWithinBounds) {
    const std::string bytes = small_library();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        for (int value = 0; value < 256; ++value) {
            std::string damaged = bytes;
            damaged[i] = static_cast<char>(value);
            list_damaged(damaged);
        }
    }
}

TEST(DamagedLibrary, RandomDamageOfOneInAHundredBytes) {
    std::mt19937 random(4);
    const std::string bytes = test::library_file({.objects = test::random_objects(random, 100)});
    for (int round = 0; round < 1000; ++round) {
        std::string damaged = bytes;
        for (std::size_t i = 0; i < bytes.size() / 100; ++i) {
            damaged[random() % damaged.size()] = static_cast<char>(random());
        }
        list_damaged(damaged);
    }
}

TEST(DamagedLibrary, RecordsOfOlderSimulatorsAreListedWithinBounds) {
    std::mt19937 random(5);
    for (int round = 0; round < 200; ++round) {
        const std::string bytes =
            test::old_library_file({.objects = test::random_objects(random, random() % 200)});
        list_damaged(bytes);
        list_damaged(bytes.substr(0, random() % bytes.size()));
    }
}

} // namespace
} // namespace morvane
