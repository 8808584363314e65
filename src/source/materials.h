// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/open_set.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// Every line between the MATERIAL_LIST_BEGIN and MATERIAL_LIST_END lines, whatever it holds.
std::vector<Material> find_material_list(const LineStore& model);

/// The index of the line after the first VERTEX_LIST_BEGIN line; without one, the index after the
/// spare element.
std::size_t find_vertex_list(const LineStore& model);

/// The colour index 1 .. 7 when operands 8, 9 and 10 of a material line are each 0 or 1 and not
/// all 0: 4 * red + 2 * green + blue.
std::optional<int> match_highlight(std::string_view material_line);

/// The six hex digits of a colour index 1 .. 7, in the platform's blue-green-red order.
std::string_view highlight_digits(int color_index);
/// "Blue", "Green", "Cyan", "Red", "Magenta", "Yellow" or "White" for such digits; empty for any
/// others.
std::string_view highlight_color_name(std::string_view digits);

/// Operands 1, 2 and 3 of a material line (0.0 .. 1.0 each) as RRGGBB.
std::string material_color(std::string_view material_line);

/// "row 3 (MATERIAL 12)": the two numbers by which a marked material is known, its place in the
/// list and its number in the model file.
std::string row_and_number(const Translation& material);
/// The same with its two colours: "row 3 (MATERIAL 12, Red, FF7F00)".
std::string full_name(const Translation& material);

/// Turns RRGGBB into BBGGRR and back. The text has six characters.
std::string swap_rgb(std::string_view color);

/// Finds where a material (zero-based number) is selected and where the draw block behind that
/// ends. Fields are compared as split_fields stores them, so the number is matched without its
/// last character when it is the line's last operand. Without a selecting line both indices are
/// that of the spare element.
MaterialBlock find_material_block(const LineStore& model, std::size_t number);

/// find_material_block for each of the numbers, in one pass over the model.
std::vector<MaterialBlock> find_material_blocks(const LineStore& model,
                                                const std::vector<std::size_t>& numbers);

/// Whether the lines after a material's selecting line show that its block was rewritten before:
/// its DRAW_TRI_BEGIN line is commented out with "; ", as Process does it. What a user has
/// commented out inside a block that is still open does not count. False for a material that is not
/// drawn.
bool is_rewritten(const LineStore& model, const MaterialBlock& block);

/// Whether any marked material of a model shows that it was rewritten. False for a model whose
/// materials cannot be read.
bool has_rewritten_block(const LineStore& model);

/// The translation table: a row for each marked material, in the order of the material list.
/// Throws RuntimeError with the line of the model: SubscriptOutOfRange beyond 300 rows and for a
/// line of more than 40 operands, Overflow for a colour far out of range.
std::vector<Translation> build_translation_list(const LineStore& model,
                                                const std::vector<Material>& materials);

} // namespace morvane
