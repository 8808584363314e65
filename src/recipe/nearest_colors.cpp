// SPDX-License-Identifier: GPL-3.0-or-later
#include "recipe/nearest_colors.h"

#include "base/text.h"
#include "source/materials.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace morvane {

namespace {

constexpr std::size_t most_shown = 3;

using Rgb = std::array<int, 3>;

Rgb parts_of(const std::string& color) {
    Rgb parts{};
    for (std::size_t i = 0; i < parts.size() && 2 * i + 2 <= color.size(); ++i) {
        const char* const begin = color.data() + 2 * i;
        std::from_chars(begin, begin + 2, parts[i], 16);
    }
    return parts;
}

int distance(const std::string& a, const std::string& b) {
    const Rgb x = parts_of(a);
    const Rgb y = parts_of(b);
    int sum = 0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        sum += (x[i] - y[i]) * (x[i] - y[i]);
    }
    return sum;
}

// The distance to the nearest of the colours asked for; 0 when none is.
int distance_to(const Assignment& assignment, const std::string& color) {
    int least = assignment.color.empty() ? 0 : std::numeric_limits<int>::max();
    for (const std::string& wanted : assignment.color) {
        least = std::min(least, distance(wanted, color));
    }
    return least;
}

std::string shown(const OpenSet& set, std::size_t row) {
    const Translation& material = set.translation(row);
    return material.color + " (" + std::string(highlight_color_name(material.highlight)) +
           ", material " + to_text(row) + ")";
}

std::string rounding_hint(const Assignment& assignment, const std::string& listed) {
    for (const std::string& wanted : assignment.color) {
        if (differs_by_rounding(listed, wanted)) {
            return "; the list shows " + listed + " for what gmax shows as " + wanted +
                   ", because it cuts off where gmax rounds";
        }
    }
    return {};
}

} // namespace

bool differs_by_rounding(const std::string& listed, const std::string& wanted) {
    const Rgb x = parts_of(listed);
    const Rgb y = parts_of(wanted);
    return listed != wanted && std::equal(x.begin(), x.end(), y.begin(),
                                          [](int a, int b) { return a == b || a == b - 1; });
}

std::string nearest_colors(const OpenSet& set, const Assignment& assignment,
                           const std::vector<std::size_t>& rows_left) {
    if (rows_left.empty()) {
        return {};
    }
    std::vector<std::size_t> rows = rows_left;
    std::stable_sort(rows.begin(), rows.end(), [&](std::size_t a, std::size_t b) {
        return distance_to(assignment, set.translation(a).color) <
               distance_to(assignment, set.translation(b).color);
    });
    std::string text;
    for (std::size_t i = 0; i < std::min(rows.size(), most_shown); ++i) {
        text += (text.empty() ? "" : ", ") + shown(set, rows[i]);
    }
    if (rows.size() > most_shown) {
        text += " and " + to_text(rows.size() - most_shown) + " more";
    }
    const bool by_color = !assignment.color.empty();
    return (by_color ? "the nearest colours that are left: " : "materials that are left: ") + text +
           rounding_hint(assignment, set.translation(rows.front()).color);
}

} // namespace morvane
