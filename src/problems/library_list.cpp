// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/library_list.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "library/design.h"
#include "source/source_set.h"
#include "system/file_bytes.h"

namespace morvane {

namespace {

// As the design's frame file says it; nothing for one that cannot be read.
std::optional<DesignDescription> described(Disk& disk, const std::string& base) {
    try {
        const LineStore frame(read_bytes(disk, frame_file_name(base)));
        return read_design(frame, base).description;
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
}

bool has_scale(const LibraryEntry& entry, const std::string& scale) {
    try {
        return to_stored_scale(val(scale)) == entry.stored_scale;
    } catch (const RuntimeError&) {
        return true; // a design without a scale says nothing
    }
}

} // namespace

std::vector<Problem> find_library_list_problems(Disk& disk, const LibraryList& list,
                                                const std::string& list_file) {
    std::vector<Problem> problems;
    for (const LibraryLine& line : list.lines) {
        const LibraryEntry& entry = list.entry_of(line);
        const auto design = described(disk, line.location);
        if (design && !has_scale(entry, design->scale)) {
            problems.push_back({"library-scale", Severity::Warning,
                                "the object of the design " + line.base +
                                    " gets another scale than the " + design->scale +
                                    " that it was designed at; use that, or omit it.",
                                list_file});
        }
        if (!disk.is_file(model_file_name(line.location))) {
            problems.push_back({"library-model-missing", Severity::Error,
                                "the design " + line.base + " has no file " +
                                    model_file_name(line.base) + "; export it.",
                                list_file});
        }
    }
    return problems;
}

} // namespace morvane
