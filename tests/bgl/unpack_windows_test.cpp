// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "bgl/unpack/bglunpack.h"
#include "support/temp_folder.h"
#include "system/disk.h"
#include "system/programs.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace morvane::test {
namespace {

const std::string unpacker = UNPACK_FOLDER "/bglunpack64.exe";

TEST(UnpackOnWindows, TheProgramIsStartedAsItIs) {
    const TempFolder folder;
    ASSERT_TRUE(make_system_disk()->is_file(unpacker));
    SetEnvironmentVariableW(L"MORVANE_SUP_DLL", nullptr);
    const auto programs = make_system_programs();
    EXPECT_EQ(programs->run({{unpacker, "only one"}}, {}).status, unpack_wrong_usage);
    const ProgramCall call{
        {unpacker, folder.write("a b.bgl", ""), folder.file("out.bgl"), folder.path()}};
    EXPECT_EQ(programs->run(call, {}).status, unpack_no_library);
    EXPECT_THROW(programs->run({{folder.file("none.exe")}}, {}), RuntimeError);
    EXPECT_FALSE(folder.has("out.bgl"));
}

} // namespace
} // namespace morvane::test
