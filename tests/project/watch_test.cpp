// SPDX-License-Identifier: GPL-3.0-or-later

// The test plays the exporter, in the manners in which exporters were seen to write, with time
// scaled down: a second of theirs is a tenth of one here.

#include "project/export_watch.h"
#include "project/watch_project.h"
#include "project_fixture.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

namespace morvane::test {
namespace {

using std::chrono::milliseconds;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr milliseconds quiet{120};
constexpr milliseconds pause{60}; // of the exporter, in the middle of its work
constexpr milliseconds patience{5000};

class Watch : public ProjectTest {
  protected:
    void SetUp() override { write_sets({"a", "b"}); }
    void TearDown() override { stop(); }

    void start() {
        watch_options_.quiet = quiet;
        watch_options_.interval = milliseconds(10);
        watch_options_.stopped = [this] { return stopped_.load(); };
        watch_options_.built = [this](const BuildResult& result) { keep(result); };
        watch_options_.said = [this](const std::string& text) {
            const std::lock_guard guard(mutex);
            said_.push_back(text);
        };
        thread_ = std::thread([this] {
            watch_project(services, folder.file("morvane.toml"), surroundings, options,
                          watch_options_);
        });
        EXPECT_TRUE(wait_for([this] { return builds_of("b") == 1 && builds_of("a") == 1; }));
    }

    void stop() {
        stopped_ = true;
        if (thread_.joinable()) {
            thread_.join();
        }
    }

    bool wait_for(const std::function<bool()>& condition) {
        const auto end = std::chrono::steady_clock::now() + patience;
        while (!condition()) {
            if (std::chrono::steady_clock::now() > end) {
                return false;
            }
            std::this_thread::sleep_for(milliseconds(5));
        }
        return true;
    }

    // How often a step was made; what it was made from was a whole pair each time.
    std::size_t builds_of(const std::string& name) {
        const std::lock_guard guard(mutex);
        return made_[name].size();
    }

    void expect_one_build_of(const std::string& name, std::size_t triangles) {
        const std::size_t before = builds_of(name);
        EXPECT_TRUE(wait_for([&] { return builds_of(name) > before; }));
        std::this_thread::sleep_for(2 * quiet);
        EXPECT_EQ(builds_of(name), before + 1);
        const std::lock_guard guard(mutex);
        EXPECT_EQ(made_[name].back(), triangles);
        EXPECT_THAT(failures_, IsEmpty());
    }

    // The triangles of an export tell which it is; both of its files say so.
    static std::string numbered_frame(const std::string& name, std::size_t triangles) {
        return "; export " + std::to_string(triangles) + "\r\n" + frame_text(name);
    }

    void write_in_pieces(const std::string& path, const std::string& text) {
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        for (std::size_t i = 0; i < 3; ++i) {
            out << text.substr(i * text.size() / 3, (i + 1) * text.size() / 3 - i * text.size() / 3)
                << std::flush;
            std::this_thread::sleep_for(pause);
        }
    }

    std::string model_file(const std::string& name) {
        return folder.file("exports/" + name + "_0.asm");
    }
    std::string frame_file(const std::string& name) {
        return folder.file("exports/" + name + ".asm");
    }

    void export_in(int manner, const std::string& name, std::size_t triangles) {
        const std::string model = model_text(triangles);
        const std::string frame = numbered_frame(name, triangles);
        switch (manner) {
        case 0: // both in place, in pieces with pauses
            write_in_pieces(model_file(name), model);
            write_in_pieces(frame_file(name), frame);
            break;
        case 1: // to a temporary name, then renamed
            write_in_pieces(folder.file("exports/tmp1"), model);
            write_in_pieces(folder.file("exports/tmp2"), frame);
            std::filesystem::rename(folder.file("exports/tmp1"), model_file(name));
            std::this_thread::sleep_for(pause);
            std::filesystem::rename(folder.file("exports/tmp2"), frame_file(name));
            break;
        case 2: // the second file 0.8 s after the first
            write_file(model_file(name), model);
            std::this_thread::sleep_for(quiet * 8 / 10);
            write_file(frame_file(name), frame);
            break;
        default: // deleted, a pause, written
            std::filesystem::remove(model_file(name));
            std::filesystem::remove(frame_file(name));
            std::this_thread::sleep_for(2 * quiet);
            write_file(model_file(name), model);
            write_file(frame_file(name), frame);
        }
    }

    WatchOptions watch_options_;
    std::atomic<bool> stopped_{false};
    std::thread thread_;
    std::map<std::string, std::vector<std::size_t>> made_; // the export's number, by step
    std::vector<std::string> failures_;
    std::vector<std::string> said_;

  private:
    static std::size_t count_of(const std::string& text, const std::string& part) {
        std::size_t count = 0;
        for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) {
            ++count;
        }
        return count;
    }

    void keep(const BuildResult& result) {
        const std::lock_guard guard(mutex);
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
    start();
    std::size_t triangles = 1;
    for (int manner = 0; manner < 4; ++manner) {
        SCOPED_TRACE(manner);
        export_in(manner, "a", ++triangles);
        expect_one_build_of("a", triangles);
    }
    EXPECT_EQ(builds_of("b"), 1U);
}

TEST_F(Watch, TheSameExportAgainIsNotBuilt) {
    start();
    write_export("a");
    std::this_thread::sleep_for(4 * quiet);
    EXPECT_EQ(builds_of("a"), 1U);
}

TEST_F(Watch, AnIncompleteExportIsToldOnceAndWaitedFor) {
    start();
    const std::string model = model_text(5);
    write_file(model_file("a"), model.substr(0, model.find("BGL_END")));
    EXPECT_TRUE(wait_for([this] {
        const std::lock_guard guard(mutex);
        return !said_.empty();
    }));
    std::this_thread::sleep_for(3 * quiet);
    EXPECT_EQ(builds_of("a"), 1U);
    {
        const std::lock_guard guard(mutex);
        EXPECT_THAT(said_, SizeIs(1));
        EXPECT_THAT(said_[0], HasSubstr("a_0.asm: the export is incomplete"));
    }
    write_file(model_file("a"), model);
    write_file(frame_file("a"), numbered_frame("a", 5));
    expect_one_build_of("a", 5);
}

TEST_F(Watch, AWrongRecipeIsToldAndTheWatchGoesOn) {
    start();
    const std::string recipe = folder.read("recipes/red.toml");
    folder.write("recipes/red.toml", "[[assign]]\nkind = \"Light\"\n");
    EXPECT_TRUE(wait_for([this] {
        const std::lock_guard guard(mutex);
        return !said_.empty();
    }));
    {
        const std::lock_guard guard(mutex);
        EXPECT_THAT(said_, Contains(HasSubstr("red.toml:2:8: ")));
    }
    folder.write("recipes/red.toml", recipe + "LightInt = \"5\"\n");
    EXPECT_TRUE(wait_for([this] { return builds_of("a") == 2 && builds_of("b") == 2; }));
}

TEST_F(Watch, AChangedProjectIsReadAgain) {
    start();
    write_export("c");
    folder.write("morvane.toml", folder.read("morvane.toml") + "[[set]]\nbase = \"exports/c\"\n"
                                                               "recipe = \"recipes/red.toml\"\n");
    EXPECT_TRUE(wait_for([this] { return builds_of("c") == 1; }));
    EXPECT_EQ(builds_of("a"), 1U);
}

TEST_F(Watch, AnExportThatIsStillFreshWaits) {
    write_export("a", 7);
    start();
    EXPECT_TRUE(wait_for([this] { return builds_of("a") == 1; }));
    const std::lock_guard guard(mutex);
    EXPECT_THAT(failures_, IsEmpty());
}

TEST_F(Watch, OneSetIsWrittenUnderAnotherBase) {
    watch_options_.quiet = quiet;
    watch_options_.interval = milliseconds(10);
    watch_options_.stopped = [this] { return stopped_.load(); };
    std::atomic<int> builds{0};
    watch_options_.built = [&](const BuildResult& result) {
        EXPECT_EQ(result.how, BuildResult::How::Done);
        ++builds;
    };
    const std::string base = folder.file("exports/a");
    const std::string recipe = folder.file("recipes/red.toml");
    const std::string made = folder.file("made");
    thread_ =
        std::thread([&] { watch_set(services, base, recipe, made, surroundings, watch_options_); });
    EXPECT_TRUE(wait_for([&] { return builds == 1; }));
    EXPECT_THAT(folder.read("made_0.asm"), HasSubstr("BGL_LIGHT"));
    EXPECT_EQ(folder.read("made.asm"), frame_text("a"));
    export_in(2, "a", 2);
    EXPECT_TRUE(wait_for([&] { return builds == 2; }));
    std::this_thread::sleep_for(2 * quiet);
    EXPECT_EQ(builds, 2);
    EXPECT_EQ(folder.read("exports/a_0.asm"), model_text(2));
    stop();
}

// Takes about three minutes: run it by --gtest_also_run_disabled_tests.
TEST_F(Watch, DISABLED_TwoHundredExports) {
    start();
    for (std::size_t i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        export_in(static_cast<int>(i % 4), "a", i + 2);
        expect_one_build_of("a", i + 2);
    }
    EXPECT_EQ(builds_of("b"), 1U);
}

} // namespace
} // namespace morvane::test
