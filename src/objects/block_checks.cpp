// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/block_checks.h"

#include "base/numbers.h"
#include "base/text.h"
#include "objects/draw_block.h"
#include "objects/model_header.h"
#include "objects/object_code.h"
#include "source/materials.h"
#include "source/source_set.h"

#include <algorithm>
#include <array>

namespace morvane {

namespace {

std::string quoted_line(std::string_view line) {
    const std::string_view text = trim(line);
    return text.empty()
               ? "an empty line"
               : "\"" + std::string(text.substr(0, 60)) + (text.size() > 60 ? "...\"" : "\"");
}

BlockFinding rewritten_at(const OpenSet& set, std::size_t line) {
    return {BlockState::Rewritten, line,
            "is already rewritten: " + quoted_line(set.model.line(line)) +
                "; restore the backup or export the model again"};
}

// One finding of a kind for a whole block: the first place, and how many there are.
class Findings {
  public:
    Findings(const OpenSet& set, const Translation& material) : set_(set), material_(material) {}

    void add(std::string_view code, Severity severity, std::size_t line, const std::string& text) {
        for (Counted& known : found_) {
            if (known.note.code == code) {
                ++known.count;
                return;
            }
        }
        found_.push_back({{row_and_number(material_) + ": " + text, model_file_name(set_.base),
                           line, severity, std::string(code)},
                          1});
    }

    std::vector<Note> notes() const {
        std::vector<Note> notes;
        for (const Counted& found : found_) {
            notes.push_back(found.note);
            if (found.count > 1) {
                notes.back().text += " (so do " + to_text(found.count - 1) + " more of its block)";
            }
        }
        return notes;
    }

  private:
    struct Counted {
        Note note;
        std::size_t count = 0;
    };

    const OpenSet& set_;
    const Translation& material_;
    std::vector<Counted> found_;
};

// The list's lines are VERTEX_DEF lines; a number beyond it reads whatever is there.
void check_vertex(const OpenSet& set, const DrawBlock& block, std::string_view number,
                  Findings& findings) {
    const double line = block.vertex_line(number);
    const bool in_file = line >= 1 && line <= static_cast<double>(set.model.count());
    const std::string_view text =
        in_file ? trim(set.model.line(static_cast<std::size_t>(line))) : std::string_view();
    if (line < static_cast<double>(set.vertex_list) || !text.starts_with("VERTEX_DEF")) {
        findings.add("vertex-range", Severity::Error, block.line(),
                     "this triangle draws vertex " + std::string(trim(number)) +
                         ", which is not in the vertex list");
    }
}

void check_normal(const DrawBlock& block, const BlockTriangle& triangle, Findings& findings) {
    for (const std::size_t part : {4, 5, 6}) {
        if (trim(triangle.vertex[part]).empty()) {
            findings.add("vertex-normal", Severity::Error, block.line(),
                         "the first vertex of this triangle has no normal, so its light has no "
                         "direction");
            return;
        }
    }
}

void check_windsock(const DrawBlock& block, const BlockTriangle& triangle, Findings& findings) {
    if (format_decimal(measure_windsock(block, triangle).size, 1, 6) == "0.0") {
        findings.add("windsock-size", Severity::Warning, block.line(),
                     "this triangle makes a windsock of length 0: its two upper corners must be "
                     "apart");
    }
}

std::vector<Note> check_triangles(const OpenSet& set, const Translation& material, Kind kind) {
    Findings findings(set, material);
    DrawBlock block(set.model, set.vertex_list, material);
    for (block.next_line(); block.at_triangle(); block.next_line()) {
        const BlockTriangle triangle = block.triangle();
        const std::size_t corners = kind == Kind::Windsock ? 3 : 1;
        for (std::size_t i = 1; i <= corners; ++i) {
            check_vertex(set, block, triangle.fields[i], findings);
        }
        if (kind == Kind::Lights) {
            check_normal(block, triangle, findings);
        } else if (kind == Kind::Windsock) {
            check_windsock(block, triangle, findings);
        }
    }
    return findings.notes();
}

} // namespace

BlockFinding check_block(const OpenSet& set, const Translation& material) {
    const LineStore& model = set.model;
    const std::size_t opening = material.block.selecting_line + 1;
    if (opening > model.upper()) {
        return {BlockState::NotDrawn, material.list_line,
                "is drawn nowhere: no line of the model file selects it"};
    }
    if (material.given_up == 0 && is_rewritten(model, material.block)) {
        return rewritten_at(set, opening);
    }
    const DrawBlock block(model, set.vertex_list, material);
    if (!trim(block.text(opening)).starts_with("DRAW_TRI_BEGIN")) {
        return {BlockState::OtherLines, opening,
                "has no block of triangles after its MATERIAL line but " +
                    quoted_line(block.text(opening))};
    }
    const std::size_t line = opening + 1 + triangles_to_rewrite(set, material);
    const bool ended = line <= model.upper() && trim(block.text(line)).starts_with("DRAW_TRI_END");
    if (line == opening + 1) {
        return {BlockState::NoTriangles, opening,
                ended ? "has no triangle in its block"
                      : "has no triangle after its DRAW_TRI_BEGIN line but " +
                            quoted_line(line > model.upper() ? "" : block.text(line))};
    }
    if (!ended) {
        return {BlockState::OtherLines, std::min(line, model.count()),
                "has a block that holds more than triangles before its DRAW_TRI_END: " +
                    quoted_line(line > model.upper() ? "" : block.text(line))};
    }
    return {};
}

std::optional<Note> block_note(const OpenSet& set, const Translation& material) {
    const BlockFinding finding = check_block(set, material);
    static constexpr std::array<const char*, 5> codes{"", "already-rewritten", "not-drawn",
                                                      "no-triangles", "other-lines"};
    if (finding.state == BlockState::Fit) {
        return std::nullopt;
    }
    return Note{row_and_number(material) + " " + finding.text + ".", model_file_name(set.base),
                finding.line, Severity::Warning, codes.at(static_cast<std::size_t>(finding.state))};
}

std::size_t triangles_to_rewrite(const OpenSet& set, const Translation& material) {
    const std::size_t opening = material.block.selecting_line + 1;
    if (opening > set.model.upper()) {
        return 0;
    }
    const DrawBlock block(set.model, set.vertex_list, material);
    std::size_t line = opening + 1;
    while (line <= set.model.upper() && trim(block.text(line)).starts_with("DRAW_TRI ")) {
        ++line;
    }
    return line - opening - 1;
}

std::vector<Note> check_material(const OpenSet& set, const Translation& material, Kind kind,
                                 const Parameters& parameters) {
    std::vector<Note> notes = check_triangles(set, material, kind);
    if (kind == Kind::Lights && parameters.lights.AircraftFlag) {
        const std::vector<Note> frame = check_dictionary(set.frame, frame_file_name(set.base));
        notes.insert(notes.end(), frame.begin(), frame.end());
    }
    return notes;
}

} // namespace morvane
