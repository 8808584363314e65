// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/export_watch.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <string>

namespace morvane::test {

// Under Wine files are so slow that 200 would take many minutes.
#ifdef _WIN32
inline constexpr std::size_t many_exports = 12;
#else
inline constexpr std::size_t many_exports = 200;
#endif

/// Plays the exporter of one set, in the manners in which exporters were seen to write. The clock
/// is the test's own: what is written has its time on it, and the machine's load does not count.
class Exporter {
  public:
    using Clock = ExportWatch::Clock;
    using Milliseconds = std::chrono::milliseconds;

    explicit Exporter(std::string base) : base_(std::move(base)) {}

    /// The files of export number `number`, which both of them tell.
    static std::string model(std::size_t number);
    std::string frame(std::size_t number) const;
    std::string model_file() const { return base_ + "_0.asm"; }
    std::string frame_file() const { return base_ + ".asm"; }

    /// Plans something for a time from now.
    void at(Milliseconds time, std::function<void()> action);
    /// Plans an export in one of the four manners, 0 to 3; returns when it is whole.
    Milliseconds export_in(std::size_t manner, Milliseconds time, std::size_t number);
    /// Plans exports of the numbers `first`, `first` + 1 ..., the manners in turn.
    void plan_exports(std::size_t count, std::size_t first = 2);

    Clock::time_point now() const { return now_; }
    /// Lets time pass, with all that is planned for it.
    void pass(Milliseconds time);
    /// Whether three seconds have passed since the last thing that was planned.
    bool is_over() const { return now_ > end_; }

  private:
    Milliseconds in_pieces(Milliseconds time, const std::string& path, const std::string& text);

    std::string base_;
    Clock::time_point now_{};
    Clock::time_point end_ = now_ + Milliseconds(3000);
    std::multimap<Clock::time_point, std::function<void()>> script_;
};

} // namespace morvane::test
