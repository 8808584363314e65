// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/model_text.h"

#include "objects/save.h"

namespace morvane::scene {

namespace {

void add_generated(ModelText& text, const Replacement& replacement) {
    for (const std::string& line : replacement.code) {
        text.lines.push_back({text.generated.emplace_back(line), 0});
    }
}

} // namespace

ModelText model_text(const LineStore& model) {
    ModelText text;
    text.lines.reserve(model.count());
    for (std::size_t i = 1; i <= model.count(); ++i) {
        text.lines.push_back({model.line(i), static_cast<std::uint32_t>(i)});
    }
    return text;
}

ModelText model_text(const OpenSet& set) {
    ModelText text;
    require_code(set);
    const std::vector<const Replacement*> ordered = ordered_replacements(set);
    auto next = ordered.begin();
    text.lines.reserve(set.model.count());
    for (std::size_t i = 1; i <= set.model.upper(); ++i) {
        for (; next != ordered.end() && (*next)->before_line == i; ++next) {
            add_generated(text, **next);
        }
        if (i <= set.model.count()) {
            text.lines.push_back({set.model.line(i), static_cast<std::uint32_t>(i)});
        }
    }
    for (; next != ordered.end(); ++next) {
        add_generated(text, **next);
    }
    return text;
}

} // namespace morvane::scene
