// SPDX-License-Identifier: GPL-3.0-or-later
#include "system/windows_command_line.h"

#include <gtest/gtest.h>

namespace morvane::test {
namespace {

TEST(WindowsCommandLine, ABatchFileIsQuotedForTheInterpreter) {
    EXPECT_EQ(
        windows_command_line({{"c:\\my sets\\bglc.BAT", "/bgl", "c:\\my sets\\a&b.asm"}}),
        "cmd.exe /d /v:off /s /c \"\"c:\\my sets\\bglc.BAT\" /bgl \"c:\\my sets\\a&b.asm\"\"");
    EXPECT_EQ(windows_command_line({{"a.cmd", "50%x%", "q\"&b", "end\\ "}}),
              "cmd.exe /d /v:off /s /c \"a.cmd \"50\"^%\"x\"^%\"\" \"q&b\" \"end\\ \"\"");
}

TEST(WindowsCommandLine, AProgramIsQuotedAsItSplitsTheLine) {
    EXPECT_EQ(
        windows_command_line({{"c:\\a b\\bglc.exe", "/bgl", "", "q\"x", "e d\\", "a\\\"b", "50%"}}),
        "\"c:\\a b\\bglc.exe\" /bgl \"\" \"q\\\"x\" \"e d\\\\\" \"a\\\\\\\"b\" \"50%\"");
}

} // namespace
} // namespace morvane::test
