// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "memory_disk.h"
#include "system/services.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

namespace morvane::fuzz {

/// Ends the run with a message when a rule does not hold; the fuzzer keeps the input.
void require(bool holds, std::string_view rule);

/// The input's sections, which lines of "====" part. Always `count` of them, missing ones empty;
/// whatever is beyond goes to the last.
std::vector<std::string> sections(const std::uint8_t* data, std::size_t size, std::size_t count);

/// The lines of a text, its ends being CR LF, LF and CR.
std::vector<std::string> lines_of(std::string_view text);
/// The lines, each with CR LF behind it.
std::string text_of(const std::vector<std::string>& lines);

/// Answers Yes and keeps what it is told.
class QuietReporter final : public Reporter {
  public:
    void add_message(std::string_view text) override { messages.emplace_back(text); }
    void clear_messages() override { messages.clear(); }
    void message_box(std::string_view text, Icon /*icon*/) override { boxes.emplace_back(text); }
    bool ask(std::string_view, Icon, std::string_view) override { return true; }

    std::vector<std::string> messages;
    std::vector<std::string> boxes;
};

/// A place of its own for one run of a command.
struct World {
    MemoryDisk disk;
    QuietReporter reporter;
    Services services{disk, reporter};
};

/// Requires, when it goes out of scope, that the time spent was linear in the size of the input.
/// Generous, since sanitizers and other programs slow things down; a square would still show.
class LinearTime {
  public:
    explicit LinearTime(std::size_t size) : size_(size), start_(std::clock()) {}
    LinearTime(const LinearTime&) = delete;
    LinearTime& operator=(const LinearTime&) = delete;
    ~LinearTime();

  private:
    std::size_t size_;
    std::clock_t start_; // of this process's own time
};

} // namespace morvane::fuzz
