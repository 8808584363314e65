// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "support/thrown.h"
#include "toml/toml_edit.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

using test::thrown_by;

const std::string sample = "# my airport\n"
                           "\n"
                           "macros = \"a.inc\"   # ours\n"
                           "\n"
                           "[defaults.Lights]\n"
                           "LightInt   = \"5\" # dim\n"
                           "\n"
                           "# the edge\n"
                           "[[assign]]\n"
                           "kind      = \"Lights\"\n"
                           "highlight = [ \"Red\",  # left\n"
                           "              \"Green\" ]\n"
                           "\n"
                           "# the rest\n"
                           "[[assign]]\n"
                           "kind = \"Effects\"\n"
                           "# end\n";

std::string replaced(std::string text, const std::string& old, const std::string& wanted) {
    return text.replace(text.find(old), old.size(), wanted);
}

TEST(TomlEdit, ChangesAValueAndNothingElse) {
    EXPECT_EQ(with_toml_value(sample, {}, "macros", "\"b.inc\""),
              replaced(sample, "a.inc", "b.inc"));
    EXPECT_EQ(with_toml_value(sample, {{"defaults", "Lights"}, {}}, "LightInt", "\"77\""),
              replaced(sample, "\"5\"", "\"77\""));
    EXPECT_EQ(with_toml_value(sample, {{"assign"}, 0}, "highlight", "\"Blue\""),
              replaced(sample, "[ \"Red\",  # left\n              \"Green\" ]", "\"Blue\""));
    EXPECT_EQ(with_toml_value(sample, {{"assign"}, 1}, "kind", "\"Lights\""),
              replaced(sample, "\"Effects\"", "\"Lights\""));
}

TEST(TomlEdit, AddsAKeyAfterTheLastOneLinedUp) {
    EXPECT_EQ(with_toml_value(sample, {}, "allow", "[]"),
              replaced(sample, "# ours\n", "# ours\nallow  = []\n"));
    EXPECT_EQ(with_toml_value(sample, {{"assign"}, 0}, "DayFlag", "true"),
              replaced(sample, "\"Green\" ]\n", "\"Green\" ]\nDayFlag   = true\n"));
    EXPECT_EQ(with_toml_value(sample, {{"assign"}, 1}, "lstEffectType", "\"x\""),
              replaced(sample, "\"Effects\"\n", "\"Effects\"\nlstEffectType = \"x\"\n"));
}

TEST(TomlEdit, KeepsWindowsLineEndsAndAMissingLastOne) {
    EXPECT_EQ(with_toml_value("a = 1\r\nb = 2", {}, "c", "3"), "a = 1\r\nb = 2\r\nc = 3\r\n");
    EXPECT_EQ(with_toml_value("[[assign]]\r\nkind = 1\r\n", {}, "macros", "\"x\""),
              "macros = \"x\"\r\n\r\n[[assign]]\r\nkind = 1\r\n");
}

TEST(TomlEdit, AFirstTopKeyGoesAfterAHeadComment) {
    EXPECT_EQ(with_toml_value("# about\n\n[[assign]]\n", {}, "a", "1"),
              "# about\n\na = 1\n\n[[assign]]\n");
    EXPECT_EQ(with_toml_value("# of the first\n[[assign]]\n", {}, "a", "1"),
              "a = 1\n\n# of the first\n[[assign]]\n");
    EXPECT_EQ(with_toml_value("\xEF\xBB\xBF[[assign]]\n", {}, "a", "1"), "\xEF\xBB\xBF"
                                                                         "a = 1\n\n[[assign]]\n");
}

TEST(TomlEdit, AddsATableBeforeTheFirstElement) {
    EXPECT_EQ(with_toml_value(sample, {{"defaults", "Library New"}, {}}, "libScale", "\"1\""),
              replaced(sample, "# the edge\n",
                       "[defaults.\"Library New\"]\nlibScale = \"1\"\n\n# the edge\n"));
    EXPECT_EQ(with_toml_value("a = 1\n", {{"defaults", "Lights"}, {}}, "b", "2"),
              "a = 1\n\n[defaults.Lights]\nb = 2\n");
}

TEST(TomlEdit, RemovesAKeyWithItsLines) {
    EXPECT_EQ(without_toml_key(sample, {}, "macros"),
              replaced(sample, "macros = \"a.inc\"   # ours\n", ""));
    EXPECT_EQ(without_toml_key(sample, {{"assign"}, 0}, "highlight"),
              replaced(sample, "highlight = [ \"Red\",  # left\n              \"Green\" ]\n", ""));
    EXPECT_EQ(without_toml_key(sample, {}, "allow"), sample);
}

TEST(TomlEdit, AddsAndRemovesElements) {
    const std::string added =
        with_toml_element(sample, "assign", 1, {"kind = \"Windsock\"", "ws_lit = true"});
    EXPECT_EQ(added, replaced(sample, "# the rest\n",
                              "[[assign]]\nkind = \"Windsock\"\nws_lit = true\n\n# the rest\n"));
    EXPECT_EQ(without_toml_element(added, "assign", 1), sample);
    EXPECT_EQ(
        with_toml_element(sample, "assign", 2, {"kind = \"Windsock\""}),
        replaced(sample, "\"Effects\"\n", "\"Effects\"\n\n[[assign]]\nkind = \"Windsock\"\n"));
    EXPECT_EQ(with_toml_element("", "assign", 0, {"kind = 1"}), "[[assign]]\nkind = 1\n");
}

TEST(TomlEdit, RemovesTheCommentOfAnElementWithIt) {
    const std::string found = without_toml_element(sample, "assign", 0);
    EXPECT_EQ(found.find("# the edge"), std::string::npos);
    EXPECT_NE(found.find("# the rest\n[[assign]]\nkind = \"Effects\"\n# end\n"), std::string::npos);
    EXPECT_NE(found.find("LightInt   = \"5\" # dim\n\n# the rest"), std::string::npos);
}

TEST(TomlEdit, ChangesInlineTables) {
    const std::string text = "defaults = { Lights = { LightInt = \"5\", DayFlag = true } } # x\n";
    const TomlTable lights{{"defaults", "Lights"}, {}};
    EXPECT_EQ(with_toml_value(text, lights, "LightInt", "\"6\""), replaced(text, "\"5\"", "\"6\""));
    EXPECT_EQ(with_toml_value(text, lights, "LightAttS", "\"1\""),
              replaced(text, "true", "true, LightAttS = \"1\""));
    EXPECT_EQ(without_toml_key(text, lights, "LightInt"), replaced(text, "LightInt = \"5\", ", ""));
    EXPECT_EQ(without_toml_key(text, lights, "DayFlag"), replaced(text, ", DayFlag = true", ""));
}

TEST(TomlEdit, RefusesWhatItCannotChange) {
    EXPECT_EQ(thrown_by([] { with_toml_value("a = ", {}, "b", "1"); }).code(),
              ErrorNumber::InvalidProcedureCall);
    EXPECT_EQ(thrown_by([] { with_toml_element("assign = [{a = 1}]\n", "assign", 1, {}); }).code(),
              ErrorNumber::InvalidProcedureCall);
    EXPECT_EQ(thrown_by([] {
                  with_toml_value(sample, {{"assign"}, 2}, "a", "1");
              }).code(),
              ErrorNumber::InvalidProcedureCall);
    EXPECT_EQ(thrown_by([] { without_toml_element(sample, "assign", 2); }).code(),
              ErrorNumber::InvalidProcedureCall);
}

TEST(TomlEdit, CountsColumnsInCharacters) {
    const std::string text = "[[assign]]\na = { \"\xC3\xBC\" = \"\xC3\xA4\xC3\xB6\", b = 1 }\n";
    EXPECT_EQ(with_toml_value(text, {{"assign"}, 0}, "a", "2"), "[[assign]]\na = 2\n");
}

} // namespace
} // namespace morvane
