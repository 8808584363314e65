// SPDX-License-Identifier: GPL-3.0-or-later

// BGL header, report, objects, search, make universal and revert on any file.

#include "base/errors.h"
#include "bgl/inspector.h"
#include "bgl/search.h"
#include "bgl/universal.h"
#include "target.h"

namespace {

using namespace morvane;
using namespace morvane::fuzz;

/// Programs none of which can be started.
class NoPrograms final : public Programs {
  public:
    bool can_execute(const std::string&) override { return false; }
    std::string find_on_path(const std::string&) override { return {}; }
    std::unique_ptr<RunningProgram> start(const ProgramCall& call, const std::string&) override {
        throw RuntimeError(ErrorNumber::FileNotFound, call.arguments[0]);
    }
    ProgramEnd run(const ProgramCall& call, const RunOptions&) override {
        throw RuntimeError(ErrorNumber::FileNotFound, call.arguments[0]);
    }
};

void analyse(World& world, const std::string& bytes) {
    NoPrograms programs;
    Inspector inspector(world.services, "home", programs);
    const Analysis analysis = analyse_file(inspector, "scenery/a.bgl", true, true);
    require(analysis.objects.size() <= max_library_objects, "the bound of objects");
    for (const LibraryObject& object : analysis.objects) {
        require(object.name.size() == object_name_size, "names are padded");
    }
    // A record of an object is read at most once for every index entry.
    require(world.disk.bytes_read < 1000 + 4 * bytes.size() + max_index_entries * 4096,
            "what is read is bounded");
}

void search(World& world) {
    NoPrograms programs;
    Inspector inspector(world.services, "home", programs);
    const SearchResult result = search_folder(inspector, "scenery", true);
    if (result.done) {
        require(result.statistics.bgl_files == 2, "both files are seen");
        require(result.statistics.total_files == 3, "all files are counted");
        require(result.statistics.library_files + result.statistics.object_files +
                        result.statistics.invalid_files + result.statistics.compressed_files <=
                    2 * result.statistics.bgl_files,
                "a file is counted by what it is");
    }
}

void widen_and_revert(World& world, const std::string& bytes) {
    bool widened = false;
    try {
        widened = make_universal(world.services, "scenery/a.bgl", "home");
    } catch (const RuntimeError&) {
        require(world.disk.files.at("scenery/a.bgl") == bytes, "a failure changes nothing");
    }
    const std::string now = world.disk.files.at("scenery/a.bgl");
    if (!widened) {
        require(now == bytes, "what is refused is not changed");
        return;
    }
    require(now.size() == bytes.size() && now.substr(18) == bytes.substr(18),
            "only the bounds are changed");
    require(revert(world.services, "scenery/a.bgl"), "there is a way back");
    require(world.disk.files.at("scenery/a.bgl") == bytes, "the original is back");
    require(!world.disk.files.contains("scenery/a.bgl.bck"), "the copy is gone");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const LinearTime linear(size + 20 * max_index_entries);
    World world;
    world.disk.files = {
        {"scenery/a.bgl", bytes}, {"scenery/deep/b.BGL", bytes}, {"scenery/readme.txt", "x"}};
    try {
        analyse(world, bytes);
        search(world);
    } catch (const RuntimeError&) {
        // The one error that may be thrown.
    }
    widen_and_revert(world, bytes);
    return 0;
}
