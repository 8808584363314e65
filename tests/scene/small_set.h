// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "objects/parameters.h"
#include "scene/scene.h"
#include "source/open_set.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"
#include "system/services.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace morvane::test {

/// A set with one grey square on the ground and one marked material of some triangles.
struct SmallSet {
    std::string scale = "65536";     // operand 4 of the reference line
    std::string rotation = "00000h"; // operand 4 of the INSTANCE_CALL
    std::string before_triangles{};  // lines in front of the marked material, each with its end
    std::string after_triangles{};
    std::string end = "    BGL_RETURN\r\n"; // after BGL_END
    /// Corners of the marked triangles, three each; normals up.
    std::vector<std::array<double, 3>> corners{{10, 2, 20}, {11, 5, 20}, {10, 2, 22}};

    std::string model() const;
    std::string frame() const;
};

/// The set written to a folder of its own.
class SetOnDisk {
  public:
    explicit SetOnDisk(const SmallSet& set);

    std::string base() const { return folder_.file("set"); }
    const TempFolder& folder() const { return folder_; }
    Services services() { return {*disk_, reporter_}; }
    Disk& disk() { return *disk_; }
    RecordingReporter& reporter() { return reporter_; }

    /// Opens the set and turns its marked material into objects.
    OpenSet processed(Kind kind, const Parameters& parameters);
    /// The scene of the files as they are.
    scene::Scene scene();

  private:
    TempFolder folder_;
    std::unique_ptr<Disk> disk_ = make_system_disk();
    RecordingReporter reporter_;
};

} // namespace morvane::test
