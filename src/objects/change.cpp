// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/change.h"

#include <utility>

namespace morvane {

FrameChange::FrameChange(const OpenSet& set)
    : lines_(set.frame), dictionary_(set.dictionary), frame_changed_(set.frame_changed) {}

void FrameChange::exchange(OpenSet& set) {
    std::swap(set.frame, lines_);
    std::swap(set.dictionary, dictionary_);
    std::swap(set.frame_changed, frame_changed_);
}

std::size_t FrameChange::bytes() const {
    return sizeof *this + lines_.upper() * sizeof(std::string_view);
}

Change::Change(const OpenSet& set, const Translation& material, std::size_t lines)
    : row_(material.row), block_(set.model.keep_lines(material.block.selecting_line + 1, lines)),
      processed_(material.processed), given_up_(material.given_up), bgl_end_(set.bgl_end),
      replacements_(set.replacements.size()), frame_changed_(set.frame_changed) {}

void Change::keep_frame(const OpenSet& set) {
    frame_.emplace(set);
}

void Change::exchange(OpenSet& set) {
    Translation& material = set.translation(row_);
    set.model.exchange(block_);
    std::swap(material.processed, processed_);
    std::swap(material.given_up, given_up_);
    std::swap(set.bgl_end, bgl_end_);
    if (!frame_) {
        std::swap(set.frame_changed, frame_changed_);
    } else {
        frame_->exchange(set);
    }
    if (set.replacements.size() > replacements_) {
        replacement_ = std::move(set.replacements.back());
        set.replacements.pop_back();
    } else if (replacement_) {
        set.replacements.push_back(std::move(*replacement_));
        replacement_.reset();
    }
}

std::size_t Change::bytes() const {
    std::size_t sum = sizeof(Change) + block_.bytes();
    if (replacement_) {
        for (const std::string& line : replacement_->code) {
            sum += sizeof(std::string) + line.capacity();
        }
    }
    return sum + (frame_ ? frame_->bytes() : 0);
}

} // namespace morvane
