// SPDX-License-Identifier: GPL-3.0-or-later
#include "large_set.h"

#include <fstream>

namespace morvane::bench {

namespace {

void write_materials(std::ostream& out) {
    out << "    MATERIAL_LIST_BEGIN\r\n";
    for (int n = 0; n < marked_materials; ++n) {
        out << "    MATERIAL_DEF 0.588235,0.588235,0.588235,1.000000,  0.588235,0.588235,0.588235,"
               "  1.000000,0.000000,0.000000,  0.000000,0.000000,0.000000,  0.000000 ; "
            << n << "\r\n";
    }
    out << "    MATERIAL_LIST_END\r\n";
}

void write_vertices(std::ostream& out, int count) {
    out << "    VERTEX_LIST_BEGIN\r\n";
    for (int n = 0; n < count; ++n) {
        out << "    VERTEX_DEF " << n % 977 << ".250000," << (n % 3 == 1 ? 6 : 0) << ".500000,"
            << n % 1013 << ".125000, 0.000000,1.000000,0.000000, 0.000000,1.000000 ; " << n
            << "\r\n";
    }
    out << "    VERTEX_LIST_END\r\n";
}

void write_block(std::ostream& out, int material) {
    out << "    MATERIAL " << material << ",0\r\n    DRAW_TRI_BEGIN " << 3 * triangles * material
        << ", " << 3 * triangles << "\r\n";
    for (int n = 0; n < triangles; ++n) {
        out << "    DRAW_TRI    " << 3 * n << ",   " << 3 * n + 1 << ",   " << 3 * n + 2
            << " ; poly=" << n << " part=0\r\n";
    }
    out << "    DRAW_TRI_END\r\n";
}

} // namespace

void write_large_set(const std::string& base, int lines) {
    std::ofstream model(base + "_0.asm", std::ios::binary);
    write_materials(model);
    write_vertices(model, lines - marked_materials * (triangles + 4));
    for (int n = 0; n < marked_materials; ++n) {
        write_block(model, n);
    }
    model << "BGL_END\r\n";
    std::ofstream frame(base + ".asm", std::ios::binary);
    frame << "    SCALE_AGL a,0,0A0h,65536,051EDB8h,0CAAAh,0FCD9FF8Bh,07DD6h,0,0\r\n"
             "    INSTANCE_CALL b,0,0,02000h\r\n";
}

} // namespace morvane::bench
