// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/mini_assembler.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <map>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace morvane::test {

namespace {

[[noreturn]] void fail(const std::string& line, const std::string& why) {
    throw std::runtime_error(why + " in line '" + line + "'");
}

std::string lower(std::string text) {
    for (char& c : text) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return text;
}

std::string stripped(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos) {
        return "";
    }
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// A place whose value is known only when all labels are.
struct Gap {
    std::size_t at;
    std::size_t width;
    std::string plus;
    std::string minus; // empty: none
    std::string line;
};

class Assembler {
  public:
    explicit Assembler(IncludedText included) : included_(std::move(included)) {}

    void text(const std::string& source, int depth) {
        std::istringstream lines(source);
        for (std::string line; std::getline(lines, line);) {
            one_line(stripped(line), depth);
        }
    }

    std::string finish() {
        for (const Gap& gap : gaps_) {
            const long long value =
                offset(gap.plus, gap.line) - (gap.minus.empty() ? 0 : offset(gap.minus, gap.line));
            for (std::size_t i = 0; i < gap.width; ++i) {
                bytes_[gap.at + i] = static_cast<char>((value >> (8 * i)) & 0xFF);
            }
        }
        return bytes_;
    }

  private:
    void one_line(const std::string& line, int depth) {
        if (line.empty() || line[0] == ';') {
            return;
        }
        const std::size_t blank = std::min(line.find_first_of(" \t"), line.size());
        const std::string first = line.substr(0, blank);
        const std::string rest = stripped(line.substr(blank));
        const std::string keyword = lower(first);
        if (lower(rest).starts_with("label") && stripped(lower(rest.substr(5))) == "word") {
            if (!labels_.emplace(keyword, bytes_.size()).second) {
                fail(line, "a label twice");
            }
        } else if (keyword == "include" && !rest.empty()) {
            if (depth > 8) {
                fail(line, "includes without end");
            }
            text(included_(rest), depth + 1);
        } else if (keyword == "db" || keyword == "dw" || keyword == "dd") {
            operands(rest, keyword == "db" ? 1 : keyword == "dw" ? 2 : 4, line);
        } else {
            fail(line, "an unknown statement");
        }
    }

    void operands(const std::string& text, std::size_t width, const std::string& line) {
        std::string operand;
        bool quoted = false;
        for (const char c : text) {
            if (c == ',' && !quoted) {
                one_operand(stripped(operand), width, line);
                operand.clear();
                continue;
            }
            quoted = quoted != (c == '"');
            operand += c;
        }
        one_operand(stripped(operand), width, line);
    }

    void one_operand(const std::string& text, std::size_t width, const std::string& line) {
        const std::size_t dup = lower(text).find(" dup(");
        if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
            string(text.substr(1, text.size() - 2), width, line);
        } else if (lower(text).starts_with("(offset ")) {
            distance(text, width, line);
        } else if (dup != std::string::npos && text.back() == ')') {
            const long long value = number(text.substr(dup + 5, text.size() - dup - 6), line);
            for (long long i = number(text.substr(0, dup), line); i > 0; --i) {
                put(value, width, line);
            }
        } else {
            put(number(text, line), width, line);
        }
    }

    // "(offset A)" or "(offset A) - (offset B)".
    void distance(const std::string& text, std::size_t width, const std::string& line) {
        const std::size_t minus = text.find('-');
        const std::string plus = offset_name(stripped(text.substr(0, minus)), line);
        const std::string less =
            minus == std::string::npos ? "" : offset_name(stripped(text.substr(minus + 1)), line);
        gaps_.push_back({bytes_.size(), width, plus, less, line});
        bytes_.append(width, '\0');
    }

    static std::string offset_name(const std::string& text, const std::string& line) {
        if (!lower(text).starts_with("(offset ") || text.back() != ')') {
            fail(line, "'" + text + "' is no offset");
        }
        return stripped(text.substr(8, text.size() - 9));
    }

    void string(const std::string& text, std::size_t width, const std::string& line) {
        if (width != 1 || text.find('"') != std::string::npos) {
            fail(line, "a string that cannot be");
        }
        bytes_ += text;
    }

    static long long number(const std::string& text, const std::string& line) {
        const bool hexadecimal = lower(text).ends_with('h');
        const std::string digits = hexadecimal             ? text.substr(0, text.size() - 1)
                                   : text.starts_with('-') ? text.substr(1)
                                                           : text;
        const char* const allowed = hexadecimal ? "0123456789ABCDEFabcdef" : "0123456789";
        if (digits.empty() || digits.size() > 12 || digits[0] > '9' ||
            digits.find_first_not_of(allowed) != std::string::npos) {
            fail(line, "'" + text + "' is no number");
        }
        const long long value = std::stoll(digits, nullptr, hexadecimal ? 16 : 10);
        return text.starts_with('-') ? -value : value;
    }

    void put(long long value, std::size_t width, const std::string& line) {
        const long long range = 1LL << (8 * width);
        if (value >= range || value < -(range / 2)) {
            fail(line, "a number too large");
        }
        for (std::size_t i = 0; i < width; ++i) {
            bytes_ += static_cast<char>((value >> (8 * i)) & 0xFF);
        }
    }

    long long offset(const std::string& label, const std::string& line) const {
        const auto found = labels_.find(lower(label));
        if (found == labels_.end()) {
            fail(line, "no label '" + label + "'");
        }
        return static_cast<long long>(found->second);
    }

    IncludedText included_;
    std::string bytes_;
    std::map<std::string, std::size_t> labels_;
    std::vector<Gap> gaps_;
};

} // namespace

std::string assemble(const std::string& source, const IncludedText& included) {
    Assembler assembler(included);
    assembler.text(source, 0);
    return assembler.finish();
}

} // namespace morvane::test
