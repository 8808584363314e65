// SPDX-License-Identifier: GPL-3.0-or-later
#include "aircraft/convert_calls.h"

#include "base/text.h"

#include <string>
#include <string_view>

namespace morvane {

namespace {

// Whether the line is a call by `keyword` with a blank after it: then `rest` is what follows the
// keyword, that blank included.
bool is_call(std::string_view line, std::string_view keyword, std::string_view& rest) {
    const std::string_view text = trim(line);
    if (!text.starts_with(keyword) || text.size() == keyword.size() ||
        text[keyword.size()] != ' ') {
        return false;
    }
    rest = text.substr(keyword.size());
    return true;
}

} // namespace

void convert_calls32(LineStore& store) {
    for (std::size_t i = 1; i <= store.upper(); ++i) {
        std::string_view rest;
        // The rest keeps its own blank, so that two or more follow the new keyword.
        if (is_call(store.line(i), "VINSTANCE_CALL", rest)) {
            store.set_line(i, "    VINSTANCE_CALL32 " + std::string(rest));
        } else if (is_call(store.line(i), "SHADOW_VICALL", rest)) {
            store.set_line(i, "    SHADOW_VICALL32 " + std::string(rest));
        }
    }
}

} // namespace morvane
