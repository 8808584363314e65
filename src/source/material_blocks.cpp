// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "base/text.h"
#include "source/fields.h"
#include "source/materials.h"

#include <algorithm>
#include <unordered_map>

namespace morvane {

namespace {

constexpr std::size_t not_found = 0;

// The state of one material's search while the lines go by.
struct Search {
    MaterialBlock block;
    bool drawing = false; // its DRAW_TRI line has been seen
};

class BlockFinder {
  public:
    BlockFinder(const LineStore& model, const std::vector<std::size_t>& numbers)
        : model_(model), searches_(numbers.size()) {
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            by_key_["MATERIAL " + to_text(numbers[i])].push_back(i);
        }
    }

    std::vector<MaterialBlock> run() {
        for (std::size_t i = 1; i < model_.upper(); ++i) {
            const std::string_view line = model_.line(i);
            if (overfull_line_ == not_found && has_too_many_operands(line)) {
                overfull_line_ = i;
            }
            look_at(i, line);
        }
        std::vector<MaterialBlock> blocks;
        for (Search& search : searches_) {
            require_reached(search.block.selecting_line);
            MaterialBlock& block = search.block;
            block.selecting_line =
                block.selecting_line == not_found ? model_.upper() : block.selecting_line;
            block.block_end = block.block_end == not_found ? model_.upper() : block.block_end;
            blocks.push_back(block);
        }
        return blocks;
    }

  private:
    // Fast rejection: most lines differ from those that matter in their first letter.
    void look_at(std::size_t index, std::string_view line) {
        std::size_t start = 0;
        while (start < line.size() && (line[start] == ' ' || line[start] == '\x07')) {
            ++start;
        }
        if (start == line.size()) {
            return;
        }
        if (line[start] == 'D' && (!open_.empty() || !selected_.empty())) {
            look_at_drawing(index, trim(line));
        } else if (line.substr(start).starts_with("MATERIAL") && !has_too_many_operands(line)) {
            select(index, split_fields(line));
        }
    }

    void select(std::size_t index, const FieldArray& fields) {
        const std::string key = std::string(fields[0]) + " " + std::string(fields[1]);
        const auto found = by_key_.find(std::string(trim(key)));
        if (found == by_key_.end()) {
            if (fields[0] == "MATERIAL") {
                selected_.clear();
            }
            return;
        }
        selected_ = found->second;
        blocks_begun_ = 0;
        for (const std::size_t i : found->second) {
            MaterialBlock& block = searches_[i].block;
            if (block.selecting_line != not_found) {
                ++block.further_places;
            } else {
                block.selecting_line = index;
                open_.push_back(i);
            }
        }
    }

    void look_at_drawing(std::size_t index, std::string_view line) {
        if (line.starts_with("DRAW_TRI_BEGIN")) {
            if (++blocks_begun_ > 1) {
                for (const std::size_t i : selected_) {
                    ++searches_[i].block.further_places;
                }
            }
        } else if (line.starts_with("DRAW_TRI ")) {
            for (const std::size_t i : open_) {
                searches_[i].drawing = true;
            }
        } else if (line.starts_with("DRAW_TRI_END")) {
            std::erase_if(open_, [&](std::size_t i) {
                if (searches_[i].drawing) {
                    searches_[i].block.block_end = index;
                }
                return searches_[i].drawing;
            });
        }
    }

    // A search splits every line up to the one it looks for, and a line that cannot be split ends
    // it.
    void require_reached(std::size_t selecting_line) const {
        const bool stopped = overfull_line_ != not_found &&
                             (selecting_line == not_found || selecting_line >= overfull_line_);
        if (stopped) {
            throw RuntimeError(ErrorNumber::SubscriptOutOfRange, "a line of more than 40 operands",
                               overfull_line_);
        }
    }

    const LineStore& model_;
    std::vector<Search> searches_;
    std::unordered_map<std::string, std::vector<std::size_t>> by_key_;
    std::vector<std::size_t> open_;     // searches whose block end is still to come
    std::vector<std::size_t> selected_; // searches of the material that is selected
    std::size_t blocks_begun_ = 0;      // since it was selected
    std::size_t overfull_line_ = not_found;
};

} // namespace

std::vector<MaterialBlock> find_material_blocks(const LineStore& model,
                                                const std::vector<std::size_t>& numbers) {
    return BlockFinder(model, numbers).run();
}

} // namespace morvane
