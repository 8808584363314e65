#include "bgl/inspector.h"
#include "bgl/unpack/statuses.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"
#include "system/unpack_process.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace morvane::test {
namespace {

const std::string unpacker = UNPACK_FOLDER "/bglunpack64.exe";

TEST(UnpackOnWindows, TheProgramIsStartedAsItIs) {
    const TempFolder folder;
    ASSERT_TRUE(make_system_disk()->is_file(unpacker));
    SetEnvironmentVariableW(L"MORVANE_SUP_DLL", nullptr);
    EXPECT_EQ(run_program({unpacker, "only one"}), unpack_wrong_usage);
    EXPECT_EQ(
        run_program({unpacker, folder.write("a b.bgl", ""), folder.file("out.bgl"), folder.path()}),
        unpack_no_library);
    EXPECT_EQ(run_program({folder.file("none.exe")}), program_not_started);
    EXPECT_FALSE(folder.has("out.bgl"));
}

} // namespace
} // namespace morvane::test
