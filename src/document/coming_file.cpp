// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/coming_file.h"

#include "base/errors.h"
#include "base/text.h"
#include "objects/save.h"

#include <algorithm>

namespace morvane {

namespace {

[[noreturn]] void refuse(std::size_t number) {
    throw RuntimeError(ErrorNumber::SubscriptOutOfRange, "line " + to_text(number));
}

} // namespace

ComingFile ComingFile::model(const OpenSet& set) {
    ComingFile file(set, set.model);
    if (set.replacements.empty()) {
        file.add_opened(1, set.model.upper());
        return file;
    }
    std::size_t next = 1;
    for (const Replacement* replacement : ordered_replacements(set)) {
        file.add_opened(next, replacement->before_line);
        file.add_code(*replacement);
        next = replacement->before_line;
    }
    file.add_opened(next, set.model.upper() + 1); // Save writes the spare element too
    return file;
}

ComingFile ComingFile::frame(const OpenSet& set) {
    ComingFile file(set, set.frame);
    file.add_opened(1, set.frame_changed ? set.frame.upper() + 1 : set.frame.upper());
    return file;
}

void ComingFile::add_opened(std::size_t first, std::size_t end) {
    if (first < end) {
        stretches_.push_back({count() + 1, end - first, first, 0});
    }
}

void ComingFile::add_code(const Replacement& replacement) {
    if (!replacement.code.empty()) {
        const auto position = static_cast<std::size_t>(&replacement - set_->replacements.data());
        stretches_.push_back({count() + 1, replacement.code.size(), 0, position});
    }
}

std::size_t ComingFile::count() const {
    return stretches_.empty() ? 0 : stretches_.back().first + stretches_.back().count - 1;
}

ComingLine ComingFile::line(std::size_t number) const {
    const auto after =
        std::upper_bound(stretches_.begin(), stretches_.end(), number,
                         [](std::size_t n, const Stretch& stretch) { return n < stretch.first; });
    if (number < 1 || number > count()) {
        refuse(number);
    }
    const Stretch& stretch = *(after - 1);
    const std::size_t place = number - stretch.first;
    if (stretch.opened != 0) {
        return {store_->line(stretch.opened + place), stretch.opened + place};
    }
    if (stretch.replacement >= set_->replacements.size() ||
        place >= set_->replacements[stretch.replacement].code.size()) {
        refuse(number);
    }
    return {set_->replacements[stretch.replacement].code[place], 0};
}

std::size_t ComingFile::number_of(std::size_t opened) const {
    for (const Stretch& stretch : stretches_) {
        if (stretch.opened != 0 && opened >= stretch.opened &&
            opened < stretch.opened + stretch.count) {
            return stretch.first + (opened - stretch.opened);
        }
    }
    refuse(opened);
}

} // namespace morvane
