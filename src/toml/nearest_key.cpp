// SPDX-License-Identifier: GPL-3.0-or-later
#include "toml/nearest_key.h"

#include "base/text.h"

#include <algorithm>

namespace morvane {

namespace {

// How many changes lead from a to b. Both are short: a name that is much longer than any
// candidate has been set aside before.
std::size_t changes(std::string_view a, std::string_view b) {
    std::vector<std::vector<std::size_t>> cost(a.size() + 1,
                                               std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                cost[i][j] = i + j;
                continue;
            }
            const std::size_t replaced = cost[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            cost[i][j] = std::min({replaced, cost[i - 1][j] + 1, cost[i][j - 1] + 1});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
            }
        }
    }
    return cost[a.size()][b.size()];
}

} // namespace

std::string nearest_key(std::string_view name, const std::vector<std::string_view>& candidates) {
    std::string_view best;
    std::size_t least = 0;
    for (const std::string_view candidate : candidates) {
        if (name.size() > 2 * candidate.size()) {
            continue;
        }
        const std::size_t count = changes(lower_case(name), lower_case(candidate));
        if (2 * count <= candidate.size() && (best.empty() || count < least)) {
            best = candidate;
            least = count;
        }
    }
    return std::string(best);
}

std::string suggestion(std::string_view name, const std::vector<std::string_view>& candidates) {
    if (const std::string nearest = nearest_key(name, candidates); !nearest.empty()) {
        return " (did you mean \"" + nearest + "\"?)";
    }
    std::string all;
    for (const std::string_view candidate : candidates) {
        all += (all.empty() ? "" : ", ") + std::string(candidate);
    }
    return " (there are: " + all + ")";
}

} // namespace morvane
