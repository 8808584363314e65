// SPDX-License-Identifier: GPL-3.0-or-later

// From Open to Save. Sections: choices, frame file, model file. Each byte of the choices picks kind
// and flags for one marked material.

#include "base/errors.h"
#include "objects/process.h"
#include "objects/save.h"
#include "source/open_set.h"
#include "target.h"

namespace {

using namespace morvane;
using namespace morvane::fuzz;

Parameters parameters_of(unsigned choice) {
    Parameters parameters;
    parameters.lights.DayFlag = (choice & 8) != 0;
    parameters.lights.AircraftFlag = (choice & 16) != 0;
    parameters.lights.LightVariable = (choice & 32) != 0 ? "beacnt" : "";
    parameters.effects.lstEffectType = "fx_a";
    parameters.effects.fx_OTG = (choice & 8) != 0;
    parameters.windsock.ws_lit = (choice & 8) != 0;
    parameters.library.lib_OTG = (choice & 8) != 0;
    parameters.library.libScale = (choice & 16) != 0 ? "2.5" : "0.5";
    return parameters;
}

// A line of two blocks, which no exporter writes, is commented out for each.
bool is_commented_out(std::string_view now, std::string_view loaded) {
    while (now != loaded && now.starts_with("; ")) {
        now.remove_prefix(2);
    }
    return now == loaded;
}

// The loaded lines come back when generated lines are taken out and comment marks off. Which lines
// are generated is read from the replacements, as Save does.
void require_nothing_lost(const OpenSet& set, const std::vector<std::string>& loaded,
                          const std::vector<std::string>& saved) {
    std::size_t at = 0;
    const auto skip_generated = [&](std::size_t line) {
        for (const Replacement* replacement : ordered_replacements(set)) {
            if (replacement->before_line == line) {
                at += lines_of(text_of(replacement->code)).size();
            }
        }
    };
    for (std::size_t line = 1; line <= loaded.size(); ++line) {
        skip_generated(line);
        require(at < saved.size(), "no line is lost");
        const std::string& now = saved[at++];
        require(is_commented_out(now, loaded[line - 1]), "a line is as it was or commented out");
    }
    skip_generated(loaded.size() + 1);
    // A block that runs into the end of the file has this line commented out too.
    require(at + 1 == saved.size() && is_commented_out(saved[at], ""),
            "one empty line more than loaded");
}

// The generated text may hold line ends that came from the model file's fields: none can, since
// lines have none. So the saved file has exactly as many lines as were written.
void process_and_save(World& world, const std::string& choices,
                      const std::vector<std::string>& loaded) {
    OpenSet set;
    if (!open_source_set(world.services, set, "set")) {
        require(!world.reporter.boxes.empty(), "a refusal is told");
        return;
    }
    const std::size_t unprocessed = set.unprocessed();
    for (std::size_t row = 1; row <= set.translations.size() && row <= choices.size(); ++row) {
        const auto choice = static_cast<unsigned char>(choices[row - 1]);
        const std::size_t boxes = world.reporter.boxes.size();
        const bool done = process_material(world.services, set, row, all_kinds[choice % 5U],
                                           parameters_of(choice))
                              .processed;
        require(done == !set.translation(row).processed.empty(), "the mark says what was done");
        require(done || world.reporter.boxes.size() > boxes, "a failure is told");
    }
    require(set.unprocessed() <= unprocessed, "the counter only falls");
    const std::string before = world.disk.files.at("set_0.asm");
    if (save_set(world.services, set, "set").saved) {
        require_nothing_lost(set, loaded, lines_of(world.disk.files.at("set_0.asm")));
    } else {
        require(world.disk.files.at("set_0.asm") == before, "a refused save changes nothing");
    }
    require(world.disk.files.size() == 2, "no temporary file is left");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> input = sections(data, size, 3);
    const LinearTime linear(size);
    World world;
    world.disk.files = {{"set.asm", input[1]}, {"set_0.asm", input[2]}};
    process_and_save(world, input[0], lines_of(input[2]));
    return 0;
}
