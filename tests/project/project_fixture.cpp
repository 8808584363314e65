// SPDX-License-Identifier: GPL-3.0-or-later
#include "project_fixture.h"

#include <filesystem>

namespace morvane::test {

std::string model_text(std::size_t triangles) {
    std::vector<std::string> lines{
        "BGL_BEGIN 0800h", "MATERIAL_LIST_BEGIN",
        "    MATERIAL_DEF 0.5,0.5,0.5,1.0,  0.5,0.5,0.5,  1.0,0.0,0.0,  0.0,0.0,0.0,  0.0 ; m",
        "MATERIAL_LIST_END", "VERTEX_LIST_BEGIN"};
    for (const std::string x : {"0.0", "1.0", "4.0"}) {
        lines.push_back("    VERTEX_DEF " + x + ",0.0,0.0, 0.0,1.0,0.0, 0.0,0.0 ; v");
    }
    lines.insert(lines.end(), {"VERTEX_LIST_END", "master label BGLCODE", "    MATERIAL 0,0 ; x",
                               "    DRAW_TRI_BEGIN 0, 3"});
    lines.insert(lines.end(), triangles, "    DRAW_TRI    0,   1,   2 ; poly=0 part=0");
    lines.insert(lines.end(), {"    DRAW_TRI_END", "    BGL_RETURN", "BGL_END", "BGL_RETURN"});
    return crlf(lines);
}

std::string frame_text(const std::string& name) {
    return crlf({"object label BGLCODE",
                 "    SCALE_AGL skip, 5, 40, 65536, 0100h, 0, 0200h, 0, 0, 0",
                 "    INSTANCE_CALL master, 0, 0, 0 ; turn", "skip label BGLCODE",
                 "    include C:\\EXPORT\\" + name + "_0.asm", "    END"});
}

void ProjectTest::write_export(const std::string& name, std::size_t triangles) const {
    folder.write("exports/" + name + "_0.asm", model_text(triangles));
    folder.write("exports/" + name + ".asm", frame_text(name));
}

void ProjectTest::write_project(const std::string& text) const {
    folder.write("recipes/red.toml", "[[assign]]\nhighlight = \"Red\"\nkind = \"Lights\"\n"
                                     "LightVariable = \"beacnt\"\n");
    folder.write("morvane.toml", text);
}

void ProjectTest::write_sets(const std::vector<std::string>& names, const std::string& head) const {
    std::string text = head;
    for (const std::string& name : names) {
        text += "[[set]]\nbase = \"exports/" + name + "\"\nrecipe = \"recipes/red.toml\"\n";
        write_export(name);
    }
    write_project(text);
}

Project ProjectTest::project() const {
    const ProjectReading reading = read_project(*disk, project_file);
    EXPECT_THAT(reading.errors, ::testing::IsEmpty());
    return reading.project.value_or(Project());
}

CompilerEnd ProjectTest::compile(const std::vector<std::string>& words, const std::string& where) {
    const std::lock_guard guard(mutex);
    std::string call;
    for (const std::string& word : words) {
        call += (call.empty() ? "" : " ") + word;
    }
    compiled.push_back(call);
    if (compiler_writes) {
        const std::string source = words.back();
        const std::string ending = words[words.size() - 2] == "/bgl" ? ".bgl" : ".mdl";
        write_file(where + "/" + source.substr(0, source.size() - 4) + ending,
                   "compiled " + std::to_string(compiled.size()));
    }
    return compiler_end;
}

BuildResult ProjectTest::build() {
    return build(options);
}

BuildResult ProjectTest::build(const BuildOptions& given) {
    BuildOptions used = given;
    used.compile = [this](const std::vector<std::string>& words, const std::string& where) {
        return compile(words, where);
    };
    const Project read = project();
    return build_project(services, read, surroundings, used);
}

std::vector<std::string> ProjectTest::outcomes(const BuildResult& result) const {
    std::vector<std::string> texts = result.errors;
    for (const StepResult& step : result.steps) {
        texts.push_back(step.name + ": " + std::string(step_state_text(step.state)) +
                        (step.reason.empty() ? "" : " (" + step.reason + ")"));
    }
    return texts;
}

} // namespace morvane::test
