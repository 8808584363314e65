// SPDX-License-Identifier: GPL-3.0-or-later

// The modifier's assembly. Sections: one byte of flags, then frame and model of the complete model,
// fuselage, wings high, wings low and shadow.

#include "aircraft/assemble_aircraft.h"
#include "base/errors.h"
#include "target.h"

namespace {

using namespace morvane;
using namespace morvane::fuzz;

constexpr std::array<const char*, 5> bases{"complete", "fuselage", "high", "low", "shadow"};

bool is_stray(const std::string& name) {
    return name.ends_with(".morvane-tmp") || name.ends_with(".morvane-old");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> input = sections(data, size, 11);
    const unsigned flags = input[0].empty() ? 3U : static_cast<unsigned char>(input[0][0]);
    const LinearTime linear(size);
    World world;
    AircraftJob job;
    job.flexing_wings = (flags & 1) != 0;
    job.shadow_optimization = (flags & 2) != 0;
    job.program_folder = "home";
    for (std::size_t i = 0; i < bases.size(); ++i) {
        job.bases[i] = bases[i];
        world.disk.files[job.bases[i] + ".asm"] = input[1 + 2 * i];
        world.disk.files[job.bases[i] + "_0.asm"] = input[2 + 2 * i];
    }
    const auto before = world.disk.files;
    const auto output = assemble_aircraft(world.services, job);
    require(!world.reporter.boxes.empty(), "the end is told");
    for (const auto& [name, bytes] : before) {
        require(world.disk.files.contains(name), "no file is lost");
    }
    require(world.disk.files.at("fuselage.asm") == before.at("fuselage.asm") &&
                world.disk.files.at("complete_0.asm") == before.at("complete_0.asm"),
            "sources that are only read stay as they are");
    for (const auto& [name, bytes] : world.disk.files) {
        require(!is_stray(name), "no temporary file is left");
        require(bytes.size() < 1000000 + 20 * size, "output is bounded by the input");
    }
    if (output) {
        require(world.disk.files.at(*output).starts_with(";morvane") ||
                    world.disk.files.at(*output).find("MakeBGL") != std::string::npos,
                "the output carries the marker");
        world.reporter.boxes.clear();
        require(!assemble_aircraft(world.services, job) ||
                    !world.disk.files.at(*output).starts_with(";morvane"),
                "a marked set is refused");
    }
    return 0;
}
