// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "source/line_store.h"
#include "support/thrown.h"
#include "system/disk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace morvane {
namespace {

// A file in memory. It says that it has `said_size` bytes, and may hold fewer.
class MemoryFile final : public ReadableFile {
  public:
    MemoryFile(std::string bytes, std::uint64_t said_size)
        : bytes_(std::move(bytes)), said_size_(said_size) {}
    explicit MemoryFile(const std::string& bytes) : MemoryFile(bytes, bytes.size()) {}

    std::uint64_t size() override { return said_size_; }

    std::size_t read_at(std::uint64_t offset, char* buffer, std::size_t count) override {
        const std::size_t first = std::min<std::size_t>(offset, bytes_.size());
        const std::size_t taken = std::min(count, bytes_.size() - first);
        std::memcpy(buffer, bytes_.data() + first, taken);
        return taken;
    }

  private:
    std::string bytes_;
    std::uint64_t said_size_;
};

LineStore split_whole(const std::string& bytes) {
    FileBytes copy = allocate_bytes(bytes.size());
    std::memcpy(copy.data.get(), bytes.data(), bytes.size());
    return LineStore(std::move(copy));
}

void expect_same_lines(const LineStore& got, const LineStore& expected) {
    ASSERT_EQ(got.upper(), expected.upper());
    for (std::size_t i = 1; i <= expected.upper(); ++i) {
        ASSERT_EQ(got.line(i), expected.line(i)) << "line " << i;
    }
    EXPECT_EQ(got.loaded_bytes(), expected.loaded_bytes());
}

std::string random_text(std::mt19937& random, std::size_t size, const std::string& letters) {
    std::string text(size, ' ');
    std::generate(text.begin(), text.end(), [&] { return letters[random() % letters.size()]; });
    return text;
}

constexpr std::array all_letters{"\r\n", "ab\r\n", "aaaaaaaaaaaaaaa\n", "aaaaaaaaaaaaaaa\r", "a"};

TEST(LineStoreRead, IsTheSameAsSplittingTheWholeFile) {
    std::mt19937 random(20021);
    for (const char* letters : all_letters) {
        const std::string bytes = random_text(random, 300'000 + random() % 1000, letters);
        MemoryFile file(bytes);
        expect_same_lines(LineStore::read(file), split_whole(bytes));
        expect_same_lines(LineStore::read(file, 20'000 + random() % 100), split_whole(bytes));
    }
}

/// One character after the other.
std::vector<std::string> split_bytes_plainly(const std::string& bytes) {
    std::vector<std::string> lines;
    std::string line;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] != '\r' && bytes[i] != '\n') {
            line += bytes[i];
            continue;
        }
        i += bytes.compare(i, 2, "\r\n") == 0 ? 1 : 0;
        lines.push_back(line);
        line.clear();
    }
    if (!line.empty()) {
        lines.push_back(line);
    }
    return lines;
}

TEST(LineStoreRead, EndsAreCrLfLfAndLoneCr) {
    std::mt19937 random(20023);
    for (int i = 0; i < 500; ++i) {
        const char* letters = all_letters.at(random() % all_letters.size());
        const std::string bytes = random_text(random, random() % 60, letters);
        const std::vector<std::string> expected = split_bytes_plainly(bytes);
        const LineStore store = split_whole(bytes);
        ASSERT_EQ(store.count(), expected.size());
        for (std::size_t line = 1; line <= store.count(); ++line) {
            ASSERT_EQ(store.line(line), expected[line - 1]);
        }
        EXPECT_EQ(store.line(store.upper()), "");
    }
}

TEST(LineStoreRead, StretchesOfAnySizeGiveTheSameLines) {
    std::mt19937 random(20022);
    for (int i = 0; i < 300; ++i) {
        const char* letters = all_letters.at(random() % all_letters.size());
        const std::string bytes = random_text(random, random() % 100, letters);
        MemoryFile file(bytes);
        expect_same_lines(LineStore::read(file, 1 + random() % 40), split_whole(bytes));
    }
}

TEST(LineStoreRead, ALineEndAcrossTheEdgeOfAStretchIsOne) {
    const std::size_t stretch = 1000;
    for (std::size_t before = stretch - 3; before <= stretch + 2; ++before) {
        for (const char* end : {"\r\n", "\n", "\r", "\n\r", "\r\r\n"}) {
            const std::string bytes = std::string(before, 'x') + end + "last";
            MemoryFile file(bytes);
            expect_same_lines(LineStore::read(file, stretch), split_whole(bytes));
        }
    }
}

TEST(LineStoreRead, AFileThatBecameShorterEndsWhereItEnds) {
    for (const std::size_t held :
         {std::size_t{0}, std::size_t{7}, std::size_t{1000}, std::size_t{7001}}) {
        const std::string bytes = std::string(held, 'x');
        MemoryFile file(bytes, 20'000);
        expect_same_lines(LineStore::read(file), split_whole(bytes));
        expect_same_lines(LineStore::read(file, 1000), split_whole(bytes));
    }
}

// What comes in behind a gap would stand at a wrong place.
TEST(LineStoreRead, AFileThatGrowsAgainEndsWhereItWasFoundToEnd) {
    class Growing final : public ReadableFile {
      public:
        std::uint64_t size() override { return 5000; }
        std::size_t read_at(std::uint64_t offset, char* buffer, std::size_t count) override {
            const std::size_t got = offset == 1000 ? 500 : count;
            std::memset(buffer, 'x', got);
            return got;
        }
    } file;
    const LineStore store = LineStore::read(file, 1000);
    EXPECT_EQ(store.count(), 1U);
    EXPECT_EQ(store.line(1), std::string(1500, 'x'));
}

TEST(LineStoreRead, AFailureInAnyStretchIsReported) {
    class Failing final : public ReadableFile {
      public:
        explicit Failing(std::uint64_t good) : good_(good) {}
        std::uint64_t size() override { return 5000; }
        std::size_t read_at(std::uint64_t offset, char* buffer, std::size_t count) override {
            if (offset >= good_) {
                throw RuntimeError(ErrorNumber::DeviceIo, "the disk");
            }
            std::memset(buffer, 'x', count);
            return count;
        }

      private:
        std::uint64_t good_;
    };
    for (std::uint64_t good = 0; good < 5000; good += 1000) {
        Failing file(good);
        EXPECT_EQ(test::thrown_by([&] { LineStore::read(file, 1000); }).number(), 57) << good;
    }
}

TEST(LineStoreRead, AnEmptyFileHasNoLines) {
    MemoryFile file("");
    EXPECT_EQ(LineStore::read(file).element0(), "1");
}

} // namespace
} // namespace morvane
