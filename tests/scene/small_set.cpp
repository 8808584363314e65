// SPDX-License-Identifier: GPL-3.0-or-later
#include "small_set.h"

#include "objects/process.h"
#include "scene/read_set.h"
#include "source/open_set.h"

#include <stdexcept>

namespace morvane::test {

namespace {

std::string number(double value) {
    return std::to_string(value); // six places; the tests run in the C locale
}

std::string vertex(const std::array<double, 3>& p) {
    return "    VERTEX_DEF " + number(p[0]) + "," + number(p[1]) + "," + number(p[2]) +
           ", 0.000000,1.000000,0.000000, 0.000000,0.000000\r\n";
}

} // namespace

std::string SmallSet::model() const {
    std::string text = "BGL_BEGIN 0800h\r\n"
                       "set_MASTER label BGLCODE\r\n"
                       "    MATERIAL_LIST_BEGIN\r\n"
                       "    MATERIAL_DEF 0.5,0.5,0.5,1.0, 0.5,0.5,0.5, 0.0,0.0,0.0, 0.0,0.0,0.0, "
                       "0.0 ; 0\r\n"
                       "    MATERIAL_DEF 1.0,0.5,0.0,1.0, 1.0,0.5,0.0, 1.0,0.0,0.0, 0.0,0.0,0.0, "
                       "0.0 ; 1\r\n"
                       "    MATERIAL_LIST_END\r\n"
                       "    VERTEX_LIST_BEGIN\r\n";
    for (const auto& p : {std::array{-30.0, 0.0, -30.0},
                          {30.0, 0.0, -30.0},
                          {30.0, 0.0, 30.0},
                          {-30.0, 0.0, 30.0}}) {
        text += vertex(p);
    }
    for (const auto& p : corners) {
        text += vertex(p);
    }
    text += "    VERTEX_LIST_END\r\n"
            "    MATERIAL 0,-1 ; grey\r\n"
            "    DRAW_TRI_BEGIN 0, 4\r\n"
            "    DRAW_TRI 0, 1, 2 ; 0\r\n"
            "    DRAW_TRI 0, 2, 3 ; 1\r\n"
            "    DRAW_TRI_END\r\n";
    text += before_triangles + "    MATERIAL 1,-1 ; marked\r\n    DRAW_TRI_BEGIN 4, " +
            std::to_string(corners.size()) + "\r\n";
    for (std::size_t i = 0; i + 2 < corners.size(); i += 3) {
        text += "    DRAW_TRI " + std::to_string(i) + ", " + std::to_string(i + 1) + ", " +
                std::to_string(i + 2) + " ; poly\r\n";
    }
    return text + "    DRAW_TRI_END\r\n" + after_triangles + "BGL_END\r\n" + end;
}

std::string SmallSet::frame() const {
    return "object label BGLCODE\r\n"
           "    SCALE_AGL set_skip,0,0A0h," +
           scale +
           ",051EDB8h,0000h,0FCD9FF8Bh,0000h,0,0\r\n"
           "    INSTANCE_CALL set_MASTER,0,0," +
           rotation +
           "\r\n"
           "set_skip label BGLCODE\r\n"
           "    BGL_RETURN\r\n"
           "    include set_0.asm\r\n"
           "    END\r\n";
}

SetOnDisk::SetOnDisk(const SmallSet& set) {
    folder_.write("set_0.asm", set.model());
    folder_.write("set.asm", set.frame());
}

OpenSet SetOnDisk::processed(Kind kind, const Parameters& parameters) {
    OpenSet set;
    if (!open_source_set(services(), set, base()) ||
        !process_material(services(), set, 1, kind, parameters).processed) {
        throw std::runtime_error(reporter_.boxes.empty() ? "not processed"
                                                         : reporter_.boxes.back().text);
    }
    return set;
}

scene::Scene SetOnDisk::scene() {
    return scene::read_set_files(*disk_, base());
}

} // namespace morvane::test
