// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/create_library.h"
#include "library/library_list.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <gtest/gtest.h>

namespace morvane::test {

/// A folder with designs, and an empty list.
class LibraryTest : public ::testing::Test {
  protected:
    /// Writes both files of a design; gives its base path.
    std::string design(const std::string& name,
                       const std::string& scale_line = "    SCALE_AGL x,0,40,65536,0,0,0,0,0,0") {
        folder.write(name + ".asm", crlf({"; frame", scale_line}));
        folder.write(name + "_0.asm", crlf({"; drawing code"}));
        return folder.file(name);
    }

    /// The fields as they stand after a design was chosen.
    static LibraryFields fields(const std::string& base) {
        LibraryFields result;
        result.libFileAdd = base;
        result.libScale = "1";
        result.libObjSize = "40";
        result.libImgPwr = "100";
        result.libObjType = "0";
        return result;
    }

    LibraryFields fields_with_guid(const std::string& base, const std::string& guid) {
        LibraryFields result = fields(base);
        result.libGUID = guid;
        return result;
    }

    /// The only message box so far; the next look begins with none.
    RecordingReporter::Box box() {
        EXPECT_EQ(reporter.boxes.size(), 1U);
        RecordingReporter::Box shown =
            reporter.boxes.empty() ? RecordingReporter::Box() : reporter.boxes.back();
        reporter.boxes.clear();
        return shown;
    }

    TempFolder folder;
    RecordingReporter reporter;
    std::unique_ptr<Disk> disk = make_system_disk();
    Services services{*disk, reporter};
    LibraryList list;
};

} // namespace morvane::test
