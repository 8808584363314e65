#include "system/windows_command_line.h"

#include <gtest/gtest.h>

namespace morvane::test {
namespace {

TEST(WindowsCommandLine, QuotesWhatTheInterpreterWouldTake) {
    EXPECT_EQ(windows_command_line({{"c:\\my sets\\bglc", "/bgl", "c:\\my sets\\a&b.asm"}},
                                   "c:\\p (x)\\comp.txt"),
              "\"c:\\my sets\\bglc\" /bgl \"c:\\my sets\\a&b.asm\" > \"c:\\p (x)\\comp.txt\"");
    EXPECT_EQ(windows_command_line({{"a", "50%x%", "q\"&b"}}, "o"),
              "a \"50\"^%\"x\"^%\"\" \"q&b\" > o");
    EXPECT_EQ(windows_interpreter_line("\"a b\" > c"), "cmd.exe /d /v:off /s /c \"\"a b\" > c\"");
}

TEST(WindowsProgramLine, QuotesAsProgramsTakeItApart) {
    EXPECT_EQ(windows_program_line({{"c:\\a b\\bglc", "/bgl", "", "q\"x", "end\\", "a\\\"b"}}),
              "\"c:\\a b\\bglc\" \"/bgl\" \"\" \"q\\\"x\" \"end\\\\\" \"a\\\\\\\"b\"");
}

} // namespace
} // namespace morvane::test
