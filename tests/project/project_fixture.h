// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/build_project.h"
#include "project/project.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"
#include "system/services.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <mutex>
#include <string>
#include <vector>

namespace morvane::test {

/// A model file with one red material of so many triangles.
std::string model_text(std::size_t triangles = 1);
/// The frame file of a set of that name.
std::string frame_text(const std::string& name);

/// A project in a folder of its own. Its compiler copies the source to the product.
class ProjectTest : public ::testing::Test {
  protected:
    /// Writes exports/NAME.asm and exports/NAME_0.asm.
    void write_export(const std::string& name, std::size_t triangles = 1) const;
    /// Writes morvane.toml, and a recipe that makes lights of red materials.
    void write_project(const std::string& text) const;
    /// A project of these sets, all with the recipe recipes/red.toml.
    void write_sets(const std::vector<std::string>& names, const std::string& head = "") const;

    Project project() const;
    BuildResult build();
    BuildResult build(const BuildOptions& given);
    /// "NAME: STATE (REASON)" for each step.
    std::vector<std::string> outcomes(const BuildResult& result) const;
    std::vector<std::string> built() { return outcomes(build()); }
    std::string output(const std::string& name) const { return folder.read("build/" + name); }

    CompilerEnd compile(const std::vector<std::string>& words, const std::string& where);

    TempFolder folder;
    std::string project_file = folder.file("morvane.toml");
    std::unique_ptr<Disk> disk = make_system_disk();
    RecordingReporter reporter;
    Services services{*disk, reporter};
    BuildSurroundings surroundings{"fx_first", {}, {}, "1.0"};
    BuildOptions options;
    std::mutex mutex;
    std::vector<std::string> compiled; // the words of every call
    CompilerEnd compiler_end{true, {}, {}};
    bool compiler_writes = true;
};

} // namespace morvane::test
