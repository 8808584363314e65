// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/text.h"
#include "problems/line_checks.h"
#include "problems/literals.h"

#include <algorithm>
#include <cmath>

namespace morvane {

namespace {

// The macro that ends what another begins; Other for one that begins nothing.
MacroId end_of_begin(MacroId begin) {
    switch (begin) {
    case MacroId::VertexListBegin:
        return MacroId::VertexListEnd;
    case MacroId::MaterialListBegin:
        return MacroId::MaterialListEnd;
    case MacroId::TextureListBegin:
        return MacroId::TextureListEnd;
    case MacroId::DrawTriBegin:
        return MacroId::DrawTriEnd;
    case MacroId::DrawLineBegin:
        return MacroId::DrawLineEnd;
    case MacroId::DrawPointBegin:
        return MacroId::DrawPointEnd;
    case MacroId::TransformMat:
    case MacroId::BglAnimate:
        return MacroId::TransformEnd;
    default:
        return MacroId::Other;
    }
}

bool is_end(MacroId macro) {
    switch (macro) {
    case MacroId::VertexListEnd:
    case MacroId::MaterialListEnd:
    case MacroId::TextureListEnd:
    case MacroId::DrawTriEnd:
    case MacroId::DrawLineEnd:
    case MacroId::DrawPointEnd:
    case MacroId::TransformEnd:
        return true;
    default:
        return false;
    }
}

// Transformations may be within each other, lists and blocks may not.
bool may_nest(MacroId begin) {
    return begin == MacroId::TransformMat || begin == MacroId::BglAnimate;
}

std::string name_of(MacroId macro) {
    return std::string(macro_rule(macro).name);
}

double number_in(const Operands& operands, std::size_t number) {
    return real_number(operands[number]).value_or(0);
}

} // namespace

void ListChecker::see(const Statement& statement, const Operands& operands, Problems& problems) {
    switch (statement.macro) {
    case MacroId::VertexDef:
        return add_vertex(statement, operands, problems);
    case MacroId::MaterialDef:
        ++materials_;
        return;
    case MacroId::TextureDef:
        ++textures_;
        return;
    case MacroId::DrawTri:
        return check_triangle(statement, operands, problems);
    case MacroId::Material:
        return check_material(statement, operands, problems);
    default:
        break;
    }
    if (end_of_begin(statement.macro) != MacroId::Other) {
        begin(statement, operands, problems);
    } else if (is_end(statement.macro)) {
        end_of(statement, problems);
    }
}

void ListChecker::begin(const Statement& statement, const Operands& operands, Problems& problems) {
    if (!may_nest(statement.macro) && !open_.empty() && !may_nest(open_.back().begin)) {
        add_at(statement, Severity::Error, "unpaired",
               std::string(statement.keyword) + " begins before line " +
                   to_text(open_.back().line) + " has its " +
                   name_of(end_of_begin(open_.back().begin)) + "; put that line in.",
               problems);
        open_.pop_back();
    }
    open_.push_back({statement.macro, statement.line});
    if (statement.macro == MacroId::VertexListBegin) {
        vertices_.clear();
        has_vertices_ = true;
    } else if (statement.macro == MacroId::MaterialListBegin) {
        materials_ = 0;
        has_materials_ = true;
    } else if (statement.macro == MacroId::TextureListBegin) {
        textures_ = 0;
        has_textures_ = true;
    } else if (statement.macro == MacroId::DrawTriBegin) {
        check_block(statement, operands, problems);
    }
}

void ListChecker::end_of(const Statement& statement, Problems& problems) {
    if (!open_.empty() && end_of_begin(open_.back().begin) == statement.macro) {
        open_.pop_back();
        return;
    }
    add_at(statement, Severity::Error, "unpaired",
           std::string(statement.keyword) +
               " ends what has not begun; remove it, or put the line that begins it before.",
           problems);
}

void ListChecker::end(Problems& problems) {
    for (const Open& open : open_) {
        Statement statement;
        statement.line = static_cast<std::uint32_t>(open.line);
        add_at(statement, Severity::Error, "unpaired",
               name_of(open.begin) + " has no " + name_of(end_of_begin(open.begin)) +
                   "; put that line in.",
               problems);
    }
}

void ListChecker::add_vertex(const Statement& statement, const Operands& operands,
                             Problems& problems) {
    vertices_.push_back({number_in(operands, 1), number_in(operands, 2), number_in(operands, 3)});
    if (operands.count() >= 6 && number_in(operands, 4) == 0 && number_in(operands, 5) == 0 &&
        number_in(operands, 6) == 0) {
        add_at(statement, Severity::Warning, "zero-normal",
               "the vertex has a normal of length 0, so that light has no direction here; export "
               "the model with normals.",
               problems);
    }
}

void ListChecker::check_block(const Statement& statement, const Operands& operands,
                              Problems& problems) {
    first_ = whole_number(operands[1]).value_or(0);
    count_ = whole_number(operands[2]).value_or(0);
    const auto vertices = static_cast<std::int64_t>(vertices_.size());
    if (has_vertices_ && (first_ < 0 || first_ + count_ > vertices)) {
        add_at(statement, Severity::Error, "number-beyond-list",
               "the block uses vertices up to " + std::to_string(first_ + count_ - 1) +
                   ", but the list has " + std::to_string(vertices) + "; export the model again.",
               problems);
    }
}

void ListChecker::check_triangle(const Statement& statement, const Operands& operands,
                                 Problems& problems) {
    if (open_.empty() || open_.back().begin != MacroId::DrawTriBegin) {
        add_at(statement, Severity::Error, "triangle-outside-block",
               "this triangle is in no DRAW_TRI_BEGIN block; comment the line out, or the block's "
               "first line in.",
               problems);
        return;
    }
    for (std::size_t number = 1; number <= 3; ++number) {
        const auto corner = whole_number(operands[number]);
        if (corner && (*corner < 0 || *corner >= count_)) {
            add_at(statement, Severity::Error, "number-beyond-list",
                   "corner " + std::to_string(*corner) + " is not one of the block's " +
                       std::to_string(count_) + " vertices; export the model again.",
                   problems);
            return;
        }
    }
    if (is_degenerate(operands)) {
        add_at(statement, Severity::Note, "degenerate-triangle",
               "the triangle's corners lie on one line, so it cannot be seen; weld or remove it.",
               problems);
    }
}

bool ListChecker::is_degenerate(const Operands& operands) const {
    Corner corners[3]{};
    for (std::size_t number = 1; number <= 3; ++number) {
        const auto place = whole_number(operands[number]).value_or(-1) + first_;
        if (place < 0 || place >= static_cast<std::int64_t>(vertices_.size())) {
            return false;
        }
        corners[number - 1] = vertices_[static_cast<std::size_t>(place)];
    }
    const auto& [a, b, c] = corners;
    const Corner u{b.x - a.x, b.y - a.y, b.z - a.z};
    const Corner v{c.x - a.x, c.y - a.y, c.z - a.z};
    const double x = u.y * v.z - u.z * v.y;
    const double y = u.z * v.x - u.x * v.z;
    const double z = u.x * v.y - u.y * v.x;
    return x * x + y * y + z * z < 1e-18;
}

void ListChecker::check_material(const Statement& statement, const Operands& operands,
                                 Problems& problems) {
    const auto material = whole_number(operands[1]).value_or(-1);
    if (has_materials_ && material >= static_cast<std::int64_t>(materials_)) {
        add_at(statement, Severity::Error, "number-beyond-list",
               "material " + std::to_string(material) + " is beyond the list of " +
                   to_text(materials_) + "; export the model again.",
               problems);
    }
    // Where there are no textures, exports write the number 0 for none.
    const auto texture = whole_number(operands[2]).value_or(-1);
    if (has_textures_ && (textures_ > 0 || texture > 0) &&
        texture >= static_cast<std::int64_t>(textures_)) {
        add_at(statement, Severity::Error, "number-beyond-list",
               "texture " + std::to_string(texture) + " is beyond the list of " +
                   to_text(textures_) + "; export the model again.",
               problems);
    }
}

} // namespace morvane
