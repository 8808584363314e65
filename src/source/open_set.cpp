// SPDX-License-Identifier: GPL-3.0-or-later
#include "source/open_set.h"

#include "base/errors.h"
#include "base/text.h"

#include <algorithm>
#include <utility>

namespace morvane {

const Translation& OpenSet::translation(std::size_t row) const {
    if (row < 1 || row > translations.size()) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange, "material " + to_text(row));
    }
    return translations[row - 1];
}

Translation& OpenSet::translation(std::size_t row) {
    return const_cast<Translation&>(std::as_const(*this).translation(row));
}

std::size_t OpenSet::unprocessed() const {
    return static_cast<std::size_t>(
        std::count_if(translations.begin(), translations.end(),
                      [](const Translation& row) { return row.processed.empty(); }));
}

} // namespace morvane
