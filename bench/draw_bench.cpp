// SPDX-License-Identifier: GPL-3.0-or-later

// Frames of a scene, Open to the first picture, and the first page of a shelf; beside them what it
// costs to fill the picture's memory once, to compare machines by.

#include "base/reporter.h"
#include "large_set.h"
#include "scene/draw_scene.h"
#include "scene/draw_shape.h"
#include "scene/read_library.h"
#include "scene/read_object.h"
#include "scene/read_set.h"
#include "source/open_set.h"
#include "system/disk.h"

#include <benchmark/benchmark.h>

#ifdef MORVANE_BENCH_QT
#include <QImage>
#include <QPainter>
#endif

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace morvane::bench {
namespace {

constexpr raster::PictureSize size{800, 600};
namespace fs = std::filesystem;

void BM_FillThePicturesMemory(benchmark::State& state) {
    raster::Picture picture;
    clear(picture, size, 0);
    unsigned char value = 0;
    for (auto _ : state) {
        ++value;
        std::memset(picture.pixels.data(), value, picture.pixels.size() * 4);
        std::memset(picture.depths.data(), value, picture.depths.size() * 4);
        std::memset(picture.ids.data(), value, picture.ids.size() * 4);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_FillThePicturesMemory)->Unit(benchmark::kMillisecond);

// Hills of two triangles a field, in blocks of a hundred.
scene::Scene hills(std::size_t triangles) {
    scene::Scene scene;
    scene.materials.push_back({0xFF88AA66, 0xFF88AA66});
    const auto side = static_cast<std::uint32_t>(std::sqrt(static_cast<double>(triangles) / 2)) + 1;
    for (std::uint32_t z = 0; z <= side; ++z) {
        for (std::uint32_t x = 0; x <= side; ++x) {
            scene.points.push_back({x * 2.0, 6 * std::sin(x * 0.3) * std::cos(z * 0.2), z * 2.0});
            scene.box.add(scene.points.back());
        }
    }
    scene.normals.resize(scene.points.size());
    for (std::uint32_t i = 0; scene.triangles.size() < triangles; ++i) {
        const std::uint32_t a = i / side * (side + 1) + i % side;
        if (i % 50 == 0) {
            scene.blocks.push_back({.material = static_cast<int>(i / 50), .look = 0});
        }
        for (const auto& corners :
             {std::array{a, a + 1, a + side + 2}, std::array{a, a + side + 2, a + side + 1}}) {
            scene::SceneTriangle triangle;
            triangle.corners = corners;
            triangle.block = static_cast<std::uint32_t>(scene.blocks.size() - 1);
            triangle.light = raster::light_on(scene.points[corners[0]], scene.points[corners[1]],
                                              scene.points[corners[2]]);
            scene.triangles.push_back(triangle);
        }
    }
    return scene;
}

void BM_Frame(benchmark::State& state) {
    const scene::Scene scene = hills(static_cast<std::size_t>(state.range(0)));
    raster::Camera camera;
    fit(camera, size, scene);
    camera.height *= 0.6; // more of it outside of the picture, less background
    raster::Picture picture;
    scene::Painter painter;
    for (auto _ : state) {
        orbit(camera, 1, 0);
        benchmark::DoNotOptimize(painter.draw(picture, scene, camera, size, {}));
    }
    state.counters["triangles"] = static_cast<double>(scene.triangles.size());
}
BENCHMARK(BM_Frame)->Arg(480)->Arg(5000)->Arg(20000)->Arg(100000)->Unit(benchmark::kMillisecond);

#ifdef MORVANE_BENCH_QT
// The same hills as a painter's polygons, the farthest first, in the colours they have.
void BM_PainterPolygons(benchmark::State& state) {
    const scene::Scene scene = hills(static_cast<std::size_t>(state.range(0)));
    raster::Camera camera;
    fit(camera, size, scene);
    camera.height *= 0.6;
    QImage image(size.width, size.height, QImage::Format_RGB32);
    raster::ViewedPoints points;
    std::vector<std::pair<double, const scene::SceneTriangle*>> order;
    for (auto _ : state) {
        orbit(camera, 1, 0);
        view_points(points, projection_of(camera, size), scene.points);
        order.clear();
        for (const scene::SceneTriangle& triangle : scene.triangles) {
            double depth = 0;
            for (const std::uint32_t corner : triangle.corners) {
                depth += points.viewed[corner].z;
            }
            order.emplace_back(-depth, &triangle);
        }
        std::sort(order.begin(), order.end());
        image.fill(0xFFEEF1F4);
        QPainter painter(&image);
        painter.setPen(Qt::NoPen);
        for (const auto& [depth, triangle] : order) {
            std::array<QPointF, 3> corners;
            for (std::size_t i = 0; i < 3; ++i) {
                const raster::Seen& seen = points.seen[triangle->corners[i]];
                corners[i] = {seen.x, seen.y};
            }
            painter.setBrush(QColor(QRgb(raster::darkened(0xFF88AA66, triangle->light))));
            painter.drawConvexPolygon(corners.data(), 3);
        }
    }
    state.counters["triangles"] = static_cast<double>(scene.triangles.size());
}
BENCHMARK(BM_PainterPolygons)->Arg(5000)->Arg(20000)->Arg(100000)->Unit(benchmark::kMillisecond);
#endif

class SilentReporter final : public Reporter {
  public:
    void add_message(std::string_view) override {}
    void clear_messages() override {}
    void message_box(std::string_view, Icon) override {}
    bool ask(std::string_view, Icon, std::string_view) override { return true; }
};

// A set of 20,000 triangles and 7 MB, or what is the nearest that the generator makes.
void BM_OpenToFirstPicture(benchmark::State& state) {
    std::string pattern = (fs::temp_directory_path() / "bench-XXXXXX").string();
    const std::string folder = mkdtemp(pattern.data());
    const std::string base = folder + "/large";
    write_large_set(base, static_cast<int>(state.range(0)));
    const auto disk = make_system_disk();
    SilentReporter reporter;
    std::size_t triangles = 0;
    for (auto _ : state) {
        OpenSet set;
        open_source_set({*disk, reporter}, set, base);
        const scene::Scene scene = scene::read_set(set);
        raster::Camera camera;
        fit(camera, size, scene);
        raster::Picture picture;
        scene::Painter painter;
        benchmark::DoNotOptimize(painter.draw(picture, scene, camera, size, {}));
        triangles = scene.triangles.size();
    }
    state.counters["triangles"] = static_cast<double>(triangles);
    state.counters["MB"] = static_cast<double>(fs::file_size(base + "_0.asm")) / 1e6;
    fs::remove_all(folder);
}
BENCHMARK(BM_OpenToFirstPicture)->Arg(80000)->Unit(benchmark::kMillisecond);

template <typename Number>
void put(std::string& bytes, Number number) {
    bytes.append(reinterpret_cast<const char*>(&number), sizeof(number));
}

// A tree: two squares across each other, as the objects of real libraries are made.
std::string tree_code() {
    std::string code;
    put<std::uint16_t>(code, 0xB5);
    put<std::uint16_t>(code, 8);
    put<std::uint32_t>(code, 0);
    for (int i = 0; i < 8; ++i) {
        const float across = i % 2 == 0 ? -3.0F : 3.0F;
        for (const float n : {i < 4 ? across : 0.0F, i % 4 < 2 ? 0.0F : 10.0F,
                              i < 4 ? 0.0F : across, 0.0F, 1.0F, 0.0F, 0.0F, 0.0F}) {
            put(code, n);
        }
    }
    for (const std::uint16_t n : std::initializer_list<std::uint16_t>{0xB9, 0, 8, 12, 0, 1, 2, 1, 3,
                                                                      2, 4, 5, 6, 5, 7, 6, 0x22}) {
        put(code, n);
    }
    return code;
}

// A library file of so many trees.
void write_library(const std::string& path, std::uint32_t count) {
    std::string file(128, '\0');
    file[0] = 1;
    file[62] = static_cast<char>(128);
    const std::string code = tree_code();
    std::string records;
    for (std::uint32_t i = 0; i < count; ++i) {
        put<std::uint32_t>(file, (count + 1) * 20 + static_cast<std::uint32_t>(records.size()));
        file.append(16, '\x01');
        for (const std::uint32_t word : {i + 9, 2U, 3U, 4U}) {
            put(records, word);
        }
        records += 'd';
        put<std::uint32_t>(records, 45);
        put<std::uint32_t>(records, static_cast<std::uint32_t>(code.size()));
        for (const std::uint32_t word : {20U, 65536U, 0U, 0U}) {
            put(records, word);
        }
        records += "Tree" + code;
    }
    std::ofstream(path, std::ios::binary) << file << std::string(20, '\0') << records;
}

// Listing a library and drawing the first page of its shelf.
void BM_FirstPageOfAShelf(benchmark::State& state) {
    std::string pattern = (fs::temp_directory_path() / "bench-XXXXXX").string();
    const std::string folder = mkdtemp(pattern.data());
    write_library(folder + "/trees.bgl", 1300);
    const auto disk = make_system_disk();
    std::size_t objects = 0;
    for (auto _ : state) {
        const auto file = disk->open_for_reading(folder + "/trees.bgl");
        const auto places = scene::list_object_places(*file);
        objects = places.size();
        for (std::size_t i = 0; i < 24 && i < places.size(); ++i) {
            benchmark::DoNotOptimize(thumbnail(read_shape(*file, places[i]), {160, 120}, {}));
        }
    }
    state.counters["objects"] = static_cast<double>(objects);
    fs::remove_all(folder);
}
BENCHMARK(BM_FirstPageOfAShelf)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace morvane::bench
