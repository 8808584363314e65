#include "scene/model_text.h"

#include "objects/save.h"

namespace morvane::scene {

namespace {

void add_generated(ModelText& text, const OpenSet& set, const ReplacementRecord& record) {
    for (std::string& line : generated_lines(set, record)) {
        text.lines.push_back({text.generated.emplace_back(std::move(line)), 0});
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
    text.lines.reserve(set.model.count() + set.generated.size());
    auto record = set.records.begin();
    for (std::size_t i = 1; i <= set.model.upper(); ++i) {
        for (; record != set.records.end() && record->insertion_line == i; ++record) {
            add_generated(text, set, *record);
        }
        if (i <= set.model.count()) {
            text.lines.push_back({set.model.line(i), static_cast<std::uint32_t>(i)});
        }
    }
    for (; record != set.records.end(); ++record) {
        add_generated(text, set, *record);
    }
    return text;
}

} // namespace morvane::scene
