// SPDX-License-Identifier: GPL-3.0-or-later
#include "bgl/bgl_files.h"
#include "drawing_code.h"
#include "scene/draw_shape.h"
#include "scene/object_files.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane::scene {
namespace {

using test::DrawingCode;
using test::LibrarySpec;
using test::ObjectSpec;
using test::TempFolder;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

std::string library_of(const Guid128& guid, float height) {
    ObjectSpec object;
    object.guid = guid;
    object.name = "Box";
    object.code = DrawingCode().box(2, height, 2).end().bytes();
    LibrarySpec library;
    library.objects = {object};
    return library_file(library);
}

constexpr Guid128 one{1, 1, 1, 1};
constexpr Guid128 two{2, 2, 2, 2};

struct Libraries {
    TempFolder folder;
    std::unique_ptr<Disk> disk = make_system_disk();
    ObjectFiles files{*disk};
    std::string first = folder.write("first.bgl", library_of(one, 3));
    std::string second = folder.write("second.bgl", library_of(two, 5));

    std::vector<Mark> calls(std::initializer_list<Guid128> guids) {
        std::vector<Mark> marks;
        for (const Guid128& guid : guids) {
            Mark mark;
            mark.kind = MarkKind::LibraryCall;
            mark.guid = guid;
            marks.push_back(mark);
        }
        return marks;
    }
};

TEST(ObjectFiles, AnObjectIsRead) {
    Libraries libraries;
    const Shape shape = libraries.files.read(libraries.first, one);
    EXPECT_THAT(shape.trouble, IsEmpty());
    EXPECT_EQ(shape.name, "Box");
    EXPECT_THAT(shape.faces, SizeIs(12));
    EXPECT_EQ(shape.box.high.y, 3);
}

TEST(ObjectFiles, WhatCannotBeReadSaysWhy) {
    Libraries libraries;
    EXPECT_THAT(libraries.files.read(libraries.first, two).trouble,
                HasSubstr("not found in first.bgl"));
    EXPECT_THAT(libraries.files.read(libraries.folder.file("gone.bgl"), two).trouble,
                HasSubstr("gone.bgl: "));
}

std::string compressed_library() {
    LibrarySpec library;
    library.header.FL_spare2 = 1;
    return library_file(library);
}

TEST(ObjectFiles, ACompressedFileSaysThatItIs) {
    Libraries libraries;
    const std::string packed = libraries.folder.write("packed.bgl", compressed_library());
    EXPECT_THAT(libraries.files.read(packed, one).trouble, HasSubstr("packed.bgl is compressed"));
}

TEST(ObjectFiles, WhatACompressedFileHoldsIsRead) {
    Libraries libraries;
    const std::string packed = libraries.folder.write("packed.bgl", compressed_library());
    EXPECT_THAT(libraries.files.read(packed, one).faces, IsEmpty());
    libraries.files.keep_unpacked(packed, std::make_shared<const std::string>(library_of(one, 7)));
    EXPECT_EQ(libraries.files.read(packed, one).box.high.y, 7);
    libraries.files.forget();
    Catalogue catalogue;
    libraries.files.add_called(catalogue, libraries.calls({one}), {packed});
    ASSERT_THAT(catalogue, SizeIs(1));
    EXPECT_EQ(catalogue.at(one).box.high.y, 7);
}

TEST(ObjectFiles, AFileThatIsNoLongerCompressedIsReadItself) {
    Libraries libraries;
    const std::string packed = libraries.folder.write("packed.bgl", compressed_library());
    libraries.files.keep_unpacked(packed, std::make_shared<const std::string>(library_of(one, 7)));
    libraries.folder.write("packed.bgl", library_of(one, 4));
    EXPECT_EQ(libraries.files.read(packed, one).box.high.y, 4);
}

TEST(ObjectFiles, OnlyCalledObjectsAreAddedFromTheFirstFileThatHasThem) {
    Libraries libraries;
    const std::string other = libraries.folder.write("other.bgl", library_of(one, 9));
    const std::string gone = libraries.folder.file("gone.bgl");
    Catalogue catalogue;
    libraries.files.add_called(catalogue, libraries.calls({one, {9, 9, 9, 9}}),
                               {gone, libraries.second, libraries.first, other});
    ASSERT_THAT(catalogue, SizeIs(1));
    EXPECT_EQ(catalogue.at(one).box.high.y, 3);
    libraries.files.add_called(catalogue, libraries.calls({one, two}), {libraries.second, other});
    ASSERT_THAT(catalogue, SizeIs(2)); // what is there stays
    EXPECT_EQ(catalogue.at(one).box.high.y, 3);
    EXPECT_EQ(catalogue.at(two).box.high.y, 5);
}

TEST(ObjectFiles, OtherMarksCallNothing) {
    Libraries libraries;
    std::vector<Mark> marks = libraries.calls({one});
    marks[0].kind = MarkKind::Effect;
    Catalogue catalogue;
    libraries.files.add_called(catalogue, marks, {libraries.first});
    EXPECT_THAT(catalogue, IsEmpty());
}

TEST(ObjectFiles, AChangedFileIsReadAnewAfterForget) {
    Libraries libraries;
    EXPECT_THAT(libraries.files.read(libraries.first, one).trouble, IsEmpty());
    libraries.folder.write("first.bgl", library_of(two, 4));
    libraries.files.forget();
    EXPECT_THAT(libraries.files.read(libraries.first, one).trouble, HasSubstr("not found"));
    EXPECT_EQ(libraries.files.read(libraries.first, two).box.high.y, 4);
}

TEST(DrawShape, AnObjectThatIsTurnedStaysInThePicture) {
    Shape shape;
    shape.points = {{0, 0, 0}, {40, 0, 0}, {40, 3, 1}};
    shape.faces = {{{0, 1, 2}}};
    for (const raster::Vec3& point : shape.points) {
        shape.box.add(point);
    }
    raster::Camera camera;
    const raster::PictureSize size{120, 90};
    fit_all_round(camera, size, shape);
    for (int heading = 0; heading < 360; heading += 7) {
        camera.heading = heading;
        const raster::Projection projection = projection_of(camera, size);
        for (const raster::Vec3& point : shape.points) {
            const auto seen = project(projection, point);
            ASSERT_TRUE(seen);
            EXPECT_TRUE(seen->x > 0 && seen->x < size.width && seen->y > 0 && seen->y < size.height)
                << heading;
        }
    }
}

} // namespace
} // namespace morvane::scene
