// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/problem_fixture.h"

#include "base/paths.h"
#include "base/text.h"
#include "problems/assembly_checks.h"

#include <algorithm>

namespace morvane::test {

namespace {

auto find_start(Lines& lines, std::string_view start) {
    return std::find_if(lines.begin(), lines.end(),
                        [&](const std::string& line) { return trim(line).starts_with(start); });
}

// True of any set whose materials still wait for their recipe.
bool is_about_work_left(const Problem& problem) {
    return problem.code == "unprocessed-material" || problem.code == "backup-missing";
}

} // namespace

Lines clean_model() {
    return {"BGL_BEGIN 0800h",
            "MASTER label BGLCODE",
            "    MATERIAL_LIST_BEGIN",
            "    MATERIAL_DEF 1.0,0.5,0.0,1.0, 0.0,0.0,0.0, 1.0,0.0,0.0, 0.0,0.0,0.0, 0.0 ; 0",
            "    MATERIAL_LIST_END",
            "    VERTEX_LIST_BEGIN",
            "    VERTEX_DEF 0.0,0.0,0.0, 0.0,1.0,0.0, 0.0,0.0 ; 0",
            "    VERTEX_DEF 0.0,5.0,0.0, 0.0,1.0,0.0, 0.0,0.0 ; 1",
            "    VERTEX_DEF 0.0,5.0,2.0, 0.0,1.0,0.0, 0.0,0.0 ; 2",
            "    VERTEX_LIST_END",
            "    MATERIAL 0,0",
            "    DRAW_TRI_BEGIN 0, 3",
            "    DRAW_TRI    0,   1,   2 ; poly=0 part=0",
            "    DRAW_TRI_END",
            "BGL_END",
            "BGL_RETURN"};
}

Lines clean_frame() {
    return {"    include C:\\GMAX\\INCLUDE\\BGL.INC",
            "    include C:\\GMAX\\INCLUDE\\MORVANE.INC",
            "object_0 label BGLCODE",
            "    SCALE_AGL object_skip,0,0A0h,65536,051EDB8h,07DD6h,0FCD9FF8Bh,07DD6h,0,0",
            "    INSTANCE_CALL MASTER,0,0,0",
            "object_skip label BGLCODE",
            "    BGL_RETURN",
            "    include C:\\GMAX\\EXPORT\\set_0.asm",
            "    END"};
}

Lines aircraft_frame() {
    return {"    include C:\\GMAX\\INCLUDE\\MDL.INC",
            "visual_model_header label dword",
            "    dd  param_extension_dictionary - visual_model_header",
            "    dd   156",
            "    db  'F','S','8','0'",
            "    dd  2048",
            "visual_model_header_end  label dword",
            "    db  'D','I','C','T'",
            "param_extension_dictionary     label dword",
            "    dd (param_extension_dictionary_end) - (param_extension_dictionary) - 4",
            "    dict_0_gear equ 136",
            "    dd 2,136,16, 01h, 02h, 03h, 04h",
            "    dict_g_lightStates equ 152",
            "    dd 2,152,4, 057F0E99Dh, 04E9C0523h, 0BB12B6BCh, 0063FE72Fh",
            "param_extension_dictionary_end     label dword",
            "    include C:\\GMAX\\EXPORT\\set_0.asm",
            "    END"};
}

void ProblemTest::replace(Lines& lines, std::string_view start, const std::string& text) {
    const auto line = find_start(lines, start);
    ASSERT_NE(line, lines.end()) << start;
    if (text.empty()) {
        lines.erase(line);
    } else {
        *line = text;
    }
}

void ProblemTest::insert_after(Lines& lines, std::string_view start, const Lines& texts) {
    const auto line = find_start(lines, start);
    ASSERT_NE(line, lines.end()) << start;
    lines.insert(line + 1, texts.begin(), texts.end());
}

void ProblemTest::write(const std::string& name, const Lines& lines) {
    std::string bytes;
    for (const std::string& line : lines) {
        bytes.append(line).append("\r\n");
    }
    folder.write(name, bytes);
}

void ProblemTest::open() {
    write("set_0.asm", model);
    write("set.asm", frame);
    open_source_set(services, set, folder.file("set"));
}

std::vector<std::string> ProblemTest::found() {
    ProblemRequest request{set};
    request.allowed = allowed;
    request.planned = planned;
    request.effects = effects;
    request.objects = objects;
    request.saved_lines = saved_lines;
    problems = find_problems(*disk, request);
    return described();
}

std::vector<std::string> ProblemTest::found_in(const std::string& name) {
    problems = find_file_assembly_problems(*disk, folder.file(name));
    return described();
}

std::vector<std::string> ProblemTest::described() const {
    std::vector<std::string> result;
    for (const Problem& found : problems) {
        if (!is_about_work_left(found)) {
            result.push_back(file_name_part(found.path) + ":" + to_text(found.line) + " " +
                             found.code);
        }
    }
    return result;
}

const Problem& ProblemTest::problem(std::string_view code) const {
    static const Problem none;
    const auto found = std::find_if(problems.begin(), problems.end(),
                                    [&](const Problem& p) { return p.code == code; });
    return found == problems.end() ? none : *found;
}

std::string ProblemTest::text_of(std::string_view code) const {
    return problem(code).text;
}

} // namespace morvane::test
