// SPDX-License-Identifier: GPL-3.0-or-later

#include "exporter.h"
#include "project/watch_project.h"
#include "project_fixture.h"
#include "support/faulty_disk.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <utility>

namespace morvane::test {
namespace {

using std::chrono::milliseconds;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// Does something once, when a file whose name ends so is opened for reading.
class HookedDisk final : public FaultyDisk {
  public:
    std::unique_ptr<ReadableFile> open_for_reading(const std::string& path) override {
        if (hook && path.ends_with(ending)) {
            const auto action = std::exchange(hook, {});
            action();
        }
        return FaultyDisk::open_for_reading(path);
    }

    std::string ending;
    std::function<void()> hook;
};

std::size_t count_of(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) {
        ++count;
    }
    return count;
}

class Watch : public ProjectTest {
  protected:
    void SetUp() override { write_sets({"a", "b"}); }

    /// Watches until three seconds after the last thing that is planned.
    void watch() {
        watch_project(services, folder.file("morvane.toml"), surroundings, options, watching());
    }

    WatchOptions watching() {
        WatchOptions watching;
        watching.now = [this] { return exporter.now(); };
        watching.pass = [this](milliseconds time) { exporter.pass(time); };
        watching.stopped = [this] { return exporter.is_over(); };
        watching.built = [this](const BuildResult& result) { keep(result); };
        watching.said = [this](const std::string& text) { said_.push_back(text); };
        return watching;
    }

    /// One build for each export and the first one, none of half an export or of two.
    void expect_each_export_once(std::size_t count) {
        std::vector<std::size_t> numbers;
        for (std::size_t i = 1; i <= count + 1; ++i) {
            numbers.push_back(i);
        }
        EXPECT_EQ(made_["a"], numbers);
        EXPECT_THAT(failures_, IsEmpty());
        EXPECT_THAT(said_, IsEmpty());
    }

    Exporter exporter{folder.file("exports/a")};
    std::map<std::string, std::vector<std::size_t>> made_; // the export's number, by step
    std::vector<std::string> failures_;
    std::vector<std::string> said_;

  private:
    void keep(const BuildResult& result) {
        for (const StepResult& step : result.steps) {
            if (step.state == StepState::Failed) {
                failures_.push_back(step.name + ": " + step.problems.at(0).text);
            } else if (step.state == StepState::Made) {
                const std::size_t triangles =
                    count_of(output(step.name + "_0.asm"), "    BGL_LIGHT ");
                const std::string frame = output(step.name + ".asm");
                if (frame.starts_with("; export ") &&
                    !frame.starts_with("; export " + std::to_string(triangles) + "\r\n")) {
                    failures_.push_back(step.name + ": a mixed pair");
                }
                made_[step.name].push_back(triangles);
            }
        }
    }
};

TEST_F(Watch, RebuildsOnceAnExportInEveryManner) {
    exporter.plan_exports(10);
    watch();
    expect_each_export_once(10);
    EXPECT_THAT(made_["b"], SizeIs(1));
}

TEST_F(Watch, TheSameExportAgainIsNotBuilt) {
    exporter.at(milliseconds(2000), [this] { write_export("a"); });
    watch();
    EXPECT_THAT(made_["a"], SizeIs(1));
}

TEST_F(Watch, AnIncompleteExportIsToldOnceAndWaitedFor) {
    const std::string model = model_text(5);
    exporter.at(milliseconds(2000), [=, this] {
        write_file(exporter.model_file(), model.substr(0, model.find("BGL_END")));
    });
    exporter.at(milliseconds(9000), [=, this] {
        EXPECT_THAT(made_["a"], SizeIs(1));
        ASSERT_THAT(said_, ElementsAre(HasSubstr("a_0.asm: the export is incomplete")));
        write_file(exporter.model_file(), model);
        write_file(exporter.frame_file(), exporter.frame(5));
    });
    watch();
    EXPECT_THAT(made_["a"], ElementsAre(1U, 5U));
    EXPECT_THAT(said_, SizeIs(1));
    EXPECT_THAT(failures_, IsEmpty());
}

// Whole by its end marks, but beside the frame file of the export before.
TEST_F(Watch, AnExportThatBeginsWhileTheLastOneIsReadIsLeftUntilItIsWhole) {
    HookedDisk hooked;
    const Services with_hook{hooked, reporter};
    hooked.ending = "a_0.asm";
    const milliseconds whole = exporter.export_in(2, milliseconds(2000), 2);
    exporter.at(whole + milliseconds(100), [&] {
        hooked.hook = [this] { write_file(exporter.model_file(), model_text(3)); };
    });
    exporter.at(whole + milliseconds(1900),
                [this] { write_file(exporter.frame_file(), exporter.frame(3)); });
    watch_project(with_hook, folder.file("morvane.toml"), surroundings, options, watching());
    EXPECT_FALSE(hooked.hook);
    EXPECT_THAT(made_["a"], ElementsAre(1U, 3U));
    EXPECT_THAT(failures_, IsEmpty());
    EXPECT_THAT(said_, IsEmpty());
}

TEST_F(Watch, AnExportThatVanishesWhileItIsReadIsWaitedFor) {
    HookedDisk hooked;
    const Services with_hook{hooked, reporter};
    hooked.ending = "recipes/red.toml"; // is read after the export was found quiet
    const milliseconds whole = exporter.export_in(2, milliseconds(2000), 2);
    exporter.at(whole + milliseconds(100),
                [&] { hooked.hook = [this] { std::filesystem::remove(exporter.model_file()); }; });
    exporter.at(whole + milliseconds(3000), [this] {
        write_file(exporter.model_file(), model_text(3));
        write_file(exporter.frame_file(), exporter.frame(3));
    });
    watch_project(with_hook, folder.file("morvane.toml"), surroundings, options, watching());
    EXPECT_FALSE(hooked.hook);
    EXPECT_THAT(made_["a"], ElementsAre(1U, 3U));
    EXPECT_THAT(failures_, IsEmpty());
}

TEST_F(Watch, AWrongRecipeIsToldAndTheWatchGoesOn) {
    const std::string recipe = folder.read("recipes/red.toml");
    exporter.at(milliseconds(2000),
                [this] { folder.write("recipes/red.toml", "[[assign]]\nkind = \"Light\"\n"); });
    exporter.at(milliseconds(5000), [=, this] {
        EXPECT_THAT(said_, Contains(HasSubstr("red.toml:2:8: ")));
        folder.write("recipes/red.toml", recipe + "LightInt = \"5\"\n");
    });
    watch();
    EXPECT_THAT(made_["a"], SizeIs(2));
    EXPECT_THAT(made_["b"], SizeIs(2));
}

TEST_F(Watch, AMaterialThatCannotBeTakenAsAWholeIsReported) {
    std::string model = model_text(2);
    model.insert(model.find("    DRAW_TRI_END"), "    MIPMAP 1\r\n");
    exporter.at(milliseconds(2000), [=, this] { write_file(exporter.model_file(), model); });
    watch();
    EXPECT_THAT(failures_, ElementsAre(HasSubstr("more than triangles")));
    EXPECT_THAT(made_["a"], SizeIs(1));
}

TEST_F(Watch, AChangedProjectIsReadAgain) {
    exporter.at(milliseconds(2000), [this] {
        write_export("c");
        folder.write("morvane.toml", folder.read("morvane.toml") +
                                         "[[set]]\nbase = \"exports/c\"\n"
                                         "recipe = \"recipes/red.toml\"\n");
    });
    watch();
    EXPECT_THAT(made_["c"], SizeIs(1));
    EXPECT_THAT(made_["a"], SizeIs(1));
}

TEST_F(Watch, AnExportThatIsStillFreshWaits) {
    write_export("a", 7);
    watch();
    EXPECT_THAT(made_["a"], ElementsAre(7U));
    EXPECT_THAT(failures_, IsEmpty());
}

TEST_F(Watch, OneSetIsWrittenUnderAnotherBase) {
    std::size_t builds = 0;
    WatchOptions watching_one = watching();
    watching_one.built = [&](const BuildResult& result) {
        EXPECT_EQ(result.how, BuildResult::How::Done);
        ++builds;
    };
    exporter.at(milliseconds(1900), [&] {
        EXPECT_EQ(builds, 1U);
        EXPECT_THAT(folder.read("made_0.asm"), HasSubstr("BGL_LIGHT"));
        EXPECT_EQ(folder.read("made.asm"), frame_text("a"));
    });
    exporter.export_in(2, milliseconds(2000), 2);
    watch_set(services, folder.file("exports/a"), folder.file("recipes/red.toml"),
              folder.file("made"), surroundings, watching_one);
    EXPECT_EQ(builds, 2U);
    EXPECT_EQ(count_of(folder.read("made_0.asm"), "    BGL_LIGHT "), 2U);
    EXPECT_EQ(folder.read("made.asm"), exporter.frame(2));
    EXPECT_EQ(folder.read("exports/a_0.asm"), model_text(2));
}

TEST_F(Watch, ManyExportsAreBuiltOnceEach) {
    exporter.plan_exports(many_exports);
    watch();
    expect_each_export_once(many_exports);
    EXPECT_THAT(made_["b"], SizeIs(1));
}

} // namespace
} // namespace morvane::test
