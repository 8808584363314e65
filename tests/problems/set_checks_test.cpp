// SPDX-License-Identifier: GPL-3.0-or-later

// What a set as a whole can have wrong, and what a recipe would make of it.

#include "problems/problem_fixture.h"
#include "support/faulty_disk.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace morvane::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class SetProblems : public ProblemTest {
  protected:
    void plan(Kind kind) {
        planned = {{1, kind, parameters, folder.file("recipe.toml"), 7}};
        saved_lines = false;
    }
};

TEST_F(SetProblems, TheReferenceLine) {
    replace(frame, "SCALE_AGL", "");
    open();
    EXPECT_THAT(found(), ElementsAre("set.asm:0 reference-missing"));

    frame = clean_frame();
    insert_after(frame, "INSTANCE_CALL", {frame[3], frame[4]});
    open();
    EXPECT_THAT(found(), ElementsAre("set.asm:6 reference-twice"));

    frame = clean_frame();
    replace(frame, "SCALE_AGL",
            "    SCALE_AGL object_skip,0,0A0h,0,051EDB8h,07DD6h,0FCD9FF8Bh,07DD6h,0,0");
    open();
    EXPECT_THAT(found(), ElementsAre("set.asm:4 reference-scale"));

    replace(frame, "SCALE_AGL",
            "    SCALE_AGL object_skip,0,0A0h,65536,5369272,07DD6h,0FCD9FF8Bh,07DD6h,0,0");
    open();
    EXPECT_THAT(found(), ElementsAre("set.asm:4 reference-hexadecimal"));

    frame = aircraft_frame(); // which has none
    open();
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(SetProblems, AFrameWithoutEnd) {
    replace(frame, "END", "");
    open();
    EXPECT_THAT(found(), ElementsAre("set.asm:8 missing-end"));
}

TEST_F(SetProblems, BlocksThatCannotBeTakenAsAWhole) {
    replace(model, "DRAW_TRI ", "");
    open();
    EXPECT_THAT(found(), ElementsAre("set_0.asm:12 no-triangles"));
    EXPECT_EQ(problem("no-triangles").row, 1U);

    model = clean_model();
    insert_after(model, "DRAW_TRI ", {"    ; a comment", "    DRAW_TRI    0,   2,   1"});
    open();
    EXPECT_THAT(found(), ElementsAre("set_0.asm:14 other-lines"));
}

TEST_F(SetProblems, AMarkedMaterialThatIsDrawnNowhere) {
    insert_after(model, "MATERIAL_DEF", {model[3]});
    open();
    EXPECT_THAT(found(), ElementsAre("set_0.asm:5 not-drawn"));
    EXPECT_EQ(problem("not-drawn").row, 2U);
}

TEST_F(SetProblems, AHighlightThatIsNearlyPure) {
    insert_after(
        model, "MATERIAL_DEF",
        {"    MATERIAL_DEF 1.0,0.5,0.0,1.0, 0.0,0.0,0.0, 0.996078,0.0,0.0, 0.0,0.0,0.0, 0.0"});
    open();
    EXPECT_THAT(found(), ElementsAre("set_0.asm:5 near-highlight"));
}

TEST_F(SetProblems, WhatIsLeftToProcess) {
    open();
    found();
    EXPECT_THAT(text_of("unprocessed-material"), HasSubstr("1 marked materials are still drawn"));
    const std::string second = model[3];
    insert_after(model, "MATERIAL_DEF", {second});
    model.insert(model.end() - 2,
                 {"    MATERIAL 1,0", model[12], model[13], model[14], "    MATERIAL 1,0"});
    open();
    parameters.lights.LightVariable = "beacnt";
    ASSERT_TRUE(process(1, Kind::Lights).processed);
    found();
    EXPECT_EQ(problem("unprocessed-material").row, 2U);
    EXPECT_EQ(problem("further-places").row, 2U);
    EXPECT_THAT(text_of("further-places"),
                HasSubstr("row 2 (MATERIAL 1) is drawn in 1 more place"));
}

TEST_F(SetProblems, ASetThatWasProcessedBefore) {
    model[11] = "; " + model[11];
    model[12] = "; " + model[12];
    model[13] = "; " + model[13];
    write("set_0.asm", model);
    write("set.asm", frame);
    CheckedSet checked = open_for_check(*disk, folder.file("set"));
    EXPECT_TRUE(checked.loaded);
    EXPECT_THAT(checked.refusal, HasSubstr("Already processed"));
    set = std::move(checked.set);
    EXPECT_THAT(found(), ElementsAre("set_0.asm:0 already-rewritten"));
    EXPECT_EQ(problem("already-rewritten").severity, Severity::Note);
}

TEST_F(SetProblems, FilesThatAreMissingAreNotLoaded) {
    const CheckedSet checked = open_for_check(*disk, folder.file("none"));
    EXPECT_FALSE(checked.loaded);
    EXPECT_THAT(checked.refusal, HasSubstr("none_0.asm file not found"));
}

TEST_F(SetProblems, FilesThatCannotBeReadAreNotLoaded) {
    open();
    FaultyDisk faulty;
    for (const std::size_t file : {1U, 2U}) { // the model is read first
        faulty.fail_at(file, ErrorNumber::PermissionDenied);
        const CheckedSet checked = open_for_check(faulty, folder.file("set"));
        EXPECT_FALSE(checked.loaded);
        EXPECT_THAT(checked.refusal, HasSubstr("70 :Permission denied"));
    }
}

TEST_F(SetProblems, TablesThatAreNearlyFull) {
    open();
    for (int n = 0; n < 80; ++n) {
        set.replacements.push_back({16, {}});
    }
    EXPECT_THAT(found(), Contains("set_0.asm:0 nearly-full"));
    EXPECT_THAT(text_of("nearly-full"), HasSubstr("80 of at most 100 processed materials"));
    set.replacements.pop_back();
    EXPECT_THAT(found(), Not(Contains("set_0.asm:0 nearly-full")));
}

TEST_F(SetProblems, FilesThatChangedOnTheDisk) {
    open();
    write("set_0.asm", {"BGL_BEGIN 0800h"});
    EXPECT_THAT(found(), ElementsAre("set_0.asm:0 changed-on-disk"));
}

TEST_F(SetProblems, TheBackup) {
    open();
    found();
    EXPECT_EQ(problem("backup-missing").severity, Severity::Note);
    write("set_azm.bck", frame);
    write("set_asm.bck", model);
    found();
    EXPECT_EQ(problem("backup-missing").code, "");
    write("set_asm.bck", {"    KZM_LIBRARY_CALL 01h,02h,03h,04h"});
    EXPECT_THAT(found(), ElementsAre("set_asm.bck:0 backup-rewritten"));
}

TEST_F(SetProblems, TexturesAreLookedUpWhereThereIsAFolderForThem) {
    insert_after(model, "MATERIAL_LIST_END",
                 {"    TEXTURE_LIST_BEGIN",
                  "    TEXTURE_DEF TEXTURE_BUILDING, <255,255,255,255>, 1.0, \"A.BMP\"",
                  "    TEXTURE_DEF TEXTURE_BUILDING, <255,255,255,255>, 1.0, \"B.BMP\"",
                  "    TEXTURE_LIST_END"});
    open();
    EXPECT_THAT(found(), IsEmpty());
    folder.write("texture/a.bmp", "x");
    EXPECT_THAT(found(), ElementsAre("set_0.asm:8 texture-missing"));
}

TEST_F(SetProblems, CodeAfterAReturnIsNeverReached) {
    replace(model, "BGL_RETURN", "");
    insert_after(model, "DRAW_TRI_END", {"    BGL_RETURN"});
    open();
    parameters.effects.lstEffectType = "fx_a";
    ASSERT_TRUE(process(1, Kind::Effects).processed);
    EXPECT_THAT(found(), ElementsAre("set_0.asm:18 code-after-return"));
    EXPECT_THAT(text_of("code-after-return"), HasSubstr("set_0.asm:15 ends the way to it"));
}

TEST_F(SetProblems, OldNamesOfRenamedLabels) {
    write("set_0.asm", {"wing_leftG2 label BGLCODE", "wing_rightG2 label BGLCODE",
                        "    dd (wing_leftG2) - (wing_right)"});
    write("set.asm", frame);
    set = open_for_check(*disk, folder.file("set")).set;
    EXPECT_THAT(found(), Contains("set_0.asm:3 renamed-label-left"));
    EXPECT_THAT(text_of("renamed-label-left"), HasSubstr("wing_right is the name"));
}

TEST_F(SetProblems, NamesWithLabelInside) {
    model.insert(model.end() - 1, {"my_label_1 label BGLCODE"});
    open();
    EXPECT_THAT(found(), ElementsAre("set_0.asm:16 label-inside-name"));
}

class PlannedProblems : public SetProblems {};

TEST_F(PlannedProblems, AFlatWindsock) {
    replace(model, "DRAW_TRI ", "    DRAW_TRI    1,   0,   2"); // the second corner is the lowest
    open();
    plan(Kind::Windsock);
    EXPECT_THAT(found(), IsEmpty());
    replace(model, "VERTEX_DEF 0.0,5.0,2.0",
            "    VERTEX_DEF 0.0,0.0,2.0, 0.0,1.0,0.0, 0.0,0.0 ; 2");
    replace(model, "DRAW_TRI ", "    DRAW_TRI    0,   2,   1"); // only the third is higher
    open();
    EXPECT_THAT(found(), ElementsAre("recipe.toml:7 cannot-process", "set_0.asm:13 flat-windsock"));
    EXPECT_THAT(text_of("flat-windsock"), HasSubstr("though another is higher"));
    EXPECT_THAT(text_of("cannot-process"), HasSubstr("zero height"));
    replace(model, "VERTEX_DEF 0.0,5.0,0.0",
            "    VERTEX_DEF 4.0,0.0,0.0, 0.0,1.0,0.0, 0.0,0.0 ; 1");
    open();
    found();
    EXPECT_THAT(text_of("flat-windsock"), HasSubstr("lies flat"));
}

TEST_F(PlannedProblems, AWindsockWithoutLength) {
    replace(model, "VERTEX_DEF 0.0,5.0,2.0",
            "    VERTEX_DEF 0.0,6.0,0.0, 0.0,1.0,0.0, 0.0,0.0 ; 2");
    replace(model, "VERTEX_DEF 0.0,0.0,0.0",
            "    VERTEX_DEF 3.0,0.0,0.0, 0.0,1.0,0.0, 0.0,0.0 ; 0");
    open();
    plan(Kind::Windsock);
    EXPECT_THAT(found(), Contains("set_0.asm:13 windsock-size"));
}

// The reference latitude is 051EDB8h + 07DD6h/65536 = 5369272.4915; a point 1.2 m north of it is at
// ..273.6915, which is rounded to 274, and gets the fraction of 5369.2725 + 1.2: 0.4725.
TEST_F(PlannedProblems, APlaceThatIsOff) {
    replace(model, "VERTEX_DEF 0.0,0.0,0.0",
            "    VERTEX_DEF 0.0,0.0,1.2, 0.0,1.0,0.0, 0.0,0.0 ; 0");
    open();
    plan(Kind::Library);
    EXPECT_THAT(found(), ElementsAre("set_0.asm:13 place-off"));
    EXPECT_THAT(text_of("place-off"), HasSubstr("0.781 m too far north"));
    plan(Kind::LibraryNew);
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(PlannedProblems, AHeightThatCountsAThousandth) {
    replace(model, "DRAW_TRI ", "    DRAW_TRI    1,   0,   2");
    open();
    plan(Kind::Effects);
    EXPECT_THAT(found(), Contains("set_0.asm:13 height-thousandth"));
    EXPECT_THAT(text_of("height-thousandth"), HasSubstr("5.0 m counts as 0.005 m"));
}

TEST_F(PlannedProblems, ALibraryObjectInATurnedModel) {
    replace(frame, "INSTANCE_CALL", "    INSTANCE_CALL MASTER,0,0,04000h");
    open();
    plan(Kind::Library);
    EXPECT_THAT(found(), Contains("set_0.asm:11 library-in-turned-model"));
    plan(Kind::Effects);
    EXPECT_THAT(found(), Not(Contains("set_0.asm:11 library-in-turned-model")));
}

TEST_F(PlannedProblems, ParametersAreReportedWhereTheyAreGiven) {
    insert_after(model, "DRAW_TRI ", {"    DRAW_TRI    1,   0,   2"});
    open();
    parameters.lights.LightVariable = "beacnt";
    parameters.lights.LightAttnL = ".4";
    plan(Kind::Lights);
    EXPECT_THAT(found(), ElementsAre("recipe.toml:7 light-attenuation"));
    EXPECT_EQ(problem("light-attenuation").row, 1U);
    parameters.lights.DayFlag = true;
    parameters.lights.AircraftFlag = true;
    plan(Kind::Lights);
    EXPECT_THAT(found(), Contains("recipe.toml:7 light-flags"));
}

TEST_F(PlannedProblems, OneFaultOfManyGeneratedLinesIsOneProblem) {
    insert_after(model, "DRAW_TRI ", {"    DRAW_TRI    1,   0,   2"});
    open();
    parameters.lights.LightVariable = "beacnt";
    parameters.lights.LightAttnL = ".4";
    ASSERT_TRUE(process(1, Kind::Lights).processed);
    saved_lines = false;
    EXPECT_THAT(found(), ElementsAre("set_0.asm:12 real-number"));
    saved_lines = true;
    EXPECT_THAT(found(), ElementsAre("set_0.asm:20 real-number", "set_0.asm:21 real-number"));
}

TEST_F(PlannedProblems, EffectsThatTheListDoesNotHave) {
    open();
    parameters.effects.lstEffectType = "fx_smoke";
    plan(Kind::Effects);
    effects = {"FX_Smoke", "fx_other"};
    EXPECT_THAT(found(), Not(Contains("recipe.toml:7 unknown-effect")));
    effects = {"fx_other"};
    EXPECT_THAT(found(), Contains("recipe.toml:7 unknown-effect"));
}

TEST_F(PlannedProblems, IdentifiersOfLibrariesThatWereSearched) {
    open();
    parameters.library.libScale = "1.0";
    parameters.library.libGUID = "05ADE0809h,042E14DCFh,073AEB9A1h,009EC6060h";
    plan(Kind::LibraryNew);
    const Guid128 hangar{0x05ADE080, 0x42E14DCF, 0x73AEB9A1, 0x09EC6060};
    const Guid128 wanted{0x5ADE0809, 0x42E14DCF, 0x73AEB9A1, 0x09EC6060};
    objects = {{hangar, 1.0, "a.bgl"}};
    EXPECT_THAT(found(), ElementsAre("recipe.toml:7 unknown-identifier"));
    objects = {{wanted, 1.0, "a.bgl"}};
    EXPECT_THAT(found(), IsEmpty());
    objects.push_back({wanted, 1.0, "b.bgl"});
    EXPECT_THAT(found(), ElementsAre("recipe.toml:7 identifier-twice"));
    objects = {{wanted, 2.0, "a.bgl"}};
    EXPECT_THAT(found(), ElementsAre("recipe.toml:7 scale-differs"));
    EXPECT_THAT(text_of("scale-differs"), HasSubstr("designed at 2"));
}

} // namespace
} // namespace morvane::test
