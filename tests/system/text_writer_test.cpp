// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "source/line_store.h"
#include "source/source_set.h"
#include "support/thrown.h"
#include "system/disk.h"
#include "system/replace_files.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>

namespace morvane {
namespace {

using test::thrown_by;

/// A file that takes at most so many bytes with one call, and so many altogether.
class NarrowFile final : public WritableFile {
  public:
    NarrowFile(std::size_t at_once, std::size_t altogether)
        : at_once_(at_once), altogether_(altogether) {}

    std::size_t write(std::string_view bytes) override {
        const std::size_t taken = std::min({bytes.size(), at_once_, altogether_ - content.size()});
        content += bytes.substr(0, taken);
        return taken;
    }
    void truncate(std::uint64_t /*size*/) override {}
    void sync() override {}
    void close() override {}

    std::string content;

  private:
    std::size_t at_once_;
    std::size_t altogether_;
};

constexpr std::size_t no_limit = 1'000'000'000;

TEST(TextWriter, ShortWritesAreContinued) {
    NarrowFile file(7, no_limit);
    TextWriter out(file);
    out.line("one");
    out.line("");
    out.write("a longer text without an end");
    out.flush();
    EXPECT_EQ(file.content, "one\r\n\r\na longer text without an end");
}

TEST(TextWriter, FullFileIsAnError) {
    NarrowFile file(no_limit, 10);
    TextWriter out(file);
    out.write("more than ten bytes");
    EXPECT_EQ(thrown_by([&] { out.flush(); }).number(), 61);
}

TEST(TextWriter, OrderOfShortAndLongPieces) {
    std::mt19937 random(1);
    NarrowFile file(300'000, no_limit);
    TextWriter out(file);
    std::string expected;
    for (int i = 0; i < 60; ++i) {
        // No byte is like its neighbours, so that none can stand for another.
        std::string piece(random() % 3 == 0 ? random() % 2'500'000 : random() % 50, ' ');
        for (char& byte : piece) {
            byte = static_cast<char>(random());
        }
        out.write(piece);
        expected += piece;
    }
    out.flush();
    EXPECT_TRUE(file.content == expected);
}

LineStore random_store(std::mt19937& random) {
    constexpr std::string_view ends[]{"\r\n", "\n", "\r"};
    const bool mixed = random() % 4 == 0;
    std::string text;
    for (std::size_t lines = random() % 10; lines > 0; --lines) {
        text += std::string(random() % 3, 'x');
        text += ends[mixed ? random() % 3 : 0];
    }
    text += std::string(random() % 2, 'y');
    FileBytes bytes{std::make_unique<char[]>(text.size()), text.size()};
    std::memcpy(bytes.data.get(), text.data(), text.size());
    return LineStore(std::move(bytes));
}

void edit(std::mt19937& random, LineStore& store) {
    const std::size_t at = 1 + random() % store.upper();
    switch (random() % 4) {
    case 0:
        store.set_line(at, std::string(random() % 3, 's'));
        break;
    case 1:
        store.insert_lines(at, {"", "i"});
        break;
    case 2:
        store.comment_out(at);
        break;
    default:
        if (at < store.upper()) {
            store.erase_lines(at, at);
        }
    }
}

TEST(TextWriter, LinesOfAStoreOneByOneAndInPiecesAreTheSame) {
    std::mt19937 random(2);
    for (int i = 0; i < 20'000; ++i) {
        LineStore store = random_store(random);
        for (std::size_t edits = random() % 4; edits > 0; --edits) {
            edit(random, store);
        }
        const std::size_t first = 1 + random() % store.upper();
        const std::size_t last = random() % (store.upper() + 1);
        std::string expected;
        for (std::size_t line = first; line <= last; ++line) {
            expected += std::string(store.line(line)) + "\r\n";
        }
        NarrowFile file(no_limit, no_limit);
        TextWriter out(file);
        write_lines(out, store, first, last);
        out.flush();
        ASSERT_EQ(file.content, expected) << first << ".." << last;
    }
}

} // namespace
} // namespace morvane
