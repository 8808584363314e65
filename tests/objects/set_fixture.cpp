// SPDX-License-Identifier: GPL-3.0-or-later
#include "set_fixture.h"

namespace morvane::test {

std::vector<std::string> make_model(const std::vector<MadeMaterial>& materials,
                                    const std::vector<std::string>& vertices) {
    std::vector<std::string> lines{"BGL_BEGIN 0800h ; version = 8.00", "MATERIAL_LIST_BEGIN"};
    for (std::size_t i = 0; i < materials.size(); ++i) {
        lines.push_back("    MATERIAL_DEF " + materials[i].color +
                        ",1.000000,  0.500000,0.500000,0.500000,  " + materials[i].highlight +
                        ",  0.000000,0.000000,0.000000,  0.000000 ; " + std::to_string(i));
    }
    lines.insert(lines.end(), {"MATERIAL_LIST_END", "VERTEX_LIST_BEGIN"});
    for (const std::string& vertex : vertices) {
        lines.push_back("    VERTEX_DEF " + vertex + ", 0.000000,0.000000 ; v");
    }
    lines.emplace_back("VERTEX_LIST_END");
    for (std::size_t i = 0; i < materials.size(); ++i) {
        lines.push_back("    MATERIAL " + std::to_string(i) + ",0 ; <255,255,255,255> ;;");
        lines.push_back("    DRAW_TRI_BEGIN " + materials[i].block_vertex + ", 3");
        for (const std::string& triangle : materials[i].triangles) {
            lines.push_back("    DRAW_TRI " + triangle + " ; poly=0 part=0");
        }
        lines.emplace_back("    DRAW_TRI_END");
    }
    lines.insert(lines.end(), {"    BGL_RETURN", "BGL_END"});
    return lines;
}

std::vector<std::string> make_model(const std::vector<MadeMaterial>& materials) {
    return make_model(materials, {"0.000000,0.000000,0.000000, 0.000000,1.000000,0.000000",
                                  "1.000000,10.000000,0.000000, 0.000000,1.000000,0.000000",
                                  "4.000000,0.000000,0.000000, 0.000000,1.000000,0.000000"});
}

std::vector<std::string> SetTest::default_frame() {
    return {"header label word", "    SCALE_AGL OBJ_END, 5, 40, 65536, 0100h, 0, 0200h, 0, 0, 0",
            "    BGL_CALL_32 model", "OBJ_END label BGLCODE"};
}

void SetTest::open(const std::vector<std::string>& model, const std::vector<std::string>& frame) {
    folder.write("set_0.asm", crlf(model));
    folder.write("set.asm", crlf(frame));
    ASSERT_TRUE(open_source_set(services, set, base));
}

std::vector<std::string> SetTest::new_code() const {
    std::vector<std::string> code;
    for (const Replacement& replacement : set.replacements) {
        code.insert(code.end(), replacement.code.begin(), replacement.code.end());
    }
    return code;
}

std::vector<std::string> SetTest::lines(const LineStore& store) {
    std::vector<std::string> result;
    for (std::size_t i = 1; i <= store.upper(); ++i) {
        result.emplace_back(store.line(i));
    }
    return result;
}

} // namespace morvane::test
