// SPDX-License-Identifier: GPL-3.0-or-later

// What is read off a document: the files to come, the code of a material, the problems.

#include "base/errors.h"
#include "document/live_problems.h"
#include "document/material_code.h"
#include "document/source_comparison.h"
#include "objects/random_set.h"
#include "objects/save.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace morvane::test {
namespace {

using ::testing::Contains;
using ::testing::ContainsRegex;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

std::vector<std::string> file_lines(const std::string& path) {
    std::istringstream stream(read_file(path));
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        line.erase(line.find_last_not_of('\r') + 1);
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> lines_of(const ComingFile& file) {
    std::vector<std::string> lines;
    for (std::size_t i = 1; i <= file.count(); ++i) {
        lines.emplace_back(file.line(i).text);
    }
    return lines;
}

// A row as text: "NUMBER FATE NUMBER".
std::string shown(const ComparedLine& line) {
    static constexpr const char* fates[] = {"=", "+", "-", ";", "~"};
    return std::to_string(line.number_now) + fates[static_cast<int>(line.fate)] +
           std::to_string(line.number_then);
}

std::vector<std::string> shown(const SourceComparison& comparison) {
    std::vector<std::string> rows;
    for (std::size_t row = 0; row < comparison.rows(); ++row) {
        rows.push_back(shown(comparison.row(row)));
    }
    return rows;
}

class ViewsTest : public ::testing::Test {
  protected:
    // Two red materials of a triangle each, selected in lines 9 and 13; BGL_END is line 17.
    void SetUp() override {
        folder.write(
            "set_0.asm",
            crlf({"MATERIAL_LIST_BEGIN",
                  "MATERIAL_DEF 1.0,0.5,0.0,1.0, 0,0,0, 1,0,0, 0,0,0, 0.0 ; x",
                  "MATERIAL_DEF 1.0,0.5,0.0,1.0, 0,0,0, 1,0,0, 0,0,0, 0.0 ; x", "MATERIAL_LIST_END",
                  "VERTEX_LIST_BEGIN", "VERTEX_DEF 0,0,0, 0,1,0, 0,0 ; x",
                  "VERTEX_DEF 1,10,0, 0,1,0, 0,0 ; x", "VERTEX_LIST_END", "MATERIAL 0,0 ; x",
                  "DRAW_TRI_BEGIN 0, 3", "DRAW_TRI 0, 1, 1 ; x", "DRAW_TRI_END", "MATERIAL 1,0 ; x",
                  "DRAW_TRI_BEGIN 0, 3", "DRAW_TRI 0, 1, 1 ; y", "DRAW_TRI_END", "BGL_END"}));
        folder.write("set.asm", crlf({"    SCALE_AGL a,0,100,65536,0100h,0,0200h,0,0,0",
                                      "    dd  0", "    END"}));
        ASSERT_TRUE(document.open(base));
        parameters.lights.LightVariable = "beacnt";
        document.set_default_parameters(parameters);
    }
    SourceComparison compare(SetFile which = SetFile::Model) {
        return {*disk, document.set(), which};
    }
    std::size_t code_size(std::size_t row) { return document.code_of(row)->size(); }
    std::vector<std::string> codes() {
        std::vector<std::string> result;
        for (const Problem& problem : problems_of(*disk, document, knowledge)) {
            result.push_back(problem.code);
        }
        return result;
    }

    TempFolder folder;
    std::unique_ptr<Disk> disk = make_system_disk();
    RecordingReporter reporter;
    DocumentListener listener;
    Document document{{*disk, reporter}, listener};
    std::string base = folder.file("set");
    Parameters parameters;
    CheckKnowledge knowledge;
};

TEST_F(ViewsTest, BeforeAnythingIsProcessedTheFileToComeIsTheOpenedOne) {
    const ComingFile file = ComingFile::model(document.set());
    EXPECT_EQ(file.count(), 17U);
    EXPECT_EQ(lines_of(file), file_lines(base + "_0.asm"));
    EXPECT_EQ(file.line(9).opened, 9U);
    EXPECT_EQ(file.number_of(17), 17U);
    EXPECT_THROW(file.line(18), RuntimeError);
    EXPECT_THROW(file.line(0), RuntimeError);
    EXPECT_EQ(ComingFile::frame(document.set()).count(), 3U);
}

TEST_F(ViewsTest, TheFileToComeIsWhatSaveWrites) {
    document.process(2, Kind::LibraryNew);
    document.process(1, Kind::Effects);
    const ComingFile file = ComingFile::model(document.set());
    const std::vector<std::string> coming = lines_of(file);
    EXPECT_EQ(file.number_of(13), 13U);
    EXPECT_EQ(file.line(14).opened, 0U) << "code";
    EXPECT_EQ(file.number_of(14), 14 + code_size(2));
    EXPECT_EQ(file.number_of(17), 17 + code_size(2));
    ASSERT_TRUE(document.save(base).saved);
    EXPECT_EQ(coming, file_lines(base + "_0.asm"));
}

TEST_F(ViewsTest, AFileThatIsOutOfDateRefusesLinesButReadsNoWrongMemory) {
    document.process(2, Kind::LibraryNew);
    const ComingFile file = ComingFile::model(document.set());
    document.undo();
    EXPECT_THROW(file.line(14), RuntimeError);
    EXPECT_EQ(file.line(13).text, "MATERIAL 1,0 ; x");
}

TEST_F(ViewsTest, DiskAndFileToComeStandSideBySide) {
    document.process(2, Kind::LibraryNew);
    const std::size_t code = code_size(2);
    const SourceComparison comparison = compare();
    EXPECT_EQ(comparison.error(), "");
    ASSERT_EQ(comparison.rows(), 17 + code + 1);
    EXPECT_EQ(shown(comparison.row(12)), "13=13");
    EXPECT_EQ(shown(comparison.row(13)), "0+14");
    EXPECT_EQ(comparison.row(13).text_then, document.code_of(2)->front());
    const std::string then = std::to_string(14 + code);
    EXPECT_EQ(shown(comparison.row(13 + code)), "14;" + then);
    EXPECT_EQ(comparison.row(13 + code).text_now, "DRAW_TRI_BEGIN 0, 3");
    EXPECT_EQ(comparison.row(13 + code).text_then, "; DRAW_TRI_BEGIN 0, 3");
    EXPECT_EQ(shown(comparison.row(17 + code)), "0+" + std::to_string(18 + code))
        << "the empty line that Save adds";
    EXPECT_EQ(comparison.row_of_now(13), 12U);
    EXPECT_EQ(comparison.row_of_now(14), 13 + code);
    EXPECT_EQ(comparison.row_of_then(14), 13U);
    EXPECT_EQ(comparison.row_of_then(14 + code), 13 + code);
    EXPECT_EQ(comparison.row_of_now(9999), 16 + code) << "the last line on the disk";
    EXPECT_THROW(comparison.row(comparison.rows()), RuntimeError);
}

TEST_F(ViewsTest, TheComparisonFollowsTheDocument) {
    SourceComparison comparison = compare();
    EXPECT_EQ(comparison.rows(), 17U);
    document.process(1, Kind::Lights);
    comparison.refresh();
    EXPECT_EQ(comparison.rows(), 18 + code_size(1));
    document.undo();
    comparison.refresh();
    EXPECT_EQ(comparison.rows(), 17U);
}

TEST_F(ViewsTest, TheFrameIsComparedByItsText) {
    folder.write("set.asm", crlf({"one", "two", "three"}));
    const SourceComparison comparison = compare(SetFile::Frame);
    EXPECT_THAT(shown(comparison), ElementsAre("1~1", "2~2", "3~3"))
        << "another program has written the file since it was opened";
    folder.write("set.asm", crlf({"    SCALE_AGL a,0,100,65536,0100h,0,0200h,0,0,0", "new",
                                  "    dd  0", "    END"}));
    EXPECT_THAT(shown(compare(SetFile::Frame)), ElementsAre("1=1", "2-0", "3=2", "4=3"));
}

TEST_F(ViewsTest, AfterSaveBothSidesAreTheSame) {
    document.process(2, Kind::LibraryNew);
    ASSERT_TRUE(document.save(base).saved);
    const SourceComparison comparison = compare();
    const std::vector<std::string> rows = shown(comparison);
    EXPECT_EQ(rows.size(), 18 + code_size(2));
    EXPECT_TRUE(std::all_of(rows.begin(), rows.end(), [](const std::string& row) {
        return row.find('=') != std::string::npos;
    }));
}

TEST_F(ViewsTest, AFileThatIsGoneHasAnErrorAndTheFileToCome) {
    disk->remove(base + "_0.asm");
    const SourceComparison comparison = compare();
    EXPECT_THAT(comparison.error(), HasSubstr("set_0.asm"));
    EXPECT_EQ(comparison.rows(), 17U);
    EXPECT_EQ(shown(comparison.row(0)), "0+1");
}

TEST_F(ViewsTest, TextIsFoundOnBothSidesInBothDirections) {
    document.process(2, Kind::LibraryNew);
    const SourceComparison comparison = compare();
    EXPECT_EQ(comparison.find("material 1,0", 0), 12U) << "whatever the case";
    EXPECT_EQ(comparison.find("bgl_transform_mat", 0), 13U) << "in the code";
    EXPECT_EQ(comparison.find("draw_tri_begin", 10), 13 + code_size(2));
    EXPECT_EQ(comparison.find("draw_tri_begin", 12, true), 9U);
    EXPECT_EQ(comparison.find("draw_tri_begin", 8, true), std::nullopt);
    EXPECT_EQ(comparison.find("BGL_END", comparison.rows()), std::nullopt);
    EXPECT_EQ(comparison.find("nowhere", 0), std::nullopt);
}

TEST_F(ViewsTest, ThePlannedCodeHasTheNumbersThatProcessGivesIt) {
    document.process(1, Kind::Lights);
    const std::size_t code = code_size(1);
    const MaterialCode planned = material_code(document, 2, Kind::LibraryNew);
    EXPECT_TRUE(planned.planned);
    EXPECT_EQ(planned.refusal, "");
    ASSERT_GE(planned.lines.size(), 5U);
    EXPECT_EQ(planned.lines.front().number, 13 + code);
    EXPECT_EQ(planned.lines.front().text, "MATERIAL 1,0 ; x");
    EXPECT_EQ(planned.lines.front().fate, LineFate::Same);
    EXPECT_EQ(planned.lines[1].fate, LineFate::Added);
    EXPECT_EQ(planned.lines.back().text, "; DRAW_TRI_END");
    EXPECT_EQ(planned.lines.back().fate, LineFate::Commented);
    EXPECT_EQ(document.code_of(2), nullptr) << "nothing was done";
    document.process(2, Kind::LibraryNew);
    const MaterialCode made = material_code(document, 2, Kind::Lights);
    EXPECT_FALSE(made.planned);
    ASSERT_EQ(made.lines.size(), planned.lines.size());
    for (std::size_t i = 0; i < made.lines.size(); ++i) {
        EXPECT_EQ(made.lines[i].text, planned.lines[i].text);
        EXPECT_EQ(made.lines[i].number, planned.lines[i].number);
        EXPECT_EQ(made.lines[i].fate, planned.lines[i].fate);
    }
}

TEST_F(ViewsTest, CodeAfterTheEndOfTheModelComesAfterTheComments) {
    const MaterialCode planned = material_code(document, 1, Kind::Effects);
    EXPECT_EQ(planned.lines.front().text, "MATERIAL 0,0 ; x");
    EXPECT_EQ(planned.lines[1].text, "; DRAW_TRI_BEGIN 0, 3");
    EXPECT_EQ(planned.lines[1].number, 10U);
    EXPECT_EQ(planned.lines[4].text, "BGL_END");
    EXPECT_EQ(planned.lines[4].number, 17U);
    EXPECT_EQ(planned.lines[5].number, 18U);
    EXPECT_EQ(planned.lines[5].fate, LineFate::Added);
}

TEST_F(ViewsTest, WhatProcessRefusesIsSaidWithTheLinesThatItWouldComment) {
    document.set_default_parameters([] {
        Parameters wrong;
        wrong.library.libScale = "1e999";
        return wrong;
    }());
    const MaterialCode wrong = material_code(document, 1, Kind::LibraryNew);
    EXPECT_THAT(wrong.refusal, HasSubstr("verflow"));
    EXPECT_THAT(wrong.lines, IsEmpty());
    EXPECT_THAT(material_code(document, 0, Kind::Lights).lines, IsEmpty());
    EXPECT_THAT(material_code(document, 3, Kind::Lights).lines, IsEmpty());
}

TEST_F(ViewsTest, ProblemsFollowTheDocument) {
    EXPECT_THAT(codes(), Not(Contains("light-variable")));
    parameters.lights.LightVariable.clear();
    document.set_default_parameters(parameters);
    document.process(1, Kind::Lights);
    EXPECT_THAT(codes(), Contains("light-variable"));
    const std::vector<Problem> problems = problems_of(*disk, document, knowledge);
    EXPECT_TRUE(
        std::is_sorted(problems.begin(), problems.end(),
                       [](const Problem& a, const Problem& b) { return a.severity > b.severity; }));
    const auto found = std::find_if(problems.begin(), problems.end(), [](const Problem& problem) {
        return problem.code == "light-variable";
    });
    EXPECT_EQ(found->row, 1U);
    EXPECT_EQ(found->path, base + "_0.asm");
    EXPECT_EQ(found->line, 9U) << "where the material is selected";
    document.undo();
    EXPECT_THAT(codes(), Not(Contains("light-variable")));
}

TEST_F(ViewsTest, AfterSaveProblemsNameLinesOfTheSavedFile) {
    parameters.lights.LightVariable.clear();
    document.set_default_parameters(parameters);
    document.process(1, Kind::LibraryNew);
    document.process(2, Kind::Lights);
    const std::size_t line = 13 + code_size(1);
    ASSERT_TRUE(document.save(base).saved);
    for (const Problem& problem : problems_of(*disk, document, knowledge)) {
        if (problem.code == "light-variable") {
            EXPECT_EQ(problem.line, line);
            EXPECT_EQ(file_lines(base + "_0.asm").at(line - 1), "MATERIAL 1,0 ; x");
            return;
        }
    }
    ADD_FAILURE() << "no light-variable";
}

TEST_F(ViewsTest, EffectsAndLibrariesAreLookedUp) {
    knowledge.effects = {"fx_other"};
    knowledge.objects = {{{1, 2, 3, 4}, 1.0, "a.bgl"}};
    parameters.effects.lstEffectType = "fx_nowhere";
    parameters.library.libGUID = "000000001h, 000000002h, 000000003h, 000000005h";
    document.set_default_parameters(parameters);
    document.process(1, Kind::Effects);
    document.process(2, Kind::LibraryNew);
    EXPECT_THAT(codes(), Contains("unknown-effect"));
    EXPECT_THAT(codes(), Contains("unknown-identifier"));
}

TEST_F(ViewsTest, ACodeThatIsSwitchedOffIsKeptWithTheRecipe) {
    ASSERT_THAT(codes(), Contains("unprocessed-material"));
    document.set_allowed({"unprocessed-material"});
    EXPECT_THAT(codes(), Not(Contains("unprocessed-material")));
    document.process(1, Kind::Lights);
    const Recipe recipe = document.recipe();
    EXPECT_THAT(recipe.allow, ElementsAre("unprocessed-material"));
    EXPECT_THAT(write_recipe(recipe), ContainsRegex("allow += .\"unprocessed-material\""));
    ASSERT_TRUE(document.open(base));
    EXPECT_THAT(document.allowed(), IsEmpty());
    ASSERT_TRUE(document.apply(recipe, plan_recipe(document.set(), recipe)).ok);
    EXPECT_THAT(document.allowed(), ElementsAre("unprocessed-material"));
}

TEST_F(ViewsTest, BeforeAnySetThereIsNothingToShow) {
    Document empty({*disk, reporter}, listener);
    EXPECT_THAT(problems_of(*disk, empty, knowledge), IsEmpty());
    EXPECT_THAT(material_code(empty, 1, Kind::Lights).lines, IsEmpty());
}

// Random sets: the file to come is what is written, and the code of a material is found there at
// the numbers that it was shown with.
TEST(RandomViews, ShowTheFileThatIsWritten) {
    constexpr unsigned runs = 100;
    for (unsigned seed = 1; seed <= runs; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        TempFolder folder;
        RandomSet random(seed);
        folder.write("set_0.asm", crlf(random.model()));
        folder.write("set.asm", crlf(random.frame()));
        const std::unique_ptr<Disk> disk = make_system_disk();
        RecordingReporter reporter;
        DocumentListener listener;
        Document document({*disk, reporter}, listener);
        ASSERT_TRUE(document.open(folder.file("set")));
        std::vector<CodeLine> shown;
        for (std::size_t row = 1; row <= random.marked(); ++row) {
            const Kind kind = all_kinds.at(static_cast<std::size_t>(random.pick(0, 4)));
            const MaterialCode planned = material_code(document, row, kind);
            if (document.process(row, kind).processed) {
                const MaterialCode made = material_code(document, row, kind);
                ASSERT_EQ(made.lines.size(), planned.lines.size());
                for (std::size_t i = 0; i < made.lines.size(); ++i) {
                    ASSERT_EQ(made.lines[i].number, planned.lines[i].number) << made.lines[i].text;
                    ASSERT_EQ(made.lines[i].text, planned.lines[i].text);
                }
            }
        }
        for (std::size_t row = 1; row <= random.marked(); ++row) {
            if (document.made(row) != nullptr) {
                const MaterialCode made = material_code(document, row, Kind::Lights);
                shown.insert(shown.end(), made.lines.begin(), made.lines.end());
            }
        }
        const std::vector<std::string> coming = lines_of(ComingFile::model(document.set()));
        const bool saved = document.save(folder.file("out")).saved;
        if (saved) {
            ASSERT_EQ(coming, file_lines(folder.file("out_0.asm")));
        }
        for (const CodeLine& line : shown) {
            ASSERT_EQ(line.text, coming.at(line.number - 1)) << "line " << line.number;
        }
    }
}

} // namespace
} // namespace morvane::test
