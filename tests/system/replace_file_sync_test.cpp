// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/faulty_disk.h"
#include "support/temp_folder.h"
#include "system/replace_files.h"

#include <gtest/gtest.h>

namespace morvane::test {
namespace {

TEST(ReplaceFile, AFaultAtAnyCallNeverLosesTheFile) {
    const TempFolder folder;
    FaultyDisk disk;
    for (std::size_t n = 1; n < 30; ++n) {
        const std::string path = folder.write("a.asm", "old");
        disk.fail_at(n);
        bool failed = false;
        try {
            replace_file(disk, path, [](TextWriter& out) { out.write("new"); });
        } catch (const RuntimeError&) {
            failed = true;
        }
        EXPECT_EQ(folder.names(), std::vector<std::string>{"a.asm"}) << n;
        EXPECT_EQ(folder.read("a.asm"), failed ? "old" : "new") << n;
        if (disk.calls() < n) {
            return;
        }
    }
    FAIL() << "too many calls";
}

} // namespace
} // namespace morvane::test
