// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/export_watch.h"

#include "base/errors.h"
#include "base/text.h"
#include "source/source_set.h"
#include "system/file_bytes.h"

#include <algorithm>
#include <cstddef>

namespace morvane {

namespace {

constexpr std::string_view blanks = " \t\r";

std::optional<FileStamp> look_at(Disk& disk, const std::string& path) {
    try {
        return disk.is_file(path) ? std::optional(disk.stamp(path)) : std::nullopt;
    } catch (const RuntimeError&) {
        return std::nullopt; // it vanished between the two calls
    }
}

std::string_view first_word(std::string_view line) {
    const std::size_t begin = std::min(line.find_first_not_of(blanks), line.size());
    line.remove_prefix(begin);
    return line.substr(0, line.find_first_of(" \t\r;"));
}

/// How often the lines that open and close something occur in a model file.
struct MarkCounts {
    std::size_t bgl_ends = 0;
    std::ptrdiff_t open_lists = 0;
    std::ptrdiff_t open_blocks = 0;

    void count(std::string_view word) {
        if (word == "BGL_END") {
            ++bgl_ends;
        } else if (word.ends_with("_LIST_BEGIN")) {
            ++open_lists;
        } else if (word.ends_with("_LIST_END")) {
            --open_lists;
        } else if (word == "DRAW_TRI_BEGIN") {
            ++open_blocks;
        } else if (word == "DRAW_TRI_END") {
            --open_blocks;
        }
    }
};

MarkCounts count_marks(std::string_view text) {
    MarkCounts counts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of('\n'), text.size());
        counts.count(first_word(text.substr(0, end)));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return counts;
}

} // namespace

PairStamps look_at_pair(Disk& disk, const std::string& base) {
    return {look_at(disk, model_file_name(base)), look_at(disk, frame_file_name(base))};
}

ExportWatch begin_export_watch(const PairStamps& now, ExportWatch::Clock::time_point time) {
    return {now, time, now};
}

bool is_pair_quiet(ExportWatch& watch, const PairStamps& now, ExportWatch::Clock::time_point time,
                   std::chrono::milliseconds quiet) {
    if (now != watch.seen) {
        watch.seen = now;
        watch.since = time;
    }
    return now != watch.taken && now.model && now.frame && time - watch.since >= quiet;
}

std::string export_incompleteness(Disk& disk, const std::string& base) {
    try {
        const std::string model =
            model_incompleteness(read_bytes(disk, model_file_name(base)).view());
        if (!model.empty()) {
            return model_file_name(base) + ": the export is incomplete: " + model;
        }
        const std::string frame =
            frame_incompleteness(read_bytes(disk, frame_file_name(base)).view());
        return frame.empty() ? frame
                             : frame_file_name(base) + ": the export is incomplete: " + frame;
    } catch (const RuntimeError& error) {
        return error.what();
    }
}

std::string model_incompleteness(std::string_view model) {
    const MarkCounts counts = count_marks(model);
    if (counts.bgl_ends == 0) {
        return "it has no BGL_END line";
    }
    if (counts.open_lists != 0) {
        return "it has another number of _LIST_END than of _LIST_BEGIN lines";
    }
    if (counts.open_blocks != 0) {
        return "it has another number of DRAW_TRI_END than of DRAW_TRI_BEGIN lines";
    }
    return {};
}

std::string frame_incompleteness(std::string_view frame) {
    const std::size_t last = frame.find_last_not_of(" \t\r\n");
    frame = frame.substr(0, last == std::string_view::npos ? 0 : last + 1);
    const std::string_view line = frame.substr(frame.rfind('\n') + 1); // all of it without one
    return equal_ignoring_case(first_word(line), "END") ? std::string()
                                                        : "its last line is not END";
}

} // namespace morvane
