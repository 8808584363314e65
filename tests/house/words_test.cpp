// What the project's files say stands for itself: no reader should meet a pointer to a text that
// is not here. The phrases are put together below so that this file does not hold them.

#include "house/checkout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace morvane::test {
namespace {

using testing::IsEmpty;

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) {
        return static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    });
    return text;
}

bool is_word_character(char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

// Whether a word ends, or begins, between the characters at `at` - 1 and `at`.
bool is_word_edge(std::string_view text, std::size_t at) {
    const bool before = at > 0 && is_word_character(text[at - 1]);
    const bool behind = at < text.size() && is_word_character(text[at]);
    return before != behind;
}

bool is_digit_in(std::string_view text, std::size_t at, char low, char high) {
    return at < text.size() && text[at] >= low && text[at] <= high;
}

// A numbered chapter: the word, a blank, a digit, a point, a digit.
bool is_numbered(std::string_view text, std::size_t at, std::size_t end) {
    return is_word_edge(text, at) && is_digit_in(text, end, '1', '7') && text[end + 1] == '.' &&
           is_digit_in(text, end + 2, '1', '9') && is_word_edge(text, end + 3);
}

bool is_whole(std::string_view text, std::size_t at, std::size_t end) {
    return is_word_edge(text, at) && is_word_edge(text, end);
}

bool is_anything(std::string_view /*text*/, std::size_t /*at*/, std::size_t /*end*/) {
    return true;
}

struct Phrase {
    std::string text; // in lower case
    bool (*counts)(std::string_view, std::size_t, std::size_t);
};

std::vector<Phrase> unwanted_phrases() {
    const std::string p = "part";
    const std::string s = "spec";
    return {{p + " ", is_numbered},
            {"the " + p, is_whole},
            {"the " + s, is_whole},
            {s + ".md", is_whole},
            {s + "ification", is_anything}};
}

std::string line_at(std::string_view text, std::size_t at) {
    const std::size_t begin = at == 0 ? 0 : text.rfind('\n', at - 1) + 1;
    return std::string(text.substr(begin, text.find('\n', at) - begin));
}

std::vector<std::string> unwanted_in(const std::string& name, const std::string& text) {
    std::vector<std::string> found;
    for (const Phrase& phrase : unwanted_phrases()) {
        for (std::size_t at = text.find(phrase.text); at != std::string::npos;
             at = text.find(phrase.text, at + 1)) {
            if (phrase.counts(text, at, at + phrase.text.size())) {
                found.push_back(name + ": " + line_at(text, at));
            }
        }
    }
    return found;
}

bool is_image(std::string_view path) {
    return path.ends_with(".png") || path.ends_with(".ico");
}

TEST(House, WordsThatPointElsewhereAreFound) {
    const std::string p = "par";
    EXPECT_EQ(unwanted_in("x", "see " + p + "t 3.4, there").size(), 1U);
    EXPECT_EQ(unwanted_in("x", "first\nof the " + p + "t\nlast"),
              std::vector<std::string>{"x: of the " + p + "t"});
    EXPECT_THAT(unwanted_in("x", p + "t 8.1, counterpart 1.2, the " + p + "ts"), IsEmpty());
}

TEST(House, NoFilePointsElsewhere) {
    std::vector<std::string> found;
    for (const CheckedFile& file : checkout_files()) {
        for (const std::string& text : {lower(file.path), lower(file.text)}) {
            if (!is_image(file.path)) {
                const std::vector<std::string> here = unwanted_in(file.path, text);
                found.insert(found.end(), here.begin(), here.end());
            }
        }
    }
    EXPECT_THAT(found, IsEmpty());
}

} // namespace
} // namespace morvane::test
