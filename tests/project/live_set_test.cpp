// SPDX-License-Identifier: GPL-3.0-or-later
#include "exporter.h"
#include "project/live_set.h"
#include "project_fixture.h"
#include "recipe/apply_recipe.h"

#include <filesystem>

namespace morvane::test {
namespace {

using std::chrono::milliseconds;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;

// A document on exports/a, followed by the clock of its exporter.
class Live : public ProjectTest {
  protected:
    void SetUp() override {
        write_sets({"a"});
        ASSERT_TRUE(document.open(base));
        live.options.watch = true;
        live.follow(exporter.now());
    }

    void process(std::size_t row, Kind kind = Kind::Lights) {
        ASSERT_TRUE(document.process(row, kind).processed);
    }

    /// Looks ten times a second until all that is planned is over; news but "nothing".
    std::vector<LiveNews> watch() {
        std::vector<LiveNews> news;
        while (!exporter.is_over()) {
            exporter.pass(milliseconds(100));
            const LiveNews found = live.look(exporter.now(), base);
            if (found != LiveNews::Nothing) {
                news.push_back(found);
                numbers.push_back(shown_export());
            }
        }
        return news;
    }

    /// The number that both files of the document tell; 0 when they tell different ones.
    std::size_t shown_export() const {
        std::size_t triangles = 0;
        for (std::size_t i = 1; i <= document.set().model.count(); ++i) {
            triangles += document.set().model.line(i).find("DRAW_TRI ") != std::string::npos;
        }
        const std::string first(document.set().frame.line(1));
        return first == "; export " + std::to_string(triangles) ? triangles : 0;
    }

    std::vector<std::string> codes() const {
        std::vector<std::string> found;
        for (const Note& note : document.notes()) {
            if (!note.code.empty()) {
                found.push_back(note.code);
            }
        }
        return found;
    }

    // An export of two materials, red and blue; or of others.
    static std::string two_materials(const std::string& first = "1.0,0.0,0.0",
                                     const std::string& second = "0.0,0.0,1.0") {
        std::string text = model_text(1);
        const auto replace = [&](const std::string& from, const std::string& to) {
            text.replace(text.find(from), from.size(), to);
        };
        replace("1.0,0.0,0.0", first);
        replace("MATERIAL_LIST_END", "    MATERIAL_DEF 0.2,0.2,0.2,1.0,  0.5,0.5,0.5,  " + second +
                                         ",  0.0,0.0,0.0,  0.0 ; n\r\nMATERIAL_LIST_END");
        replace("    BGL_RETURN", "    MATERIAL 1,0 ; y\r\n    DRAW_TRI_BEGIN 0, 3\r\n"
                                  "    DRAW_TRI    0,   1,   2 ; poly=0 part=0\r\n"
                                  "    DRAW_TRI_END\r\n    BGL_RETURN");
        return text;
    }

    void plan_model(milliseconds time, const std::string& text) {
        exporter.at(time, [this, text] { write_file(exporter.model_file(), text); });
    }

    std::string base = folder.file("exports/a");
    DocumentListener listener;
    Document document{services, listener};
    LiveSet live{document, services};
    Exporter exporter{base};
    std::vector<std::size_t> numbers;
};

TEST_F(Live, NothingIsReadUnlessItIsWanted) {
    live.options.watch = false;
    exporter.plan_exports(2);
    EXPECT_THAT(watch(), IsEmpty());
    EXPECT_EQ(document.set().frame.line(1), "object label BGLCODE");
}

TEST_F(Live, ReadsEachExportOnceInEveryManner) {
    exporter.plan_exports(8);
    EXPECT_EQ(watch(), std::vector<LiveNews>(8, LiveNews::Reloaded));
    EXPECT_THAT(numbers, ElementsAre(2U, 3U, 4U, 5U, 6U, 7U, 8U, 9U));
    EXPECT_THAT(reporter.boxes, IsEmpty());
}

TEST_F(Live, ManyExportsAreReadOnceEach) {
    exporter.plan_exports(many_exports);
    EXPECT_EQ(watch(), std::vector<LiveNews>(many_exports, LiveNews::Reloaded));
    std::vector<std::size_t> expected;
    for (std::size_t i = 2; i <= many_exports + 1; ++i) {
        expected.push_back(i);
    }
    EXPECT_EQ(numbers, expected);
}

TEST_F(Live, TheSameExportAgainIsNoNews) {
    exporter.at(milliseconds(2000), [this] { write_export("a"); });
    EXPECT_THAT(watch(), IsEmpty());
}

TEST_F(Live, WorkThatIsNotSavedIsAskedAboutAndAppliedByItsColors) {
    process(1);
    exporter.plan_exports(1);
    EXPECT_THAT(watch(), ElementsAre(LiveNews::Asks));
    EXPECT_TRUE(live.asks());
    EXPECT_TRUE(document.has_unsaved_work());
    EXPECT_EQ(live.apply(base), LiveNews::Reloaded);
    EXPECT_FALSE(live.asks());
    EXPECT_EQ(shown_export(), 2U);
    EXPECT_EQ(document.set().unprocessed(), 0U);
    EXPECT_EQ(document.done().size(), 1U);
    EXPECT_EQ(document.set().translation(1).processed, "Lights");
    EXPECT_THAT(reporter.boxes, IsEmpty());
}

TEST_F(Live, WhatWasOnlyAppliedAgainIsNotAskedAboutTheNextTime) {
    process(1);
    exporter.plan_exports(1);
    watch();
    live.apply(base);
    exporter.plan_exports(3, 3);
    EXPECT_THAT(watch(), ElementsAre(LiveNews::Reloaded, LiveNews::Reloaded, LiveNews::Reloaded));
    EXPECT_EQ(document.set().translation(1).processed, "Lights");
    document.undo();
    exporter.at(milliseconds(2000), [this] { write_export("a", 9); });
    EXPECT_THAT(watch(), ElementsAre(LiveNews::Asks));
}

TEST_F(Live, KeptWorkStaysUntilTheNextExport) {
    process(1);
    exporter.plan_exports(1);
    watch();
    live.keep();
    EXPECT_FALSE(live.asks());
    EXPECT_EQ(document.set().frame.line(1), "object label BGLCODE");
    EXPECT_EQ(document.set().translation(1).processed, "Lights");
    exporter.at(milliseconds(2000), [this] { write_export("a", 9); });
    EXPECT_THAT(watch(), ElementsAre(LiveNews::Asks));
}

TEST_F(Live, ParametersStay) {
    Parameters parameters;
    parameters.lights.LightInt = "77";
    document.set_parameters(parameters);
    exporter.plan_exports(1);
    EXPECT_THAT(watch(), ElementsAre(LiveNews::Reloaded)); // they alone are no work
    EXPECT_EQ(document.parameters().lights.LightInt, "77");
}

TEST_F(Live, AMaterialGetsTheParametersThatItHad) {
    Parameters parameters;
    parameters.lights.LightInt = "77";
    document.set_default_parameters(parameters);
    process(1);
    document.set_default_parameters({});
    exporter.plan_exports(1);
    watch();
    live.apply(base);
    ASSERT_EQ(document.made_materials().size(), 1U);
    EXPECT_EQ(document.made_materials()[0].parameters.lights.LightInt, "77");
}

TEST_F(Live, AnIncompleteExportLeavesTheDocumentAndSaysWhy) {
    const std::string model = Exporter::model(2);
    plan_model(milliseconds(2000), model.substr(0, model.find("BGL_END")));
    EXPECT_THAT(watch(), ElementsAre(LiveNews::Stale));
    EXPECT_THAT(live.stale_reason(), HasSubstr("a_0.asm: the export is incomplete"));
    EXPECT_TRUE(document.set().opened);
    EXPECT_EQ(document.set().frame.line(1), "object label BGLCODE");
    exporter.export_in(2, milliseconds(2000), 3);
    EXPECT_THAT(watch(), ElementsAre(LiveNews::Reloaded));
    EXPECT_EQ(live.stale_reason(), "");
    EXPECT_EQ(shown_export(), 3U);
}

TEST_F(Live, AnExportWithoutAMarkedMaterialIsNotTaken) {
    std::string model = model_text(1);
    model.replace(model.find("1.0,0.0,0.0"), 11, "0.5,0.0,0.0");
    plan_model(milliseconds(2000), model);
    EXPECT_THAT(watch(), ElementsAre(LiveNews::Stale));
    EXPECT_THAT(live.stale_reason(), HasSubstr("This file cannot be used."));
    EXPECT_EQ(document.set().translations.size(), 1U);
    EXPECT_THAT(reporter.boxes, IsEmpty());
    exporter.at(milliseconds(2000), [this] { write_export("a"); });
    EXPECT_THAT(watch(), ElementsAre(LiveNews::Same));
    EXPECT_EQ(live.stale_reason(), "");
}

TEST_F(Live, MaterialsThatAreGoneOrNewAreProblemsAndTheirAssignmentsAreKept) {
    process(1);
    plan_model(milliseconds(2000), two_materials("0.0,1.0,0.0")); // red is gone; green and blue
    watch();
    EXPECT_EQ(live.apply(base), LiveNews::Reloaded);
    EXPECT_THAT(document.notes(),
                Contains(Field(&Note::text, HasSubstr("(marked Red, colour 7F7F7F) is gone; it had "
                                                      "become Lights"))));
    EXPECT_THAT(codes(), IsSupersetOf({"material-gone", "material-new", "material-new"}));
    EXPECT_EQ(document.set().unprocessed(), 2U);
    plan_model(milliseconds(2000), two_materials());
    EXPECT_THAT(watch(), ElementsAre(LiveNews::Reloaded));
    EXPECT_EQ(document.set().translation(1).processed, "Lights");
    EXPECT_EQ(document.set().translation(2).processed, "");
}

TEST_F(Live, RowsFollowTheirColors) {
    write_file(exporter.model_file(), two_materials());
    ASSERT_TRUE(document.open(base));
    live.follow(exporter.now());
    plan_model(milliseconds(2000), two_materials("0.0,0.0,1.0", "1.0,0.0,0.0"));
    EXPECT_THAT(watch(), ElementsAre(LiveNews::Reloaded));
    // The own colours are exchanged against the highlights: both are other materials now.
    EXPECT_THAT(live.rows(), ElementsAre(0U, 0U));
    plan_model(milliseconds(2000), two_materials("0.0,0.0,1.0", "1.0,1.0,0.0"));
    EXPECT_THAT(watch(), ElementsAre(LiveNews::Reloaded));
    EXPECT_THAT(live.rows(), ElementsAre(1U, 0U));
}

TEST_F(Live, WhatIsSavedHereIsNoExport) {
    process(1);
    EXPECT_TRUE(document.save(base).saved);
    live.follow(exporter.now());
    exporter.at(milliseconds(1000), [] {});
    EXPECT_THAT(watch(), IsEmpty());
    EXPECT_TRUE(document.set().saved);
    exporter.at(milliseconds(2000), [this] { write_export("a", 3); });
    EXPECT_THAT(watch(), ElementsAre(LiveNews::Reloaded)); // nothing unsaved: no question
    EXPECT_EQ(document.set().translation(1).processed, "Lights");
    EXPECT_FALSE(document.set().saved);
}

TEST_F(Live, AnExportIsAppliedSavedAndBackedUpWhereThatIsWanted) {
    process(1);
    EXPECT_TRUE(document.save(base).saved);
    live.follow(exporter.now());
    reporter.boxes.clear();
    live.options.apply_and_save = true;
    exporter.plan_exports(4);
    EXPECT_EQ(watch(), std::vector<LiveNews>(4, LiveNews::Reloaded));
    EXPECT_TRUE(live.was_saved());
    EXPECT_THAT(reporter.boxes, IsEmpty());
    // A backup has an empty line more, as every file that is written line by line.
    EXPECT_EQ(folder.read("exports/a_asm.bck"), Exporter::model(5) + "\r\n");
    EXPECT_EQ(folder.read("exports/a_azm.bck"), exporter.frame(5) + "\r\n");
    EXPECT_THAT(folder.read("exports/a_0.asm"), HasSubstr("BGL_LIGHT"));
}

TEST_F(Live, WhatIsToBeSavedElsewhereDoesNotReplaceAnotherSet) {
    process(1);
    live.options.apply_and_save = true;
    write_export("b");
    exporter.plan_exports(1);
    std::vector<LiveNews> news;
    while (!exporter.is_over()) {
        exporter.pass(milliseconds(100));
        news.push_back(live.look(exporter.now(), folder.file("exports/b")));
    }
    EXPECT_THAT(news, Contains(LiveNews::Reloaded));
    EXPECT_FALSE(live.was_saved());
    EXPECT_EQ(folder.read("exports/b_0.asm"), model_text());
    EXPECT_THAT(document.notes(),
                Contains(Field(&Note::text, HasSubstr("so this export was not saved"))));
}

TEST_F(Live, MacrosOfARecipeAreIncludedAgain) {
    folder.write("recipes/red.toml",
                 "macros = \"morvane.inc\"\n" + folder.read("recipes/red.toml"));
    const RecipeReading reading = read_recipe(*disk, folder.file("recipes/red.toml"), "fx");
    ASSERT_TRUE(reading.recipe);
    document.apply(*reading.recipe, plan_recipe(document.set(), *reading.recipe));
    live.options.apply_and_save = true;
    exporter.plan_exports(2);
    watch();
    EXPECT_THAT(folder.read("exports/a.asm"), HasSubstr("    include morvane.inc\r\n"));
    EXPECT_THAT(folder.read("exports/a.asm"), HasSubstr("; export 3\r\n"));
}

TEST_F(Live, ABackupOfAnExportIsNotReplacedByARewrittenSet) {
    folder.write("exports/a_asm.bck", model_text());
    folder.write("exports/a_azm.bck", frame_text("a"));
    process(1);
    EXPECT_TRUE(document.save(base).saved);
    EXPECT_TRUE(back_up_before_saving(services, base));
    EXPECT_EQ(folder.read("exports/a_asm.bck"), model_text());
}

} // namespace
} // namespace morvane::test
