// SPDX-License-Identifier: GPL-3.0-or-later
#include "source/materials.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "base/text.h"
#include "source/fields.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>

namespace morvane {

namespace {

struct HighlightColor {
    std::string_view digits;
    std::string_view name;
};

constexpr std::array<HighlightColor, 7> highlight_colors{{
    {"FF0000", "Blue"},
    {"00FF00", "Green"},
    {"FFFF00", "Cyan"},
    {"0000FF", "Red"},
    {"FF00FF", "Magenta"},
    {"00FFFF", "Yellow"},
    {"FFFFFF", "White"},
}};

std::size_t find_whole_line(const LineStore& model, std::string_view text) {
    std::size_t i = 1;
    while (i < model.upper() && trim(model.line(i)) != text) {
        ++i;
    }
    return i;
}

// One part of a colour, 0.0 .. 1.0, as two hexadecimal digits.
std::string color_part(std::string_view operand) {
    const double part = std::floor(val(operand) * 255);
    try {
        const std::string padded =
            "00" + hex_text(static_cast<std::uint32_t>(round_to_int32(part)));
        return padded.substr(padded.size() - 2);
    } catch (const RuntimeError& error) {
        throw RuntimeError(error.code(),
                           "the colour's part " + std::string(operand) + " is not between 0 and 1");
    }
}

// The row of a material, without its block; none when it is not marked.
std::optional<Translation> translation_row(const Material& material, std::size_t number,
                                           std::size_t rows_before) {
    const auto index = match_highlight(material.text);
    if (!index) {
        return std::nullopt;
    }
    if (rows_before == OpenSet::max_translations) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange, "more than 300 marked materials");
    }
    return Translation{number,
                       material.list_line,
                       {},
                       std::string(highlight_digits(*index)),
                       material_color(material.text),
                       {},
                       rows_before + 1};
}

// The line without the "; " that each rewrite has put in front of it.
std::string_view without_comment_marks(std::string_view line) {
    while (line.starts_with("; ")) {
        line.remove_prefix(2);
    }
    return line;
}

} // namespace

std::vector<Material> find_material_list(const LineStore& model) {
    std::vector<Material> materials;
    std::size_t i = find_whole_line(model, "MATERIAL_LIST_BEGIN") + 1;
    while (i < model.upper() && trim(model.line(i)) != "MATERIAL_LIST_END") {
        materials.push_back({std::string(trim(model.line(i))), i});
        ++i;
    }
    return materials;
}

std::size_t find_vertex_list(const LineStore& model) {
    return find_whole_line(model, "VERTEX_LIST_BEGIN") + 1;
}

std::optional<int> match_highlight(std::string_view material_line) {
    const FieldArray fields = split_fields(material_line);
    int index = 0;
    for (const std::size_t operand : {8, 9, 10}) {
        const double part = val(fields[operand]);
        if (part != 0 && part != 1) {
            return std::nullopt;
        }
        index = 2 * index + (part == 1 ? 1 : 0);
    }
    return index == 0 ? std::nullopt : std::optional(index);
}

std::string_view highlight_digits(int color_index) {
    return highlight_colors.at(static_cast<std::size_t>(color_index) - 1).digits;
}

std::string_view highlight_color_name(std::string_view digits) {
    for (const HighlightColor& color : highlight_colors) {
        if (color.digits == digits) {
            return color.name;
        }
    }
    return {};
}

std::string material_color(std::string_view material_line) {
    const FieldArray fields = split_fields(material_line);
    return color_part(fields[1]) + color_part(fields[2]) + color_part(fields[3]);
}

std::string row_and_number(const Translation& material) {
    return "row " + to_text(material.row) + " (MATERIAL " + to_text(material.number) + ")";
}

std::string full_name(const Translation& material) {
    return "row " + to_text(material.row) + " (MATERIAL " + to_text(material.number) + ", " +
           std::string(highlight_color_name(material.highlight)) + ", " + material.color + ")";
}

std::string swap_rgb(std::string_view color) {
    const std::string_view last = color.substr(color.size() < 2 ? 0 : color.size() - 2);
    const std::string_view middle = color.size() < 3 ? std::string_view() : color.substr(2, 2);
    return std::string(last) + std::string(middle) + std::string(color.substr(0, 2));
}

MaterialBlock find_material_block(const LineStore& model, std::size_t number) {
    return find_material_blocks(model, {number}).front();
}

bool is_rewritten(const LineStore& model, const MaterialBlock& block) {
    for (std::size_t i = block.selecting_line + 1; i <= model.upper(); ++i) {
        const std::string_view line = model.line(i);
        if (line.starts_with("; ")) {
            if (trim(without_comment_marks(line)).starts_with("DRAW_TRI_BEGIN")) {
                return true;
            }
        } else if (trim(line).starts_with("DRAW_TRI") || trim(line).starts_with("MATERIAL")) {
            return false; // a block that is still open, or already that of the next material
        }
    }
    return false;
}

bool has_rewritten_block(const LineStore& model) {
    try {
        const auto rows = build_translation_list(model, find_material_list(model));
        return std::any_of(rows.begin(), rows.end(),
                           [&](const Translation& row) { return is_rewritten(model, row.block); });
    } catch (const RuntimeError&) {
        return false; // no export that Process could have rewritten
    }
}

std::vector<Translation> build_translation_list(const LineStore& model,
                                                const std::vector<Material>& materials) {
    std::vector<Translation> rows;
    std::vector<std::size_t> numbers;
    for (std::size_t i = 0; i < materials.size(); ++i) {
        const std::optional<Translation> row = with_line(
            materials[i].list_line, [&] { return translation_row(materials[i], i, rows.size()); });
        if (row) {
            numbers.push_back(i);
            rows.push_back(*row);
        }
    }
    const std::vector<MaterialBlock> blocks = find_material_blocks(model, numbers);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        rows[row].block = blocks[row];
    }
    return rows;
}

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
