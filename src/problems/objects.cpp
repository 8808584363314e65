// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "base/text.h"
#include "objects/parameter_checks.h"
#include "problems/literals.h"
#include "problems/set_checks.h"
#include "source/source_set.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace morvane {

namespace {

constexpr double lowest_mast = 0.1;
constexpr double tolerable_metres = 0.5;
constexpr double same_scale = 0.0006; // a search tells three decimals

bool is_placed(Kind kind) {
    return kind == Kind::Effects || kind == Kind::Library;
}

Problem at_row(const OpenSet& set, const PlannedObject& object, std::size_t line, Severity severity,
               std::string code, std::string text) {
    return {std::move(code),           severity, std::move(text),
            model_file_name(set.base), line,     object.row};
}

std::string metres_text(double metres) {
    return format_decimal(metres, 1, 3) + " m";
}

// The mast's height as the windsock's code takes it: only the second corner counts.
double mast_height(const RowTriangle& triangle) {
    double y[3] = {triangle.corners[0].y, triangle.corners[1].y, triangle.corners[2].y};
    std::swap(y[0], *std::min_element(y, y + 3));
    return y[1] - y[0];
}

double sock_length(RowTriangle triangle) {
    Corner* const begin = triangle.corners;
    std::iter_swap(begin, std::min_element(begin, begin + 3, [](const Corner& a, const Corner& b) {
                       return a.y < b.y;
                   }));
    return std::hypot(begin[1].x - begin[2].x, begin[1].z - begin[2].z);
}

void check_windsock(const OpenSet& set, const PlannedObject& object, const RowTriangle& triangle,
                    Problems& problems) {
    if (mast_height(triangle) < lowest_mast) {
        const double lowest =
            std::min({triangle.corners[0].y, triangle.corners[1].y, triangle.corners[2].y});
        const bool third = triangle.corners[2].y - lowest >= lowest_mast ||
                           triangle.corners[0].y - lowest >= lowest_mast;
        problems.push_back(at_row(
            set, object, triangle.line, Severity::Error, "flat-windsock",
            third ? "the windsock's triangle is flat for its second corner, the only one that "
                    "counts, though another is higher; turn the triangle's corners."
                  : "the windsock's triangle lies flat; let its second corner be 0.1 higher than "
                    "the lowest."));
    } else if (format_decimal(sock_length(triangle), 1, 6) == "0.0") {
        problems.push_back(at_row(set, object, triangle.line, Severity::Warning, "windsock-size",
                                  "the windsock has a length of 0; move its two upper corners "
                                  "apart."));
    }
}

// North of a corner in the model's own units, the model turned as the frame says.
double turned_north(const Placement& placement, const Corner& corner) {
    const double angle = placement.rotation * 2 * std::numbers::pi / 65536;
    return corner.z * std::cos(angle) - corner.x * std::sin(angle);
}

// The reference line's own latitude. The program takes the fraction of the longitude for it.
double reference_latitude(const Placement& placement) {
    const Statement line = read_statement(placement.scale_line);
    const double fraction =
        static_cast<double>(whole_number(Operands(line.rest)[6]).value_or(0)) / 65536;
    return std::floor(placement.latitude) + fraction;
}

// How far north of its true place the code puts a point: the whole part is rounded, and the
// fraction is taken of another number.
double metres_off(const Placement& placement, double north) {
    const double whole = std::nearbyint(placement.latitude + north);
    const double low = placement.latitude / 1000 + north;
    return whole + (low - std::floor(low)) - (reference_latitude(placement) + north);
}

std::optional<double> metres_a_unit(const Placement& placement) {
    const Statement line = read_statement(placement.scale_line);
    const auto scale = whole_number(Operands(line.rest)[4]);
    return scale && *scale != 0 ? std::optional(65536.0 / static_cast<double>(*scale))
                                : std::nullopt;
}

void check_place(const OpenSet& set, const PlannedObject& object,
                 const std::vector<RowTriangle>& triangles, double unit, Problems& problems) {
    const auto off = [&](const RowTriangle& triangle) {
        return metres_off(set.placement, turned_north(set.placement, triangle.corners[0]) * unit);
    };
    const auto worst = std::max_element(triangles.begin(), triangles.end(),
                                        [&](const RowTriangle& a, const RowTriangle& b) {
                                            return std::abs(off(a)) < std::abs(off(b));
                                        });
    if (std::abs(off(*worst)) > tolerable_metres) {
        problems.push_back(at_row(set, object, worst->line, Severity::Warning, "place-off",
                                  "the object is placed " + metres_text(std::abs(off(*worst))) +
                                      (off(*worst) > 0 ? " too far north" : " too far south") +
                                      ", as latitudes are rounded; move its triangle by that "
                                      "much if it matters."));
    }
    const auto high =
        std::find_if(triangles.begin(), triangles.end(), [&](const RowTriangle& triangle) {
            return std::abs(triangle.corners[0].y) * unit > tolerable_metres;
        });
    if (high != triangles.end()) {
        const double height = high->corners[0].y * unit;
        problems.push_back(at_row(set, object, high->line, Severity::Warning, "height-thousandth",
                                  "the triangle's height of " + metres_text(height) +
                                      " counts as " + metres_text(height / 1000) +
                                      "; give the height by the terrain elevation."));
    }
}

void check_turned(const OpenSet& set, const PlannedObject& object, Problems& problems) {
    if (object.kind == Kind::Library && set.placement.rotation != 0) {
        problems.push_back(at_row(set, object, set.translation(object.row).block.selecting_line,
                                  Severity::Note, "library-in-turned-model",
                                  "the model is turned, but objects of the kind Library keep their "
                                  "own heading; use Library New where it matters."));
    }
}

} // namespace

void check_object(const OpenSet& set, const PlannedObject& object, Problems& problems) {
    const std::vector<RowTriangle> triangles = triangles_of_row(set, object.row);
    if (object.kind == Kind::Windsock) {
        for (const RowTriangle& triangle : triangles) {
            check_windsock(set, object, triangle, problems);
        }
    }
    if (is_placed(object.kind) && !triangles.empty()) {
        if (const auto unit = metres_a_unit(set.placement)) {
            check_place(set, object, triangles, *unit, problems);
        }
    }
    check_turned(set, object, problems);
}

namespace {

Problem of_object(const PlannedObject& object, Severity severity, std::string code,
                  std::string text) {
    return {std::move(code), severity, std::move(text), object.path, object.line, object.row};
}

std::optional<Guid128> guid_of(std::string_view text) {
    const Operands words(text);
    Guid128 guid{};
    if (words.count() != guid.size()) {
        return std::nullopt;
    }
    for (std::size_t n = 0; n < guid.size(); ++n) {
        const auto word = whole_number(words[n + 1]);
        if (!word) {
            return std::nullopt;
        }
        guid[n] = static_cast<Guid128::value_type>(*word);
    }
    return guid;
}

void check_scale(const PlannedObject& object, const KnownObject& known, Problems& problems) {
    const auto scale = real_number(object.parameters.library.libScale);
    if (known.scale && scale && std::abs(*scale - *known.scale) > same_scale) {
        problems.push_back(of_object(object, Severity::Warning, "scale-differs",
                                     "the scale is " + object.parameters.library.libScale +
                                         ", but the object in " + known.file + " was designed at " +
                                         plain_text(*known.scale) + "; use that."));
    }
}

} // namespace

void check_parameters_of(const PlannedObject& object, Problems& problems) {
    for (const Note& note :
         parameter_notes(object.kind, object.parameters, object.path, object.line)) {
        problems.push_back({note.code, note.severity, note.text, note.path, note.line, object.row});
    }
}

void check_effect_name(const PlannedObject& object, const std::vector<std::string>& effects,
                       Problems& problems) {
    const std::string& name = object.parameters.effects.lstEffectType;
    const bool known = std::any_of(effects.begin(), effects.end(), [&](const std::string& effect) {
        return equal_ignoring_case(trim(effect), trim(name));
    });
    if (object.kind == Kind::Effects && !effects.empty() && !known) {
        problems.push_back(of_object(object, Severity::Warning, "unknown-effect",
                                     "the effect " + name +
                                         " is not in fx_list.txt; correct its name, or add it to "
                                         "the list."));
    }
}

void check_identifier(const PlannedObject& object, const std::vector<KnownObject>& known,
                      Problems& problems) {
    const bool library = object.kind == Kind::Library || object.kind == Kind::LibraryNew;
    const auto guid =
        library && !known.empty() ? guid_of(object.parameters.library.libGUID) : std::nullopt;
    if (!guid) {
        return;
    }
    std::vector<const KnownObject*> found;
    for (const KnownObject& candidate : known) {
        if (candidate.guid == *guid) {
            found.push_back(&candidate);
        }
    }
    if (found.empty()) {
        problems.push_back(of_object(object, Severity::Warning, "unknown-identifier",
                                     "no library that was searched has an object " +
                                         object.parameters.library.libGUID +
                                         "; search the folder of its library, or correct it."));
    } else if (found.size() > 1) {
        problems.push_back(of_object(object, Severity::Warning, "identifier-twice",
                                     "both " + found[0]->file + " and " + found[1]->file +
                                         " have this object; only one of them is drawn, so remove "
                                         "the other."));
    } else {
        check_scale(object, *found.front(), problems);
    }
}

} // namespace morvane
