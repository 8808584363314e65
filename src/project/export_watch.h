// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/disk.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace morvane {

/// Both files of a set as they are at one moment; nothing for one that is missing.
struct PairStamps {
    std::optional<FileStamp> model;
    std::optional<FileStamp> frame;

    bool operator==(const PairStamps&) const = default;
};

/// Looks at the files of a set. A file that cannot be looked at counts as missing. Never throws.
PairStamps look_at_pair(Disk& disk, const std::string& base);

/// Whether the export of a base path may be read while its files are like this.
using ExportGate = std::function<bool(const std::string& base, const PairStamps& now)>;

/// How long both files of a set have to stay unchanged before they are read: exporters write one
/// after the other, and in pieces.
inline constexpr std::chrono::milliseconds export_quiet_time{1000};

/// Follows the files of a set while another program writes them.
struct ExportWatch {
    using Clock = std::chrono::steady_clock;

    PairStamps seen;         // at the last look
    Clock::time_point since; // when they were first seen so
    PairStamps taken;        // the pair that was used last
};

/// A watch that takes the pair as it is now for used.
ExportWatch begin_export_watch(const PairStamps& now, ExportWatch::Clock::time_point time);

/// Notes what the files are like now. True when they differ from the pair that was used last, both
/// are there, and both have been unchanged for `quiet`: then it is time to read them.
bool is_pair_quiet(ExportWatch& watch, const PairStamps& now, ExportWatch::Clock::time_point time,
                   std::chrono::milliseconds quiet = export_quiet_time);

/// Why an export on the disk is incomplete, naming the file; empty when it is whole. A file that
/// cannot be read makes it incomplete too. Never throws.
std::string export_incompleteness(Disk& disk, const std::string& base);

/// What an export lacks by its end marks; empty when it is whole. A whole model file has a BGL_END
/// line, as many _LIST_END as _LIST_BEGIN and as many DRAW_TRI_END as DRAW_TRI_BEGIN; a whole frame
/// file has END as its last line that is not blank. Lines that are comments do not count.
std::string model_incompleteness(std::string_view model);
std::string frame_incompleteness(std::string_view frame);

} // namespace morvane
