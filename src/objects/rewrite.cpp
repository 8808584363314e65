// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/rewrite.h"

#include <iterator>
#include <utility>

namespace morvane {

namespace {

void append(std::vector<std::string>& code, std::vector<std::string> lines) {
    code.insert(code.end(), std::make_move_iterator(lines.begin()),
                std::make_move_iterator(lines.end()));
}

} // namespace

Rewrite generate_code(DrawBlock& block, const ObjectCode& kind) {
    Rewrite result;
    block.next_line();
    if (block.at_triangle()) {
        result.code = kind.opening;
    }
    for (; block.at_triangle(); block.next_line()) {
        auto lines = kind.triangle(block, block.triangle());
        if (!lines) {
            return {{}, block.line() - block.first_line(), 0, block.line()};
        }
        result.count += lines->size();
        append(result.code, std::move(*lines));
    }
    result.lines = block.line() + 1 - block.first_line();
    result.count += kind.closing_counts ? kind.closing.size() : 0;
    append(result.code, kind.closing);
    return result;
}

} // namespace morvane
