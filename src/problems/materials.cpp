// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/text.h"
#include "problems/literals.h"
#include "problems/set_checks.h"
#include "source/source_set.h"

#include <algorithm>

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

namespace {

std::string material_text(const OpenSet& set, std::size_t row) {
    return "row " + to_text(row) + " (MATERIAL " + to_text(set.translation(row).number) + ")";
}

Problem at_row(const OpenSet& set, std::size_t row, std::size_t line, Severity severity,
               std::string code, std::string text) {
    return {std::move(code), severity, std::move(text), model_file_name(set.base), line, row};
}

void check_block(const OpenSet& set, std::size_t row, Problems& problems) {
    const MaterialBlock& block = set.translation(row).block;
    if (block.selecting_line > set.model.count()) {
        problems.push_back(at_row(
            set, row, set.translation(row).list_line, Severity::Warning, "not-drawn",
            material_text(set, row) + " is marked but drawn nowhere; draw something with it, or "
                                      "take its mark away."));
        return;
    }
    std::size_t line = block.selecting_line + 1;
    const std::size_t opening = line;
    const auto macro_at = [&](std::size_t at) {
        return at > set.model.count() ? MacroId::Other : read_statement(set.model.line(at)).macro;
    };
    if (macro_at(line) == MacroId::DrawTriBegin) {
        ++line;
    }
    const std::size_t first = line;
    while (macro_at(line) == MacroId::DrawTri) {
        ++line;
    }
    if (line == first) {
        problems.push_back(at_row(set, row, opening, Severity::Warning, "no-triangles",
                                  material_text(set, row) +
                                      " has no triangle in its block; draw one where an object is "
                                      "wanted."));
    } else if (macro_at(line) != MacroId::DrawTriEnd) {
        problems.push_back(at_row(set, row, line, Severity::Warning, "other-lines",
                                  material_text(set, row) +
                                      " has another line among its triangles, so that only those "
                                      "before it become objects; move the line after them."));
    }
}

void check_places(const OpenSet& set, std::size_t row, Problems& problems) {
    const std::size_t places = set.translation(row).block.further_places;
    if (places > 0) {
        problems.push_back(at_row(set, row, set.translation(row).block.selecting_line,
                                  Severity::Note, "further-places",
                                  material_text(set, row) + " is drawn in " + to_text(places) +
                                      (places == 1 ? " more place" : " more places") +
                                      ", where its triangles stay; give it one texture to have it "
                                      "drawn once."));
    }
}

bool is_nearly(double value) {
    return (value > 0 && value <= 0.02) || (value >= 0.98 && value < 1);
}

// A mark that was meant: each part is 0 or 1 but for a little, and one of them for that little.
bool is_nearly_marked(const Operands& operands) {
    bool near = false;
    bool bright = false;
    for (std::size_t number = 8; number <= 10; ++number) {
        const auto part = real_number(operands[number]);
        if (!part || !(*part == 0 || *part == 1 || is_nearly(*part))) {
            return false;
        }
        near = near || is_nearly(*part);
        bright = bright || *part > 0.5;
    }
    return near && bright;
}

void check_highlights(const OpenSet& set, Problems& problems) {
    for (const Material& material : set.materials) {
        if (is_nearly_marked(Operands(read_statement(material.text).rest))) {
            problems.push_back({"near-highlight", Severity::Warning,
                                "the material's highlight is nearly one of the seven pure colours, "
                                "but only a pure one marks it; set its parts to exactly 0 or 255.",
                                model_file_name(set.base), material.list_line});
        }
    }
}

void check_unprocessed(const OpenSet& set, const std::vector<std::size_t>& rows,
                       Problems& problems) {
    if (rows.size() == set.translations.size()) {
        if (!rows.empty()) {
            problems.push_back({"unprocessed-material", Severity::Note,
                                to_text(rows.size()) +
                                    " marked materials are still drawn as triangles; process "
                                    "them.",
                                model_file_name(set.base)});
        }
        return;
    }
    for (const std::size_t row : rows) {
        problems.push_back(
            at_row(set, row, set.translation(row).block.selecting_line, Severity::Note,
                   "unprocessed-material",
                   material_text(set, row) + " is not processed; its triangles will be drawn."));
    }
}

} // namespace

void check_materials(const OpenSet& set, Problems& problems) {
    std::vector<std::size_t> left;
    bool processed_before = false;
    for (std::size_t row = 1; row <= set.translations.size(); ++row) {
        if (!set.translation(row).processed.empty()) {
            continue;
        }
        if (is_block_rewritten(set, row)) {
            processed_before = true;
            continue;
        }
        left.push_back(row);
        check_block(set, row, problems);
        check_places(set, row, problems);
    }
    if (processed_before) {
        problems.push_back({"already-rewritten", Severity::Note,
                            "the set was processed before; restore it, or export it again, before "
                            "it is processed anew.",
                            model_file_name(set.base)});
    }
    check_unprocessed(set, left, problems);
    check_highlights(set, problems);
}

} // namespace morvane
