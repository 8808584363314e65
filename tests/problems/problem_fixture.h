// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/process.h"
#include "problems/find_problems.h"
#include "source/open_set.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace morvane::test {

using Lines = std::vector<std::string>;

/// A set with one red marked material of one triangle, and nothing to complain about.
Lines clean_model();
Lines clean_frame();
/// The same as an aircraft, with a parameter dictionary of two entries.
Lines aircraft_frame();

/// A set in a folder of its own.
class ProblemTest : public ::testing::Test {
  protected:
    /// Puts `text` in place of the first line of `lines` that begins with `start`; empty text
    /// removes the line. Fails the test when there is none.
    static void replace(Lines& lines, std::string_view start, const std::string& text);
    /// Puts lines behind the first line that begins with `start`.
    static void insert_after(Lines& lines, std::string_view start, const Lines& texts);

    void write(const std::string& name, const Lines& lines);
    /// Writes and opens `model` and `frame`; Open may refuse them.
    void open();
    ProcessResult process(std::size_t row, Kind kind) {
        return process_material(services, set, row, kind, parameters);
    }
    /// What find_problems finds: "FILE:LINE CODE", without what tells of work left to do.
    std::vector<std::string> found();
    /// The same for a written file with what it includes, of the checks on assembling only.
    std::vector<std::string> found_in(const std::string& name);
    /// The text of the problem of that code that was found last.
    std::string text_of(std::string_view code) const;
    const Problem& problem(std::string_view code) const;

    Lines model = clean_model();
    Lines frame = clean_frame();
    TempFolder folder;
    std::unique_ptr<Disk> disk = make_system_disk();
    RecordingReporter reporter;
    Services services{*disk, reporter};
    OpenSet set;
    Parameters parameters;
    bool saved_lines = true;
    std::vector<PlannedObject> planned;
    std::vector<std::string> effects;
    std::vector<KnownObject> objects;
    std::vector<std::string> allowed;
    std::vector<Problem> problems;

  private:
    std::vector<std::string> described() const;
};

} // namespace morvane::test
