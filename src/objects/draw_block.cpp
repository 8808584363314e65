// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/draw_block.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "base/text.h"

#include <string>

namespace morvane {

DrawBlock::DrawBlock(const LineStore& model, std::size_t vertex_list, const Translation& material)
    : model_(model), first_line_(material.block.selecting_line + 1), line_(first_line_),
      given_up_(material.given_up),
      first_vertex_(val(get_field(text(line_), 1)) + static_cast<double>(vertex_list)) {}

std::string_view DrawBlock::text(std::size_t index) const {
    const std::string_view line = model_.line(index);
    const bool given_up = index >= first_line_ && index < first_line_ + given_up_;
    return given_up ? line.substr(2) : line;
}

bool DrawBlock::at_triangle() const {
    return trim(text(line_)).starts_with("DRAW_TRI ");
}

BlockTriangle DrawBlock::triangle() const {
    const FieldArray fields = split_fields(text(line_));
    return {fields, vertex(fields[1]), line_ + 1};
}

double DrawBlock::vertex_line(std::string_view number) const {
    return first_vertex_ + val(number);
}

FieldArray DrawBlock::vertex(std::string_view number) const {
    const std::size_t index = to_index(vertex_line(number));
    if (index == 0 || index > model_.upper()) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange,
                           "vertex " + std::string(number) + " would be line " + to_text(index) +
                               ", and the model file has " + to_text(model_.count()) + " lines");
    }
    // The lines walked so far count as commented out.
    return split_fields(index >= first_line_ && index < line_ ? ";" : trim(text(index)));
}

} // namespace morvane
