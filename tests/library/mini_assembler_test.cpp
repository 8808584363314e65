// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/mini_assembler.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace morvane::test {
namespace {

std::string assembled(const std::string& source) {
    return assemble(source, [](const std::string&) { return std::string("db 9\n"); });
}

TEST(MiniAssembler, WritesNumbersLowestByteFirst) {
    EXPECT_EQ(assembled(" dw 0001\n dd 0FF6914C5H\n db 0FFh, 7\n"),
              std::string("\x01\x00\xC5\x14\x69\xFF\xFF\x07", 8));
    EXPECT_EQ(assembled("dd -2\n"), "\xFE\xFF\xFF\xFF");
    EXPECT_EQ(assembled("dw 2 dup(5)"), std::string("\5\0\5\0", 4));
    EXPECT_EQ(assembled("db \"a, b\""), "a, b");
}

TEST(MiniAssembler, ResolvesLabelsBothWays) {
    EXPECT_EQ(assembled("a label word\ndb 1,2\ndb (offset b) - (offset a)\nb label word\n"
                        "db (offset b)\n include x\\y_0.asm\n"),
              std::string("\1\2\3\3\x09", 5));
}

TEST(MiniAssembler, RefusesWhatTheRealOneWould) {
    for (const std::string wrong :
         {"db 256", "dw 65536", "dd 100000000h", "dd ABh", "a label word\na label word",
          "dd (offset x)", "mov ax,1", "dd ", "db \"a\"b\"", "dd \"ab\""}) {
        EXPECT_THROW(assembled(wrong), std::runtime_error) << wrong;
    }
}

} // namespace
} // namespace morvane::test
