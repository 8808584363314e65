#include "core/disk.h"
#include "core/line_store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>

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

TEST(LineStoreRead, IsTheSameAsSplittingTheWholeFile) {
    std::mt19937 random(20021);
    for (const char* letters : {"\r\n", "ab\r\n", "aaaaaaaaaaaaaaa\n", "aaaaaaaaaaaaaaa\r", "a"}) {
        const std::string bytes = random_text(random, 1'300'000 + random() % 1000, letters);
        MemoryFile file(bytes);
        expect_same_lines(LineStore::read(file), split_whole(bytes));
    }
}

TEST(LineStoreRead, ALineEndAcrossTheEdgeOfAStretchIsOne) {
    const std::size_t stretch = std::size_t{512} * 1024;
    for (std::size_t before = stretch - 3; before <= stretch + 2; ++before) {
        for (const char* end : {"\r\n", "\n", "\r", "\n\r", "\r\r\n"}) {
            const std::string bytes = std::string(before, 'x') + end + "last";
            MemoryFile file(bytes);
            expect_same_lines(LineStore::read(file), split_whole(bytes));
        }
    }
}

TEST(LineStoreRead, AFileThatBecameShorterEndsWhereItEnds) {
    for (const std::size_t held : {std::size_t{0}, std::size_t{7}, std::size_t{700'001}}) {
        const std::string bytes = std::string(held, 'x');
        MemoryFile file(bytes, 2'000'000);
        expect_same_lines(LineStore::read(file), split_whole(bytes));
    }
}

TEST(LineStoreRead, AnEmptyFileHasNoLines) {
    MemoryFile file("");
    EXPECT_EQ(LineStore::read(file).element0(), "1");
}

} // namespace
} // namespace morvane
