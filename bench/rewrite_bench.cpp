// SPDX-License-Identifier: GPL-3.0-or-later

// The steps from Open to Save, each by itself, on sets of growing size.

#include "base/reporter.h"
#include "large_set.h"
#include "objects/process.h"
#include "objects/save.h"
#include "source/materials.h"
#include "source/open_set.h"
#include "source/source_set.h"
#include "system/disk.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace morvane::bench {
namespace {

class SilentReporter final : public Reporter {
  public:
    void add_message(std::string_view /*text*/) override {}
    void clear_messages() override {}
    void message_box(std::string_view /*text*/, Icon /*icon*/) override {}
    bool ask(std::string_view /*text*/, Icon /*icon*/, std::string_view /*title*/) override {
        return true;
    }
};

/// A set on the disk, gone with the benchmark.
class LargeSet {
  public:
    explicit LargeSet(int lines) {
        std::string pattern = (std::filesystem::temp_directory_path() / "bench-XXXXXX").string();
        folder_ = mkdtemp(pattern.data());
        write_large_set(base(), lines);
    }
    LargeSet(const LargeSet&) = delete;
    LargeSet& operator=(const LargeSet&) = delete;
    ~LargeSet() { std::filesystem::remove_all(folder_); }

    std::string base() const { return folder_ + "/large"; }
    Services services() { return {*disk_, reporter_}; }

    OpenSet open() {
        OpenSet set;
        open_source_set(services(), set, base());
        return set;
    }

    void process_rows(OpenSet& set, std::size_t count) {
        for (std::size_t row = 1; row <= count; ++row) {
            process_material(services(), set, row, Kind::Lights, {});
        }
    }

  private:
    std::string folder_;
    std::unique_ptr<Disk> disk_ = make_system_disk();
    SilentReporter reporter_;
};

int lines_of(const benchmark::State& state) {
    return static_cast<int>(state.range(0));
}

void count_lines(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void load(benchmark::State& state) {
    LargeSet files(lines_of(state));
    for (auto _ : state) {
        LineStore model;
        LineStore frame;
        benchmark::DoNotOptimize(load_source_set(files.services(), files.base(), model, frame));
        benchmark::DoNotOptimize(model.count());
    }
    count_lines(state);
}

void find_blocks(benchmark::State& state) {
    LargeSet files(lines_of(state));
    const OpenSet set = files.open();
    for (auto _ : state) {
        benchmark::DoNotOptimize(build_translation_list(set.model, set.materials));
    }
    count_lines(state);
}

void process_100(benchmark::State& state) {
    LargeSet files(lines_of(state));
    for (auto _ : state) {
        state.PauseTiming();
        OpenSet set = files.open();
        state.ResumeTiming();
        files.process_rows(set, OpenSet::max_replacements);
        benchmark::DoNotOptimize(set.replacements.size());
    }
    state.SetItemsProcessed(state.iterations() * OpenSet::max_replacements * triangles);
}

void save(benchmark::State& state) {
    LargeSet files(lines_of(state));
    OpenSet set = files.open();
    files.process_rows(set, OpenSet::max_replacements);
    for (auto _ : state) {
        set.saved = false;
        benchmark::DoNotOptimize(save_set(files.services(), set, files.base() + "_out").saved);
    }
    count_lines(state);
}

void sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(load)->Apply(sizes);
BENCHMARK(find_blocks)->Apply(sizes);
BENCHMARK(process_100)->Apply(sizes);
BENCHMARK(save)->Apply(sizes)->UseRealTime();

} // namespace
} // namespace morvane::bench
