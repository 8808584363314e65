#include "libcomp/mini_assembler.h"

#include <cctype>
#include <cstdint>
#include <map>
#include <regex>
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
        static const std::regex label(R"(([A-Za-z_]\w*)\s+label\s+word)", std::regex::icase);
        static const std::regex include(R"(include\s+(.*))", std::regex::icase);
        static const std::regex data(R"(d([bwd])\s+(.*))", std::regex::icase);
        std::smatch match;
        if (line.empty() || line[0] == ';') {
            return;
        }
        if (std::regex_match(line, match, label)) {
            if (!labels_.emplace(lower(match[1]), bytes_.size()).second) {
                fail(line, "a label twice");
            }
        } else if (std::regex_match(line, match, include)) {
            if (depth > 8) {
                fail(line, "includes without end");
            }
            text(included_(match[1]), depth + 1);
        } else if (std::regex_match(line, match, data)) {
            const char size = lower(match[1])[0];
            operands(match[2], size == 'b' ? 1 : size == 'w' ? 2 : 4, line);
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
        static const std::regex distance(R"(\(offset (\w+)\)(?:\s*-\s*\(offset (\w+)\))?)",
                                         std::regex::icase);
        static const std::regex repeat(R"((\d+)\s+dup\s*\(([^()]*)\))", std::regex::icase);
        std::smatch match;
        if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
            string(text.substr(1, text.size() - 2), width, line);
        } else if (std::regex_match(text, match, distance)) {
            gaps_.push_back({bytes_.size(), width, match[1], match[2], line});
            bytes_.append(width, '\0');
        } else if (std::regex_match(text, match, repeat)) {
            for (long long i = number(match[1], line); i > 0; --i) {
                put(number(match[2], line), width, line);
            }
        } else {
            put(number(text, line), width, line);
        }
    }

    void string(const std::string& text, std::size_t width, const std::string& line) {
        if (width != 1 || text.find('"') != std::string::npos) {
            fail(line, "a string that cannot be");
        }
        bytes_ += text;
    }

    static long long number(const std::string& text, const std::string& line) {
        static const std::regex decimal(R"(-?\d{1,10})");
        static const std::regex hexadecimal(R"(\d[0-9A-Fa-f]*[hH])");
        if (std::regex_match(text, decimal)) {
            return std::stoll(text);
        }
        if (std::regex_match(text, hexadecimal)) {
            return std::stoll(text.substr(0, text.size() - 1), nullptr, 16);
        }
        fail(line, "'" + text + "' is no number");
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
