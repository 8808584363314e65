// SPDX-License-Identifier: GPL-3.0-or-later

// Library lists of any bytes. What can be read gives a source that is the same every time.
// Identifiers can be filled in without changing anything else.

#include "base/errors.h"
#include "library/create_library.h"
#include "library/library_list_file.h"
#include "target.h"

namespace {

using namespace morvane;
using namespace morvane::fuzz;

constexpr const char* frame = "    LOD_0 label BGLCODE\r\n    include \"hangar_0.asm\"\r\n";

// Every byte that was there is still there, in its order.
bool keeps(const std::string& now, const std::string& before) {
    std::size_t at = 0;
    for (const char byte : now) {
        at += at < before.size() && byte == before[at] ? 1 : 0;
    }
    return at == before.size();
}

void create(World& world, const LibraryList& list) {
    require(list.lines.size() <= max_library_entries, "the bound of entries");
    for (const LibraryLine& line : list.lines) {
        require(list.entry_of(line).name.size() <= max_object_name, "the bound of names");
    }
    if (!create_library(world.services, list, "library.asm")) {
        require(!world.reporter.boxes.empty(), "a refusal is told");
        require(!world.disk.files.contains("library.asm"), "a refusal writes nothing");
        return;
    }
    const std::string once = world.disk.files.at("library.asm");
    create_library(world.services, list, "library.asm");
    require(world.disk.files.at("library.asm") == once, "the same list, the same source");
}

void fill_identifiers(World& world, const std::string& before) {
    std::int32_t next = 1;
    const GuidFilling filling = generate_guids(world.services, "list.toml", [&] {
        return Guid128{next++, 2, 3, 4};
    });
    const std::string& now = world.disk.files.at("list.toml");
    require(filling.errors.empty() || now == before, "a wrong list is not changed");
    require(keeps(now, before), "every byte stays");
    require(filling.filled > 0 || now == before, "nothing to fill, nothing to write");
    if (filling.filled > 0) {
        const GuidFilling again =
            generate_guids(world.services, "list.toml", [] { return Guid128{}; });
        require(again.errors.empty() && again.filled == 0, "all are filled");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const LinearTime linear(50 * size);
    World world;
    world.disk.files = {{"list.toml", bytes}, {"hangar.asm", frame}, {"hangar_0.asm", "x\r\n"}};
    const LibraryListReading reading = read_library_list(world.services, "list.toml");
    require(reading.list.has_value() == reading.errors.empty(), "a list or errors");
    if (reading.list) {
        create(world, *reading.list);
    }
    try {
        fill_identifiers(world, bytes);
    } catch (const RuntimeError&) {
        require(world.disk.files.at("list.toml") == bytes, "a failure changes nothing");
    }
    return 0;
}
