// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/document.h"
#include "objects/random_set.h"
#include "objects/save.h"
#include "source/source_set.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"
#include "system/replace_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace morvane::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

// Writes down what a document says.
class Listener final : public DocumentListener {
  public:
    void opened() override { calls.emplace_back("opened"); }
    void changed(std::size_t row) override { calls.push_back("changed " + std::to_string(row)); }
    void parameters_changed() override { calls.emplace_back("parameters"); }
    void history_changed() override { calls.emplace_back("history"); }
    void notes_changed() override { ++notes; }
    void saved() override { calls.emplace_back("saved"); }

    std::vector<std::string> take() { return std::exchange(calls, {}); }

    std::vector<std::string> calls;
    int notes = 0;
};

// Everything of a set that a step may change.
struct Stores {
    explicit Stores(const OpenSet& set)
        : model(all_lines(set.model)), frame(all_lines(set.frame)),
          frame_changed(set.frame_changed), bgl_end(set.bgl_end), unprocessed(set.unprocessed()) {
        for (const Replacement& replacement : set.replacements) {
            code.push_back(std::to_string(replacement.before_line));
            code.insert(code.end(), replacement.code.begin(), replacement.code.end());
        }
        for (const DictionaryRow& row : set.dictionary) {
            dictionary.insert(dictionary.end(), {row.equ_line, row.dd_line});
        }
        for (const Translation& material : set.translations) {
            marks.push_back(material.processed + "/" + std::to_string(material.given_up));
        }
    }
    bool operator==(const Stores&) const = default;

    std::vector<std::string> model;
    std::vector<std::string> frame;
    std::vector<std::string> code;
    std::vector<std::string> dictionary;
    std::vector<std::string> marks;
    bool frame_changed;
    std::size_t bgl_end;
    std::size_t unprocessed;
};

// The bytes that Save would write, or why it would refuse.
class BytesInMemory final : public WritableFile {
  public:
    explicit BytesInMemory(std::string& bytes) : bytes_(bytes) {}
    std::size_t write(std::string_view bytes) override {
        bytes_ += bytes;
        return bytes.size();
    }
    void truncate(std::uint64_t size) override { bytes_.resize(size); }
    void sync() override {}
    void close() override {}

  private:
    std::string& bytes_;
};

std::string saved_bytes(const OpenSet& set) {
    std::string bytes;
    BytesInMemory file(bytes);
    TextWriter out(file);
    write_merged_model(set, out);
    write_lines(out, set.frame, 1, set.frame.upper());
    out.flush();
    return bytes;
}

class DocumentTest : public ::testing::Test {
  protected:
    // Row 1 red, 2 green, 3 red and flat for windsocks after its first triangle.
    void write_set() {
        std::vector<std::string> model{"MATERIAL_LIST_BEGIN"};
        for (const char* mark : {"1,0,0", "0,1,0", "1,0,0"}) {
            model.push_back("MATERIAL_DEF 1.0,0.5,0.0,1.0, 0,0,0, " + std::string(mark) +
                            ", 0,0,0, 0.0 ; x");
        }
        model.insert(model.end(),
                     {"MATERIAL_LIST_END", "VERTEX_LIST_BEGIN", "VERTEX_DEF 0,0,0, 0,1,0, 0,0 ; x",
                      "VERTEX_DEF 1,10,0, 0,1,0, 0,0 ; x", "VERTEX_DEF 4,0,0, 0,1,0, 0,0 ; x",
                      "VERTEX_LIST_END"});
        for (const char* number : {"0", "1", "2"}) {
            model.insert(model.end(), {"MATERIAL " + std::string(number) + ",0 ; x",
                                       "DRAW_TRI_BEGIN 0, 3", "DRAW_TRI 0, 1, 2 ; x"});
            if (*number == '2') {
                model.emplace_back("DRAW_TRI 0, 0, 2 ; x");
            }
            model.emplace_back("DRAW_TRI_END");
        }
        model.emplace_back("BGL_END");
        folder.write("set_0.asm", crlf(model));
        folder.write("set.asm", crlf({"    SCALE_AGL a,0,100,65536,0100h,0,0200h,0,0,0",
                                      "    dd  0", "    END"}));
    }
    void SetUp() override {
        write_set();
        ASSERT_TRUE(document.open(base));
        parameters.lights.LightVariable = "beacnt";
        document.set_default_parameters(parameters);
        listener.take();
    }

    TempFolder folder;
    std::unique_ptr<Disk> disk = make_system_disk();
    RecordingReporter reporter;
    Listener listener;
    Services services{*disk, reporter};
    Document document{services, listener};
    std::string base = folder.file("set");
    Parameters parameters;
};

TEST_F(DocumentTest, OpenTellsTheListenerAndEmptiesTheHistory) {
    document.process(1, Kind::Lights);
    listener.take();
    ASSERT_TRUE(document.open(base));
    EXPECT_THAT(listener.take(), ElementsAre("opened", "history"));
    EXPECT_THAT(document.done(), IsEmpty());
    EXPECT_FALSE(document.can_undo());
    EXPECT_EQ(document.undo_refusal(), "");
}

TEST_F(DocumentTest, MissingFilesLeaveTheSetThatIsOpen) {
    document.process(1, Kind::Lights);
    listener.take();
    EXPECT_FALSE(document.open(folder.file("none")));
    EXPECT_THAT(listener.take(), IsEmpty());
    EXPECT_THAT(document.done(), SizeIs(1));
    EXPECT_EQ(document.set().base, base);
}

TEST_F(DocumentTest, ASetThatCannotBeUsedIsNotOpen) {
    folder.write("other_0.asm", "x\r\n");
    folder.write("other.asm", "x\r\n");
    document.process(1, Kind::Lights);
    listener.take();
    EXPECT_FALSE(document.open(folder.file("other")));
    EXPECT_THAT(listener.take(), ElementsAre("opened", "history"));
    EXPECT_FALSE(document.set().opened);
    EXPECT_THAT(document.notes(), SizeIs(1)) << "the cause, and none of the set before";
}

TEST_F(DocumentTest, AProcessIsAStepThatCanBeUndoneAndRedone) {
    const Stores before(document.set());
    EXPECT_TRUE(document.process(2, Kind::Lights).processed);
    EXPECT_THAT(listener.take(), ElementsAre("changed 2", "history"));
    ASSERT_THAT(document.done(), SizeIs(1));
    EXPECT_EQ(document.done()[0].name, "Process of 2 (MATERIAL 1)");
    EXPECT_TRUE(document.has_unsaved_work());
    const Stores after(document.set());
    EXPECT_NE(after, before);
    document.undo();
    EXPECT_THAT(listener.take(), ElementsAre("changed 2", "history"));
    EXPECT_EQ(Stores(document.set()), before);
    EXPECT_FALSE(document.has_unsaved_work());
    EXPECT_FALSE(document.can_undo());
    ASSERT_TRUE(document.can_redo());
    document.redo();
    EXPECT_EQ(Stores(document.set()), after);
    EXPECT_FALSE(document.can_redo());
    document.redo();
    EXPECT_EQ(Stores(document.set()), after) << "nothing more to redo";
}

TEST_F(DocumentTest, ARefusedProcessIsNoStep) {
    EXPECT_FALSE(document.process(0, Kind::Lights).processed);
    document.process(1, Kind::Lights);
    EXPECT_FALSE(document.process(1, Kind::Lights).processed);
    EXPECT_THAT(document.done(), SizeIs(1));
}

TEST_F(DocumentTest, AGivenUpWindsockCanBeUndone) {
    const Stores before(document.set());
    EXPECT_FALSE(document.process(3, Kind::Windsock).processed);
    ASSERT_THAT(document.done(), SizeIs(1));
    EXPECT_FALSE(document.done()[0].materials[0].processed);
    EXPECT_THAT(document.recipe().assignments, IsEmpty());
    document.undo();
    EXPECT_EQ(Stores(document.set()), before);
    document.redo();
    document.process(3, Kind::Lights);
    EXPECT_THAT(document.recipe().assignments, SizeIs(1));
    document.go_to(0);
    EXPECT_EQ(Stores(document.set()), before);
}

TEST_F(DocumentTest, ANewStepForgetsWhatWasUndone) {
    document.process(1, Kind::Lights);
    document.undo();
    document.process(2, Kind::Lights);
    EXPECT_FALSE(document.can_redo());
    EXPECT_THAT(document.undone(), IsEmpty());
}

TEST_F(DocumentTest, AChangeOfParametersIsAStep) {
    document.set_parameters(parameters);
    EXPECT_THAT(document.done(), IsEmpty()) << "nothing changed";
    Parameters other = parameters;
    other.lights.LightInt = "50";
    document.set_parameters(other);
    EXPECT_THAT(listener.take(), ElementsAre("parameters", "history"));
    ASSERT_THAT(document.done(), SizeIs(1));
    document.undo();
    EXPECT_EQ(document.parameters(), parameters);
    document.redo();
    EXPECT_EQ(document.parameters(), other);
}

TEST_F(DocumentTest, ARecipeIsOneStep) {
    Recipe recipe;
    recipe.file = "folder/airport.toml";
    recipe.assignments.resize(2);
    recipe.assignments[0].highlight = {"Green"};
    recipe.assignments[0].parameters = parameters;
    recipe.assignments[1].kind = Kind::LibraryNew;
    const Stores before(document.set());
    const RecipePlan plan = plan_recipe(document.set(), recipe);
    EXPECT_TRUE(document.apply(recipe, plan).ok);
    ASSERT_THAT(document.done(), SizeIs(1));
    EXPECT_EQ(document.done()[0].name, "recipe airport.toml");
    EXPECT_THAT(document.done()[0].materials, SizeIs(3));
    EXPECT_EQ(document.set().unprocessed(), 0U);
    document.undo();
    EXPECT_EQ(Stores(document.set()), before);
}

TEST_F(DocumentTest, TheMacrosAndLabelsOfARecipeAreUndoneToo) {
    Recipe recipe;
    recipe.assignments.resize(1);
    recipe.assignments[0].kind = Kind::Effects;
    recipe.macros = "share/morvane.inc";
    recipe.unique_labels = true;
    const Stores before(document.set());
    EXPECT_TRUE(document.apply(recipe, plan_recipe(document.set(), recipe)).ok);
    const Stores after(document.set());
    EXPECT_EQ(after.frame.front(), "    include morvane.inc");
    EXPECT_EQ(after.code.back(), "SKIP_FX3  label BGLCODE");
    document.undo();
    EXPECT_EQ(Stores(document.set()), before);
    document.redo();
    EXPECT_EQ(Stores(document.set()), after);
}

TEST_F(DocumentTest, ARecipeThatStopsIsAStepOfWhatItDid) {
    Recipe recipe;
    recipe.assignments.resize(2);
    recipe.assignments[0].highlight = {"Green"};
    recipe.assignments[1].kind = Kind::Windsock;
    const Stores before(document.set());
    EXPECT_FALSE(document.apply(recipe, plan_recipe(document.set(), recipe)).ok);
    ASSERT_THAT(document.done(), SizeIs(1));
    EXPECT_THAT(document.done()[0].materials, SizeIs(3)) << "the last was given up";
    document.undo();
    EXPECT_EQ(Stores(document.set()), before);
}

TEST_F(DocumentTest, AfterSaveTheHistoryIsReadButNotUndone) {
    document.process(1, Kind::Lights);
    document.process(2, Kind::Lights);
    document.undo();
    listener.take();
    ASSERT_TRUE(document.save(base).saved);
    EXPECT_THAT(listener.take(), ElementsAre("saved", "history"));
    EXPECT_FALSE(document.can_undo());
    EXPECT_FALSE(document.can_redo());
    EXPECT_NE(document.undo_refusal(), "");
    EXPECT_THAT(document.done(), SizeIs(1));
    const Stores saved(document.set());
    document.undo();
    document.redo();
    document.go_to(0);
    EXPECT_EQ(Stores(document.set()), saved);
}

TEST_F(DocumentTest, NotesAreKeptUntilTheNextOpen) {
    parameters.lights.LightVariable.clear();
    document.set_default_parameters(parameters);
    document.process(1, Kind::Lights);
    std::vector<std::string> codes;
    for (const Note& note : document.notes()) {
        codes.push_back(note.code);
    }
    EXPECT_THAT(codes, ElementsAre("light-variable"));
    EXPECT_THAT(document.notes()[0].text, ::testing::StartsWith("row 1 (MATERIAL 0): "));
    EXPECT_THAT(reporter.messages, Contains(::testing::StartsWith("Note: row 1 (MATERIAL 0): ")));
    EXPECT_GT(listener.notes, 0);
    document.open(base);
    EXPECT_THAT(document.notes(), IsEmpty());
}

TEST_F(DocumentTest, TheCodeOfEachProcessedMaterial) {
    document.process(3, Kind::Effects);
    document.process(1, Kind::LibraryNew);
    EXPECT_EQ(document.code_of(2), nullptr);
    ASSERT_NE(document.code_of(1), nullptr);
    EXPECT_EQ(document.code_of(1)->back(), "    BGL_TRANSFORM_END");
    ASSERT_NE(document.code_of(3), nullptr);
    EXPECT_EQ(document.code_of(3)->back(), "SKIP_FX  label BGLCODE");
    document.undo();
    EXPECT_EQ(document.code_of(1), nullptr);
}

TEST_F(DocumentTest, TheRecipeDoesTheSameAgain) {
    document.process(3, Kind::Effects);
    document.process(1, Kind::Lights);
    const std::string bytes = saved_bytes(document.set());
    const Recipe recipe = document.recipe();
    ASSERT_TRUE(document.open(base));
    const RecipePlan plan = plan_recipe(document.set(), recipe);
    ASSERT_THAT(plan.errors, IsEmpty());
    EXPECT_TRUE(document.apply(recipe, plan).ok);
    EXPECT_EQ(saved_bytes(document.set()), bytes);
}

// Random steps on random sets: whatever is undone is as it was, and whatever is redone makes the
// bytes that are made without undo.
class RandomRun {
  public:
    explicit RandomRun(unsigned seed) : random_(seed), base_(folder_.file("set")) {
        folder_.write("set_0.asm", crlf(random_.model()));
        folder_.write("set.asm", crlf(random_.frame()));
    }

    void run() {
        ASSERT_TRUE(document_.open(base_));
        std::vector<Stores> stages{Stores(document_.set())};
        const std::size_t steps = 1 + random_.marked() + 3;
        for (std::size_t i = 0; i < steps; ++i) {
            do_something();
            if (document_.done().size() == stages.size()) {
                stages.emplace_back(document_.set());
            }
            ASSERT_EQ(document_.done().size() + 1, stages.size());
        }
        expect_stages(stages);
        expect_small_steps();
    }
    int steps() const { return static_cast<int>(document_.done().size()); }

  private:
    void do_something() {
        if (random_.chance(10)) {
            document_.set_parameters(pick_parameters());
            return;
        }
        const auto row =
            static_cast<std::size_t>(random_.pick(1, static_cast<int>(random_.marked())));
        document_.process(row, all_kinds.at(static_cast<std::size_t>(random_.pick(0, 4))));
    }

    Parameters pick_parameters() {
        Parameters parameters;
        parameters.lights.DayFlag = random_.chance(50);
        parameters.lights.AircraftFlag = random_.chance(50);
        parameters.effects.lstEffectType = "fx_a";
        parameters.library.libScale = std::to_string(random_.pick(1, 9));
        return parameters;
    }

    // Back to the beginning and forth again, then to random places.
    void expect_stages(const std::vector<Stores>& stages) {
        const std::size_t last = stages.size() - 1;
        const bool has_code = !document_.set().replacements.empty() && all_have_code();
        const std::string bytes = has_code ? saved_bytes(document_.set()) : std::string();
        for (std::size_t i = last; i-- > 0;) {
            document_.undo();
            ASSERT_EQ(Stores(document_.set()), stages[i]) << "undone to " << i;
        }
        ASSERT_FALSE(document_.can_undo());
        for (std::size_t i = 1; i <= last; ++i) {
            document_.redo();
            ASSERT_EQ(Stores(document_.set()), stages[i]) << "redone to " << i;
        }
        ASSERT_FALSE(document_.can_redo());
        for (int i = 0; i < 3; ++i) {
            const auto stage = static_cast<std::size_t>(random_.pick(0, static_cast<int>(last)));
            document_.go_to(stage);
            ASSERT_EQ(Stores(document_.set()), stages[stage]);
        }
        document_.go_to(last);
        if (has_code) {
            ASSERT_EQ(saved_bytes(document_.set()), bytes);
        }
    }

    bool all_have_code() const {
        for (const Replacement& replacement : document_.set().replacements) {
            if (replacement.code.empty()) {
                return false;
            }
        }
        return true;
    }

    // A step holds a few bytes for each line that it changed, and the frame once.
    void expect_small_steps() {
        bool frame_was_kept = false;
        for (const Step& step : document_.done()) {
            std::size_t most = 2000;
            for (const StepMaterial& material : step.materials) {
                most += 16 * (random_.triangles(material.row) + 3);
            }
            if (step.bytes() > most) {
                EXPECT_FALSE(frame_was_kept);
                frame_was_kept = true;
                most += 16 * document_.set().frame.upper();
            }
            EXPECT_LE(step.bytes(), most);
        }
    }

    TempFolder folder_;
    RandomSet random_;
    std::string base_;
    std::unique_ptr<Disk> disk_ = make_system_disk();
    RecordingReporter reporter_;
    Services services_{*disk_, reporter_};
    Listener listener_;
    Document document_{services_, listener_};
};

TEST(RandomUndo, EveryStoreIsAsItWasAndTheSavedBytesAreTheSame) {
    constexpr unsigned runs = 500;
    int steps = 0;
    for (unsigned seed = 1; seed <= runs; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomRun run(seed);
        ASSERT_NO_FATAL_FAILURE(run.run());
        ASSERT_FALSE(::testing::Test::HasFailure());
        steps += run.steps();
    }
    RecordProperty("steps", steps); // undone and redone
}

} // namespace
} // namespace morvane::test
