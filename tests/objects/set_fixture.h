// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/process.h"
#include "source/open_set.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"
#include "system/services.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace morvane::test {

/// A material of a model made for a test. All its triangles are drawn in one block.
struct MadeMaterial {
    std::string color = "1.000000,0.501961,0.000000"; // FF8000
    std::string highlight = "1.000000,0.000000,0.000000";
    std::vector<std::string> triangles{"0, 1, 2"};
    std::string block_vertex = "0"; // the block's first vertex number
};

/// Lines of a model file with these materials and vertices ("x,y,z, nx,ny,nz").
std::vector<std::string> make_model(const std::vector<MadeMaterial>& materials,
                                    const std::vector<std::string>& vertices);

/// A model file of three vertices at heights 0, 10 and 0.
std::vector<std::string> make_model(const std::vector<MadeMaterial>& materials);

/// A source set in a folder of its own, opened.
class SetTest : public ::testing::Test {
  protected:
    /// Writes the two files (CR LF) and opens them.
    void open(const std::vector<std::string>& model, const std::vector<std::string>& frame);
    void open(const std::vector<std::string>& model) { open(model, default_frame()); }
    /// Scale 65536, latitude 100h, longitude 200h, no rotation.
    static std::vector<std::string> default_frame();

    ProcessResult process(std::size_t row, Kind kind) {
        return process_material(services, set, row, kind, parameters);
    }
    /// The code of all materials, in the order of Process.
    std::vector<std::string> new_code() const;
    /// All lines of a store, the spare element too.
    static std::vector<std::string> lines(const LineStore& store);

    TempFolder folder;
    std::unique_ptr<Disk> disk = make_system_disk();
    RecordingReporter reporter;
    Services services{*disk, reporter};
    OpenSet set;
    Parameters parameters;
    std::string base = folder.file("set");
};

} // namespace morvane::test
