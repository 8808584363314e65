// SPDX-License-Identifier: GPL-3.0-or-later
#include "aircraft/assemble_aircraft.h"
#include "support/faulty_disk.h"
#include "support/recording_reporter.h"
#include "support/source_folder.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>

namespace morvane::test {
namespace {

namespace fs = std::filesystem;
using Box = RecordingReporter::Box;
using Boxes = std::vector<Box>;
using Lines = std::vector<std::string>;

const Box processed_box{"This appears to be an already processed set.\n"
                        "Please use restore, or recreate the set from gmax.",
                        Icon::Critical};

/// Five small exports of an aircraft, in a folder of their own. The frames have one line for each
/// rule, so that whole files can be compared.
class Assemble : public testing::Test {
  protected:
    Assemble() {
        const Lines frame{"; NAME",
                          "    SHADOW_VPOSITION    AIRCRAFT_PARAMS.llapbh.lla",
                          "    second",
                          "    SHADOW_VICALL model_shadow,x",
                          "  VINSTANCE_CALL model_outside,AIRCRAFT_PARAMS.llapbh.pbh",
                          "LOD_0L label BGLCODE",
                          "    include c:\\x_0.asm",
                          "    db  \"MakeBGL - 1 \",0"};
        for (const std::string name : {"complete", "fuselage"}) {
            Lines lines = frame;
            lines[0] = "; " + name;
            folder.write(name + ".asm", crlf(lines));
            folder.write(name + "_0.asm", crlf({name + "_x label BGLCODE"}));
        }
        for (const std::string name : {"high", "low", "shadow"}) {
            folder.write(name + "_0.asm", crlf({"part label BGLCODE", "    CALL part"}));
        }
        for (std::size_t i = 0; i < names.size(); ++i) {
            job.bases[i] = folder.file(names[i]);
        }
        job.program_folder = home.path();
    }

    std::optional<std::string> run() { return assemble_aircraft(services, job); }
    std::string complete() { return folder.read("complete.asm"); }
    std::string path(const std::string& name) { return folder.file(name); }

    std::map<std::string, std::string> all_files() {
        std::map<std::string, std::string> files;
        for (const std::string& name : folder.names()) {
            files[name] = folder.read(name);
        }
        return files;
    }
    void expect_suffixed(const std::string& name, const std::string& suffix) {
        EXPECT_EQ(folder.read(name),
                  crlf({"part" + suffix + " label BGLCODE", "    CALL part" + suffix, ""}));
    }
    void expect_untouched(const std::string& name) {
        EXPECT_EQ(folder.read(name), crlf({"part label BGLCODE", "    CALL part"}));
    }
    bool noted(const std::string& text) {
        return std::find(reporter.messages.begin(), reporter.messages.end(), "Note: " + text) !=
               reporter.messages.end();
    }

    const Lines names{"complete", "fuselage", "high", "low", "shadow"};
    TempFolder folder;
    TempFolder home;
    FaultyDisk disk;
    RecordingReporter reporter;
    Services services{disk, reporter};
    AircraftJob job;
};

TEST_F(Assemble, NothingToDo) {
    const auto before = all_files();
    EXPECT_EQ(run(), std::nullopt);
    EXPECT_EQ(reporter.boxes, (Boxes{{"Nothing to do !", Icon::Exclamation}}));
    EXPECT_EQ(all_files(), before);
    EXPECT_TRUE(home.names().empty());
}

TEST_F(Assemble, BothCombinesFuselageWingsAndShadow) {
    job.flexing_wings = true;
    job.shadow_optimization = true;
    EXPECT_EQ(run(), path("complete.asm"));
    // Four empty lines: the scratch file was written twice on the way, the output twice.
    EXPECT_EQ(complete(), crlf({";morvane - ",
                                "include model.inc",
                                "; fuselage",
                                "    SHADOW_VPOSITION    AIRCRAFT_PARAMS.llapbh.lla",
                                "    second",
                                "    SHADOW_VICALL32  model_shadow,x",
                                "    VINSTANCE_CALL32  model_outside,AIRCRAFT_PARAMS.llapbh.pbh",
                                "    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL",
                                "    IFMSK SKIP_GROUND, ground, -1",
                                "    VINSTANCE_CALL32 model_wingsl, AIRCRAFT_PARAMS.llapbh.pbh",
                                "    BGL_RETURN",
                                "SKIP_GROUND label BGLCODE",
                                "    VINSTANCE_CALL32 model_wingsh, AIRCRAFT_PARAMS.llapbh.pbh",
                                "LOD_0L label BGLCODE",
                                "    include c:\\x_0.asm",
                                "model_wingsl label BGLCODE",
                                "    include    " + path("low_0.asm"),
                                "model_wingsh label BGLCODE",
                                "    include    " + path("high_0.asm"),
                                "; model_shadow label BGLCODE",
                                "    include  " + path("shadow_0.asm"),
                                "    db  \"MakeBGL - morvane \",0",
                                "",
                                "",
                                "",
                                ""}));
    expect_suffixed("high_0.asm", "G2");
    expect_suffixed("low_0.asm", "G3");
    expect_suffixed("shadow_0.asm", "G4");
    EXPECT_EQ(reporter.boxes,
              (Boxes{{"The modification seems to be successful. Output file is " +
                          path("complete.asm") + "\n\nComplile with 'bglc /mdl complete.asm'",
                      Icon::Information}}));
    EXPECT_TRUE(reporter.messages.empty());
    EXPECT_EQ(home.names(), Lines{"temp.masm"});
    EXPECT_EQ(folder.read("complete_0.asm"), "complete_x label BGLCODE\r\n");
    EXPECT_EQ(folder.read("fuselage_0.asm"), "fuselage_x label BGLCODE\r\n");
}

TEST_F(Assemble, BothCommentsOutTheExportsOwnShadowLabelWhenThatComesFirst) {
    job.flexing_wings = true;
    job.shadow_optimization = true;
    folder.write("fuselage.asm", crlf({"x", "  model_shadow   label BGLCODE",
                                       "LOD_0L label BGLCODE", "include y"}));
    ASSERT_NE(run(), std::nullopt);
    const std::string result = complete();
    EXPECT_NE(result.find("\r\n;   model_shadow   label BGLCODE\r\n"), std::string::npos);
    EXPECT_NE(result.find("\r\nmodel_shadow label BGLCODE\r\n    include  "), std::string::npos);
}

TEST_F(Assemble, ShadowOnlyUsesTheCompleteModel) {
    job.shadow_optimization = true;
    job.bases[Fuselage] = job.bases[WingsHigh] = job.bases[WingsLow] = "";
    folder.write("complete.asm", crlf({"; complete", "model_shadow label BGLCODE", "include x",
                                       "model_shadow label BGLCODE"}));
    EXPECT_EQ(run(), path("complete.asm"));
    EXPECT_EQ(complete(), crlf({";morvane - ", "include model.inc", "; complete",
                                "; model_shadow label BGLCODE", "include x",
                                "model_shadow label BGLCODE", "", ""}));
    expect_suffixed("shadow_0.asm", "G4");
    EXPECT_TRUE(home.names().empty());
}

TEST_F(Assemble, ShadowOnlyWithoutAShadowLabelCommentsNothingOut) {
    job.shadow_optimization = true;
    folder.write("complete.asm", crlf({"; complete", "x"}));
    ASSERT_NE(run(), std::nullopt);
    EXPECT_EQ(complete(), crlf({";morvane - ", "include model.inc", "; complete", "x", "", ""}));
}

TEST_F(Assemble, WingsOnlyLetsTheLowWingsCastAShadow) {
    job.flexing_wings = true;
    job.bases[Shadow] = "";
    EXPECT_EQ(run(), path("complete.asm"));
    EXPECT_EQ(complete(), crlf({";morvane - ",
                                "include model.inc",
                                "; fuselage",
                                "    SHADOW_VPOSITION    AIRCRAFT_PARAMS.llapbh.lla",
                                "    second",
                                "    SHADOW_VICALL32  model_shadow,x",
                                "    SHADOW_VPOSITION    AIRCRAFT_PARAMS.llapbh.lla",
                                "    second",
                                "    SHADOW_VICALL32 model_wingsl,AIRCRAFT_PARAMS.llapbh.pbh",
                                "    VINSTANCE_CALL32  model_outside,AIRCRAFT_PARAMS.llapbh.pbh",
                                "    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL",
                                "    IFMSK SKIP_GROUND, ground, -1",
                                "    VINSTANCE_CALL32 model_wingsl, AIRCRAFT_PARAMS.llapbh.pbh",
                                "    BGL_RETURN",
                                "SKIP_GROUND label BGLCODE",
                                "    VINSTANCE_CALL32 model_wingsh, AIRCRAFT_PARAMS.llapbh.pbh",
                                "LOD_0L label BGLCODE",
                                "    include c:\\x_0.asm",
                                "model_wingsl label BGLCODE",
                                "    include    " + path("low_0.asm"),
                                "model_wingsh label BGLCODE",
                                "    include    " + path("high_0.asm"),
                                "model_shadow label BGLCODE",
                                "    include  _0.asm",
                                "    db  \"MakeBGL - morvane \",0",
                                "",
                                "",
                                "",
                                "",
                                ""}));
    expect_untouched("shadow_0.asm");
    EXPECT_TRUE(noted("no shadow model is given; the aircraft will include \"_0.asm\" for it."));
}

TEST_F(Assemble, WingsOnlyWithoutAShadowPositionAddsNoShadowCall) {
    job.flexing_wings = true;
    folder.write("fuselage.asm", crlf({"x", "LOD_0L label BGLCODE", "include y"}));
    ASSERT_NE(run(), std::nullopt);
    EXPECT_EQ(complete().find("SHADOW_VICALL32"), std::string::npos);
}

TEST_F(Assemble, WithoutTheOutsideCallTheWingLinesStandAtTheTop) {
    job.flexing_wings = true;
    folder.write("fuselage.asm", crlf({"first", "LOD_0L label BGLCODE", "include y"}));
    ASSERT_NE(run(), std::nullopt);
    EXPECT_TRUE(complete().starts_with(
        crlf({";morvane - ", "include model.inc", "    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL",
              "    IFMSK SKIP_GROUND, ground, -1",
              "    VINSTANCE_CALL32 model_wingsl, AIRCRAFT_PARAMS.llapbh.pbh", "    BGL_RETURN",
              "SKIP_GROUND label BGLCODE",
              "    VINSTANCE_CALL32 model_wingsh, AIRCRAFT_PARAMS.llapbh.pbh", "first"})));
}

TEST_F(Assemble, TheFuselageInheritsTheDictionary) {
    job.flexing_wings = true;
    folder.write("complete.asm",
                 crlf({"param_extension_dictionary   label dword", "    dd (size)", "; no", "",
                       "    dict_g_lightStates equ 152",
                       "    dd 2,152,4, 057F0E99Dh, 04E9C0523h, 0BB12B6BCh, 0063FE72Fh",
                       "param_extension_dictionary_end  label dword"}));
    folder.write("fuselage.asm", crlf({"first", "    dd  0", "LOD_0L label BGLCODE", "include y"}));
    job.trace_folder = home.path();
    ASSERT_NE(run(), std::nullopt);
    EXPECT_NE(
        complete().find(
            crlf({"first", "dd  param_extension_dictionary - visual_model_header", "    dd   156",
                  "    db  'F','S','8','0'", "    dd  2048", "visual_model_header_end  label dword",
                  "  ", "    db  'D','I','C','T'", "param_extension_dictionary     label dword",
                  "    dd (param_extension_dictionary_end) - (param_extension_dictionary) - 4",
                  "    dict_g_lightStates equ 152",
                  "    dd 2,152,4, 057F0E99Dh, 04E9C0523h, 0BB12B6BCh, 0063FE72Fh",
                  "param_extension_dictionary_end     label dword", "LOD_0L label BGLCODE"})),
        std::string::npos);
    EXPECT_EQ(home.names(), (Lines{"new_azm.txt", "temp.masm"}));
}

TEST_F(Assemble, AProcessedSetIsRefusedEvenWithBlanksBeforeTheMarker) {
    for (const std::string name : {"fuselage.asm", "complete.asm"}) {
        const std::string kept = folder.read(name);
        folder.write(name, "   ;morvane - \r\nx\r\n");
        const auto before = all_files();
        job.flexing_wings = true;
        reporter.boxes.clear();
        EXPECT_EQ(run(), std::nullopt);
        EXPECT_EQ(reporter.boxes, Boxes{processed_box});
        EXPECT_EQ(all_files(), before);
        EXPECT_TRUE(home.names().empty());
        folder.write(name, kept);
    }
}

TEST_F(Assemble, TheMarkerTestMindsLetterCase) {
    folder.write("complete.asm", ";Morvane\r\n");
    job.shadow_optimization = true;
    EXPECT_NE(run(), std::nullopt);
}

TEST_F(Assemble, ASecondRunIsRefused) {
    job.flexing_wings = job.shadow_optimization = true;
    ASSERT_NE(run(), std::nullopt);
    const auto before = all_files();
    reporter.boxes.clear();
    EXPECT_EQ(run(), std::nullopt);
    EXPECT_EQ(reporter.boxes, Boxes{processed_box});
    EXPECT_EQ(all_files(), before);
}

TEST_F(Assemble, ABannerOnLineOneTakesTheMarkersPlace) {
    job.shadow_optimization = true;
    folder.write("complete.asm", crlf({"db \"MakeBGL - 1 \",0", "x"}));
    ASSERT_NE(run(), std::nullopt);
    EXPECT_EQ(complete(), crlf({"    db  \"MakeBGL - morvane \",0", "x", "", ""}));
}

TEST_F(Assemble, AMissingMainSetStopsAfterTheLoadersMessages) {
    job.flexing_wings = true;
    fs::remove(path("fuselage.asm"));
    fs::remove(path("fuselage_0.asm"));
    const auto before = all_files();
    EXPECT_EQ(run(), std::nullopt);
    EXPECT_EQ(
        reporter.boxes,
        (Boxes{{"Error ! File does not exist: (" + path("fuselage_0.asm") + ").", Icon::Critical},
               {"Error ! File does not exist: (" + path("fuselage.asm") + ").", Icon::Critical}}));
    EXPECT_EQ(all_files(), before);
}

TEST_F(Assemble, AMissingModelFileOfTheMainSetIsToldAndTheRunGoesOn) {
    job.flexing_wings = true;
    fs::remove(path("fuselage_0.asm"));
    EXPECT_NE(run(), std::nullopt);
    ASSERT_EQ(reporter.boxes.size(), 2U);
    EXPECT_EQ(
        reporter.boxes[0],
        (Box{"Error ! File does not exist: (" + path("fuselage_0.asm") + ").", Icon::Critical}));
}

TEST_F(Assemble, AMissingFrameFileEndsTheRunWithNothingChanged) {
    job.flexing_wings = job.shadow_optimization = true;
    for (const std::string name : {"fuselage.asm", "complete.asm"}) {
        const std::string kept = folder.read(name);
        fs::remove(path(name));
        const auto before = all_files();
        reporter.boxes.clear();
        EXPECT_EQ(run(), std::nullopt);
        EXPECT_EQ(reporter.boxes,
                  (Boxes{{"Error ! File does not exist: (" + path(name) + ").", Icon::Critical},
                         {"Run-time error '9': Subscript out of range", Icon::None}}));
        EXPECT_EQ(all_files(), before);
        folder.write(name, kept);
    }
    EXPECT_TRUE(home.names().empty());
}

TEST_F(Assemble, AMissingHighWingStopsBeforeAnyInputIsChanged) {
    job.flexing_wings = true;
    fs::remove(path("high_0.asm"));
    const auto before = all_files();
    EXPECT_EQ(run(), std::nullopt);
    EXPECT_EQ(reporter.boxes,
              (Boxes{{"Error ! File does not exist: (" + path("high_0.asm") + ").", Icon::Critical},
                     {"Error ! File " + path("high") + " could not be opened.", Icon::None}}));
    EXPECT_TRUE(noted(path("high_0.asm") + " is missing; the run will stop there."));
    EXPECT_EQ(all_files(), before);
    EXPECT_EQ(home.read("temp.masm"), folder.read("fuselage.asm") + "\r\n");
}

TEST_F(Assemble, AMissingLowWingLeavesTheHighWingSuffixed) {
    job.flexing_wings = true;
    fs::remove(path("low_0.asm"));
    const std::string before = complete();
    EXPECT_EQ(run(), std::nullopt);
    EXPECT_EQ(reporter.boxes,
              (Boxes{{"Error ! File does not exist: (" + path("low_0.asm") + ").", Icon::Critical},
                     {"Error ! File " + path("low") + " could not be opened.", Icon::None}}));
    EXPECT_EQ(reporter.messages,
              (Lines{"Note: " + path("low_0.asm") + " is missing; the run will stop there.",
                     "Note: " + path("high_0.asm") + " was changed by this run."}));
    expect_suffixed("high_0.asm", "G2");
    expect_untouched("shadow_0.asm");
    EXPECT_EQ(complete(), before);
    EXPECT_EQ(home.read("temp.masm"), folder.read("fuselage.asm") + "\r\n");
}

TEST_F(Assemble, NoIncludeBehindTheLodLabelStopsWithBothWingsSuffixed) {
    job.flexing_wings = job.shadow_optimization = true;
    folder.write("fuselage.asm", crlf({"include before", "LOD_0L    label    BGLCODE", "x"}));
    const std::string before = complete();
    EXPECT_EQ(run(), std::nullopt);
    EXPECT_EQ(reporter.boxes, (Boxes{{"Error ! Code appears not usable; trying to include files.",
                                      Icon::Critical}}));
    EXPECT_TRUE(noted(path("fuselage.asm") + " has no include line; the run will stop there."));
    expect_suffixed("high_0.asm", "G2");
    expect_suffixed("low_0.asm", "G3");
    expect_untouched("shadow_0.asm");
    EXPECT_EQ(complete(), before);
}

TEST_F(Assemble, AMissingShadowModelStopsAfterTheWingSteps) {
    job.flexing_wings = job.shadow_optimization = true;
    fs::remove(path("shadow_0.asm"));
    const std::string before = complete();
    EXPECT_EQ(run(), std::nullopt);
    EXPECT_EQ(
        reporter.boxes,
        (Boxes{{"Error ! File does not exist: (" + path("shadow_0.asm") + ").", Icon::Critical},
               {"Error ! File " + path("shadow") + "_0.asm could not be opened.", Icon::None}}));
    expect_suffixed("high_0.asm", "G2");
    expect_suffixed("low_0.asm", "G3");
    EXPECT_EQ(complete(), before);
    EXPECT_NE(home.read("temp.masm").find("model_wingsl label BGLCODE\r\n"), std::string::npos);
}

TEST_F(Assemble, AnUnusableShadowModelIsToldBeforehand) {
    job.shadow_optimization = true;
    std::string many;
    for (int i = 0; i < 2001; ++i) {
        many += "n" + std::to_string(i) + " label x\r\n";
    }
    folder.write("shadow_0.asm", many);
    const auto before = all_files();
    EXPECT_EQ(run(), std::nullopt);
    EXPECT_EQ(reporter.messages[0], "Note: " + path("shadow_0.asm") +
                                        " cannot be used (Subscript out of range); the run will "
                                        "stop there.");
    EXPECT_EQ(reporter.boxes, (Boxes{{"Run-time error '9': Subscript out of range", Icon::None}}));
    EXPECT_EQ(all_files(), before);
}

TEST_F(Assemble, OneModelGivenForTwoPartsIsToldBeforehand) {
    job.flexing_wings = true;
    job.bases[WingsLow] = job.bases[WingsHigh];
    EXPECT_NE(run(), std::nullopt);
    EXPECT_TRUE(noted(path("high") + " is given for two parts; its labels will be renamed twice."));
}

TEST_F(Assemble, AFolderThatIsGoneIsToldBeforehand) {
    job.flexing_wings = true;
    job.program_folder = home.file("gone");
    const auto before = all_files();
    EXPECT_EQ(run(), std::nullopt);
    EXPECT_TRUE(noted("the folder " + home.file("gone") +
                      " cannot be written to; the run will stop there."));
    EXPECT_EQ(reporter.boxes, (Boxes{{"Run-time error '76': Path not found", Icon::None}}));
    EXPECT_EQ(all_files(), before);
}

TEST_F(Assemble, AFaultAtAnyCallLeavesEveryFileWholeAndNamesWhatChanged) {
    job.flexing_wings = job.shadow_optimization = true;
    const auto before = all_files();
    for (std::size_t n = 1; n < 400; ++n) {
        for (const auto& [name, bytes] : before) {
            folder.write(name, bytes);
        }
        reporter.messages.clear();
        disk.fail_at(n, ErrorNumber::DiskFull);
        const bool done = run().has_value();
        const auto after = all_files();
        ASSERT_EQ(after.size(), before.size()) << n;
        for (const auto& [name, bytes] : after) {
            const bool changed = bytes != before.at(name);
            EXPECT_TRUE(done || noted(path(name) + " was changed by this run.") == changed)
                << n << name;
        }
        if (disk.calls() < n) {
            EXPECT_TRUE(done);
            return;
        }
    }
    FAIL() << "too many calls";
}

TEST(AircraftExample, IsAssembledLineByLineAsWrittenByHand) {
    const fs::path example = fs::path(source_folder()) / "examples" / "aircraft-flex";
    const TempFolder copy;
    fs::copy(example, copy.path());
    const fs::path here = fs::current_path();
    fs::current_path(copy.path());
    const auto disk = make_system_disk();
    RecordingReporter reporter;
    AircraftJob job{
        {"complete", "fuselage", "wings_high", "wings_low", "shadow"}, true, true, copy.path(), {}};
    const auto output = assemble_aircraft({*disk, reporter}, job);
    fs::current_path(here);
    EXPECT_EQ(output, "complete.asm");
    EXPECT_TRUE(reporter.messages.empty());
    for (const auto& entry : fs::directory_iterator(example)) {
        if (!entry.is_regular_file()) {
            continue;
        }
        const std::string name = entry.path().filename().string();
        const fs::path expected = example / "expected" / name;
        EXPECT_EQ(copy.read(name),
                  read_file((fs::exists(expected) ? expected : entry.path()).string()))
            << name;
    }
}

TEST_F(Assemble, IncludeLinesAreWrittenInWindows1252) {
    folder.write("t\xC3\xBC_0.asm", folder.read("low_0.asm"));
    job.bases[WingsLow] = folder.file("t\xC3\xBC");
    job.flexing_wings = true;
    EXPECT_EQ(run(), path("complete.asm"));
    EXPECT_NE(complete().find("t\xFC_0.asm\r\n"), std::string::npos);
    EXPECT_EQ(complete().find("\xC3"), std::string::npos);
}

TEST_F(Assemble, APathThatSourceFilesCannotHoldIsRefusedAtOnce) {
    folder.write("\xD0\x96_0.asm", folder.read("low_0.asm"));
    job.bases[WingsLow] = folder.file("\xD0\x96");
    job.flexing_wings = true;
    const auto before = all_files();
    EXPECT_EQ(run(), std::nullopt);
    ASSERT_EQ(reporter.boxes.size(), 1U);
    EXPECT_EQ(reporter.boxes[0].text, "The path " + job.bases[WingsLow] +
                                          " holds the character \"\xD0\x96\", which source files "
                                          "(Windows-1252) cannot hold.");
    EXPECT_EQ(all_files(), before);
}

} // namespace
} // namespace morvane::test
