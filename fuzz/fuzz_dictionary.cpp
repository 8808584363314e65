// SPDX-License-Identifier: GPL-3.0-or-later

// Model header and parameter dictionary on any frame file.

#include "base/errors.h"
#include "objects/model_header.h"
#include "target.h"

namespace {

using namespace morvane;
using namespace morvane::fuzz;

std::vector<std::string> all_lines(const LineStore& store) {
    std::vector<std::string> lines;
    for (std::size_t i = 1; i <= store.count(); ++i) {
        lines.emplace_back(store.line(i));
    }
    return lines;
}

bool holds_in_order(const std::vector<std::string>& all, const std::vector<std::string>& some) {
    std::size_t at = 0;
    for (const std::string& line : all) {
        at += at < some.size() && line == some[at] ? 1 : 0;
    }
    return at == some.size();
}

// All lines but one "dd  0" are still there, in their order, when a header was inserted.
void check_insert(World& world, const std::vector<std::string>& lines,
                  const DictionaryTable& table) {
    LineStore frame(lines);
    insert_model_header(world.disk, frame, table);
    std::vector<std::string> now = all_lines(frame);
    if (now == lines) {
        return;
    }
    bool found = false;
    for (std::size_t i = 0; i < lines.size() && !found; ++i) {
        std::vector<std::string> kept = lines;
        kept.erase(kept.begin() + static_cast<std::ptrdiff_t>(i));
        found = holds_in_order(now, kept);
    }
    require(found, "inserting a header replaces one line and adds others");
}

// What update has written is what load reads.
void check_update(World& world, const std::vector<std::string>& lines,
                  const DictionaryTable& table) {
    LineStore frame(lines);
    update_model_header(world.disk, frame, table);
    const std::vector<std::string> once = all_lines(frame);
    update_model_header(world.disk, frame, table);
    require(all_lines(frame) == once, "a second update changes nothing");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const LinearTime linear(size);
    World world;
    world.disk.files["set.asm"] = text;
    const std::vector<std::string> lines = lines_of(text);
    try {
        const DictionaryTable table = load_ext_parameters(world.services, "set");
        require(2 * table.size() <= max_dictionary_lines, "the table's bound");
        if (!table.empty()) {
            dictionary_size(table);
        }
        if (lines.size() < 200) {
            check_insert(world, lines, table);
        }
        check_update(world, lines, table);
    } catch (const RuntimeError&) {
        // The one error that may be thrown.
    }
    return 0;
}
