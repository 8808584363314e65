// SPDX-License-Identifier: GPL-3.0-or-later

// A library that is written, assembled and read again holds exactly the objects that went in.

#include "base/text.h"
#include "bgl/inspector.h"
#include "bgl/report.h"
#include "library/libcomp_fixture.h"
#include "library/mini_assembler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <set>

namespace morvane {
namespace {

class RoundTrip : public test::LibraryTest {
  protected:
    void assemble_library() {
        ASSERT_TRUE(create_library(services, list, folder.file("lib.asm")));
        folder.write("lib.bgl", test::assemble(folder.read("lib.asm"), [](const std::string& path) {
                         return test::read_file(path);
                     }));
    }

    std::vector<LibraryObject> read_library() {
        InvalidFileList invalid(*disk, folder.path());
        Listing listing = list_library(*disk, folder.file("lib.bgl"), invalid);
        EXPECT_EQ(listing.state, Listing::State::Listed);
        return listing.objects;
    }

    void expect_same_objects() {
        const std::vector<LibraryObject> objects = read_library();
        ASSERT_EQ(objects.size(), list.lines.size());
        for (std::size_t i = 0; i < objects.size(); ++i) {
            const LibraryEntry& entry = list.entry_of(list.lines[i]);
            EXPECT_EQ(objects[i].guid, entry.guid);
            EXPECT_EQ(objects[i].image_power, entry.image_power);
            EXPECT_EQ(objects[i].stored_scale, entry.stored_scale);
            EXPECT_EQ(objects[i].type, entry.object_type);
            EXPECT_EQ(objects[i].unused_25, entry.object_size);
            EXPECT_EQ(object_name(objects[i]), trim(entry.name));
        }
    }

    std::int32_t any_number() { return static_cast<std::int32_t>(random_() >> (random_() % 33)); }

    std::string any_name() {
        std::string name;
        const std::size_t length = random_() % 60;
        while (name.size() < length) {
            const auto byte = static_cast<char>(random_() % 256);
            if (byte != '\0' && byte != '\r' && byte != '\n' && byte != '"') {
                name += byte;
            }
        }
        return name;
    }

    // A design whose drawing code takes any number of bytes.
    std::string any_design(std::size_t number) {
        const std::string name = "d" + to_text(number);
        folder.write(name + ".asm", "");
        folder.write(name + "_0.asm", "; code\r\ncode_" + name + " label word\r\n    db " +
                                          to_text(random_() % 300) + " dup(0FFh)\r\n" +
                                          "    dd (offset code_" + name + ")\r\n");
        return folder.file(name);
    }

    void add_any_object(std::size_t number) {
        LibraryFields chosen;
        chosen.libFileAdd = any_design(number);
        chosen.libGUID =
            identifier_text({any_number(), any_number(), any_number(), any_number()}, true);
        chosen.libScale = std::to_string(static_cast<double>(1 + random_() % 100000) / 1000);
        chosen.libObjSize = std::to_string(any_number());
        chosen.libObjName = any_name();
        chosen.libImgPwr = to_text(random_() % 101);
        chosen.libObjType = std::to_string(any_number());
        ASSERT_TRUE(add_library_object(services, list, chosen)) << reporter.boxes.back().text;
    }

    std::mt19937 random_{3};
};

TEST_F(RoundTrip, TheInspectorListsTheObjectsThatWentIn) {
    LibraryFields hangar = fields_with_guid(any_design(0), "0AAAAAAAA, 0AAAAAAAA, 0AAAAAAAA, 1");
    hangar.libObjName = "Hangar";
    hangar.libScale = "0.5";
    ASSERT_TRUE(add_library_object(services, list, hangar));
    ASSERT_TRUE(add_library_object(services, list, fields_with_guid(any_design(1), "1,2,3,4")));
    assemble_library();
    expect_same_objects();
    const auto programs = make_system_programs();
    Inspector inspector(services, folder.path(), *programs);
    const Analysis analysis = analyse_file(inspector, folder.file("lib.bgl"), false, true);
    EXPECT_EQ(analysis.header.FL_library_ptr, 130);
    EXPECT_THAT(inspector.box.text(),
                ::testing::HasSubstr(
                    "Library Objects : 2\r\n"
                    " 0AAAAAAAAh,0AAAAAAAAh,0AAAAAAAAh,000000001h, 0.5 0 100 Hangar\r\n"
                    " 000000001h,000000002h,000000003h,000000004h, 1.0 0 100 NewObject\r\n"));
}

TEST_F(RoundTrip, AnEmptyLibraryListsNothing) {
    assemble_library();
    EXPECT_TRUE(read_library().empty());
}

TEST_F(RoundTrip, RandomListsComeBack) {
    for (int round = 0; round < 40; ++round) {
        list = {};
        const std::size_t count = round == 0 ? 100 : random_() % 12;
        for (std::size_t i = 0; i < count; ++i) {
            add_any_object(i);
        }
        for (std::size_t removals = random_() % 3; removals > 0 && !list.lines.empty();
             --removals) {
            remove_library_object(list, random_() % list.lines.size());
        }
        if (duplicated_identifier(list)) {
            continue; // zeros are not that rare
        }
        assemble_library();
        expect_same_objects();
    }
}

} // namespace
} // namespace morvane
