// SPDX-License-Identifier: GPL-3.0-or-later

// Undo, redo and looking at a document of a million lines, and the check of a set of 7 MB.

#include "base/reporter.h"
#include "document/live_problems.h"
#include "document/material_code.h"
#include "document/source_comparison.h"
#include "large_set.h"
#include "system/disk.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <utility>

namespace morvane::bench {
namespace {

constexpr int million = 1'000'000;
constexpr int lines_of_7_mb = 82'000;
constexpr std::size_t steps = 100;

// A document of a set on the disk, gone with the benchmark.
class OpenDocument {
  public:
    explicit OpenDocument(int lines) {
        std::string pattern = (std::filesystem::temp_directory_path() / "bench-XXXXXX").string();
        folder_ = mkdtemp(pattern.data());
        write_large_set(folder_ + "/large", lines);
        document.open(folder_ + "/large");
    }
    OpenDocument(const OpenDocument&) = delete;
    OpenDocument& operator=(const OpenDocument&) = delete;
    ~OpenDocument() { std::filesystem::remove_all(folder_); }

    void process_all() {
        for (std::size_t row = 1; row <= steps; ++row) {
            document.process(row, row % 2 == 0 ? Kind::Effects : Kind::Lights);
        }
    }
    double megabytes() const {
        return static_cast<double>(std::filesystem::file_size(folder_ + "/large_0.asm")) / 1e6;
    }

    std::unique_ptr<Disk> disk = make_system_disk();
    QuietReporter reporter;
    DocumentListener listener;
    Document document{{*disk, reporter}, listener};

  private:
    std::string folder_;
};

// Of the processor: a single step is so short that what other programs do would count for more.
template <typename Call>
double milliseconds(Call call) {
    const std::clock_t start = std::clock();
    call();
    return 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// The slowest single step counts, and the memory of the largest.
void undo_and_redo_100(benchmark::State& state) {
    OpenDocument open(million);
    open.process_all();
    double slowest = 0;
    for (auto _ : state) {
        for (std::size_t i = 0; i < steps; ++i) {
            slowest = std::max(slowest, milliseconds([&] { open.document.undo(); }));
        }
        for (std::size_t i = 0; i < steps; ++i) {
            slowest = std::max(slowest, milliseconds([&] { open.document.redo(); }));
        }
    }
    std::size_t most = 0;
    std::size_t all = 0;
    for (const Step& step : open.document.done()) {
        most = std::max(most, step.bytes());
        all += step.bytes();
    }
    state.counters["steps"] = static_cast<double>(open.document.done().size());
    state.counters["slowest_ms"] = slowest;
    state.counters["largest_step_bytes"] = static_cast<double>(most);
    state.counters["all_steps_bytes"] = static_cast<double>(all);
    state.counters["set_megabytes"] = open.megabytes();
}

void process_a_material(benchmark::State& state) {
    OpenDocument open(million);
    for (auto _ : state) {
        open.document.process(1, Kind::Lights);
        open.document.undo();
    }
}

void check_set(benchmark::State& state) {
    OpenDocument open(static_cast<int>(state.range(0)));
    if (state.range(1) != 0) {
        open.process_all();
    }
    std::size_t found = 0;
    for (auto _ : state) {
        found = problems_of(*open.disk, open.document, {}).size();
    }
    state.counters["problems"] = static_cast<double>(found);
    state.counters["set_megabytes"] = open.megabytes();
}

void compare_source(benchmark::State& state) {
    OpenDocument open(million);
    open.process_all();
    for (auto _ : state) {
        const SourceComparison comparison(*open.disk, open.document.set(), SetFile::Model);
        benchmark::DoNotOptimize(comparison.row(comparison.rows() / 2).number_then);
    }
}

void find_in_source(benchmark::State& state) {
    OpenDocument open(million);
    open.process_all();
    const SourceComparison comparison(*open.disk, open.document.set(), SetFile::Model);
    for (auto _ : state) {
        benchmark::DoNotOptimize(comparison.find("nowhere in the file", 0));
    }
}

void plan_code_of_a_material(benchmark::State& state) {
    OpenDocument open(million);
    for (auto _ : state) {
        benchmark::DoNotOptimize(material_code(open.document, 150, Kind::Effects).lines.size());
    }
}

BENCHMARK(undo_and_redo_100)->Unit(benchmark::kMillisecond);
BENCHMARK(process_a_material)->Unit(benchmark::kMillisecond);
BENCHMARK(check_set)
    ->ArgNames({"lines", "processed"})
    ->Args({lines_of_7_mb, 0})
    ->Args({lines_of_7_mb, 1})
    ->Args({million, 1})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(compare_source)->Unit(benchmark::kMillisecond);
BENCHMARK(find_in_source)->Unit(benchmark::kMillisecond);
BENCHMARK(plan_code_of_a_material)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace morvane::bench
