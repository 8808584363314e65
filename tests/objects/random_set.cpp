// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/random_set.h"

#include <algorithm>
#include <array>

namespace morvane::test {

namespace {

constexpr int vertex_count = 60;

std::string text_of(std::size_t number) {
    return std::to_string(number);
}

} // namespace

RandomSet::RandomSet(unsigned seed, Shape shape) : random_(seed) {
    add("BGL_BEGIN 0800h ; version = 8.00");
    add_materials();
    add_vertices();
    add_draw_code();
    if (shape != Shape::WithoutEnd) {
        add(chance(50) ? "BGL_END" : "BGL_END ; of it");
    }
    for (int i = pick(0, 3); i > 0; --i) {
        add("; behind the end");
    }
    add_frame(shape);
}

int RandomSet::pick(int low, int high) {
    return low + static_cast<int>(random_() % static_cast<unsigned>(high - low + 1));
}

bool RandomSet::in_block(std::size_t row, std::size_t index) const {
    const Block& block = blocks_.at(row - 1);
    return block.first <= index && index <= block.last;
}

void RandomSet::add(const std::string& text) {
    model_.push_back(std::string(chance(50) ? 4 : 0, ' ') + text);
}

std::string RandomSet::number() {
    return std::to_string(pick(-5000, 5000)) + "." + std::to_string(pick(100000, 999999));
}

void RandomSet::add_materials() {
    add("MATERIAL_LIST_BEGIN");
    const int count = pick(1, 12);
    for (int i = 0; i < count; ++i) {
        const bool marked = i == 0 || chance(70);
        row_of_material_.push_back(marked ? ++marked_ : 0);
        static constexpr std::array<const char*, 7> marks{"0,0,1", "0,1,0", "0,1,1", "1,0,0",
                                                          "1,0,1", "1,1,0", "1,1,1"};
        add("MATERIAL_DEF 0." + std::to_string(pick(0, 9)) + ",1.0,0.25,1.0, 0,0,0, " +
            (marked ? marks.at(static_cast<std::size_t>(pick(0, 6))) : "0.5,0,0") +
            ", 0,0,0, 0.0 ; " + std::to_string(i));
    }
    add("MATERIAL_LIST_END");
    blocks_.resize(marked_);
    triangles_.resize(marked_);
}

void RandomSet::add_vertices() {
    add("VERTEX_LIST_BEGIN");
    for (int i = 0; i < vertex_count; ++i) {
        // Every third lies at least 10 above its two forerunners, so that windsocks can stand.
        const std::string height = std::to_string(i % 3 == 2 ? pick(20, 40) : pick(0, 10)) + ".5";
        add("VERTEX_DEF " + number() + "," + height + "," + number() +
            ", 0.000000,1.000000,0.000000, 0.0,0.0 ; " + std::to_string(i));
    }
    add("VERTEX_LIST_END");
}

void RandomSet::add_draw_code() {
    std::vector<std::size_t> order;
    for (std::size_t material = 0; material < row_of_material_.size(); ++material) {
        order.insert(order.end(), chance(25) ? 2 : 1, material);
    }
    std::shuffle(order.begin(), order.end(), random_);
    for (const std::size_t material : order) {
        if (chance(50)) {
            static const std::array<const char*, 5> between{"LOD_100 label BGLCODE",
                                                            "; DRAW_TRI   1, 2, 3", "",
                                                            "\tcaf\xe9 \x80\xff", "MATERIALS 0,0"};
            add(between.at(static_cast<std::size_t>(pick(0, 4))));
        }
        add_block(material, row_of_material_[material]);
    }
}

void RandomSet::add_block(std::size_t material, std::size_t row) {
    add("MATERIAL " + text_of(material) + ",0" +
        (chance(50) ? " ; <255,255,255,255> A.BMP;;" : ""));
    const bool rewritten = row != 0 && blocks_[row - 1].first == 0;
    const std::size_t opening = model_.size() + 1;
    const int count = pick(rewritten && chance(20) ? 0 : 1, 6);
    add("DRAW_TRI_BEGIN " + std::to_string(pick(0, 9) * 3) + ", 30");
    const int odd_at = chance(15) ? pick(0, count) : -1; // behind so many triangles
    std::size_t last = 0;                                // the line that ends the rewrite
    for (int i = 0; i <= count; ++i) {
        if (i == odd_at) {
            add_odd_line();
            last = model_.size();
        }
        if (i < count) {
            add_triangle(i);
        }
    }
    add("DRAW_TRI_END");
    if (rewritten) {
        blocks_[row - 1] = {opening, odd_at < 0 ? model_.size() : last};
        triangles_[row - 1] = static_cast<std::size_t>(odd_at < 0 ? count : odd_at);
    }
    if (chance(10)) { // a second block under the same selection
        add("DRAW_TRI_BEGIN 0, 30");
        add_triangle(count);
        add("DRAW_TRI_END");
    }
}

void RandomSet::add_triangle(int number) {
    const int first = pick(0, 9) * 3;
    add("DRAW_TRI " + std::to_string(first) + ",   " + std::to_string(first + 2) + ", " +
        std::to_string(first + 1) + " ; poly=" + std::to_string(number));
}

// What no exporter writes inside a block, but authors do.
void RandomSet::add_odd_line() {
    static const std::array<const char*, 5> odd{"; a comment", "", "DRAW_TRI_BEGIN 0, 30",
                                                "BGL_END", "LOD_50 label BGLCODE"};
    add(odd.at(static_cast<std::size_t>(pick(0, 4))));
}

void RandomSet::add_frame(Shape shape) {
    if (shape != Shape::WithoutPlace) {
        frame_ = {"    SCALE_AGL a,0,100,65536,051EDB8h,0CAAAh,0FCD9FF8Bh,07DD6h,0,0",
                  chance(50) ? "    INSTANCE_CALL b,0,0,02000h" : "b label BGLCODE"};
    }
    frame_.insert(frame_.end(), {"visual_model_header label dword", "    dd  0", "    END"});
}

std::vector<std::string> all_lines(const LineStore& store) {
    std::vector<std::string> lines;
    for (std::size_t i = 1; i <= store.upper(); ++i) {
        lines.emplace_back(store.line(i));
    }
    return lines;
}

} // namespace morvane::test
