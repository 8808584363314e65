// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/literals.h"
#include "problems/set_checks.h"

namespace morvane {

namespace {

// A line of a block as it was exported.
Statement exported(std::string_view line) {
    const std::string_view text = cut_white(line);
    return read_statement(text.starts_with(';') ? text.substr(1) : text);
}

std::optional<double> coordinate(std::string_view text) {
    if (const auto real = real_number(text)) {
        return real;
    }
    const auto whole = whole_number(text);
    return whole ? std::optional(static_cast<double>(*whole)) : std::nullopt;
}

std::optional<Corner> vertex_at(const LineStore& model, std::int64_t line) {
    if (line < 1 || line > static_cast<std::int64_t>(model.count())) {
        return std::nullopt;
    }
    const Statement vertex = read_statement(model.line(static_cast<std::size_t>(line)));
    const Operands operands(vertex.rest);
    const auto x = coordinate(operands[1]);
    const auto y = coordinate(operands[2]);
    const auto z = coordinate(operands[3]);
    return vertex.macro == MacroId::VertexDef && x && y && z ? std::optional(Corner{*x, *y, *z})
                                                             : std::nullopt;
}

std::optional<RowTriangle> triangle_at(const OpenSet& set, std::size_t line, std::int64_t first,
                                       const Operands& operands) {
    RowTriangle triangle{line, {}};
    for (std::size_t number = 1; number <= 3; ++number) {
        const auto place = whole_number(operands[number]);
        const auto corner = place ? vertex_at(set.model, first + *place) : std::nullopt;
        if (!corner) {
            return std::nullopt;
        }
        triangle.corners[number - 1] = *corner;
    }
    return triangle;
}

} // namespace

std::vector<RowTriangle> triangles_of_row(const OpenSet& set, std::size_t row) {
    std::vector<RowTriangle> triangles;
    std::size_t line = set.translation(row).block.selecting_line + 1;
    if (line > set.model.count()) {
        return triangles;
    }
    const Statement opening = exported(set.model.line(line));
    if (opening.macro != MacroId::DrawTriBegin) {
        return triangles;
    }
    const std::int64_t first = static_cast<std::int64_t>(set.vertex_list) +
                               whole_number(Operands(opening.rest)[1]).value_or(0);
    for (++line; line <= set.model.count(); ++line) {
        const Statement statement = exported(set.model.line(line));
        if (statement.macro != MacroId::DrawTri) {
            break;
        }
        if (const auto triangle = triangle_at(set, line, first, Operands(statement.rest))) {
            triangles.push_back(*triangle);
        }
    }
    return triangles;
}

bool is_block_rewritten(const OpenSet& set, std::size_t row) {
    std::size_t line = set.translation(row).block.selecting_line + 1;
    for (; line <= set.model.count(); ++line) {
        const std::string_view text = cut_white(set.model.line(line));
        const MacroId macro = exported(text).macro;
        if (macro == MacroId::DrawTriBegin) {
            return text.starts_with(';');
        }
        if (macro == MacroId::Material) {
            return false;
        }
    }
    return false;
}

} // namespace morvane
