// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/placed_calls.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "base/text.h"
#include "objects/geo_placement.h"

#include <cmath>

namespace morvane {

namespace {

using Lines = ObjectCode::Lines;

// What effects and library objects have in common: a call that is skipped when the place is far
// away, with a label of its own for each triangle.
struct PlacedCall {
    std::string skip_label;
    Grounding grounding;
    std::string call;
    std::function<std::string(const FieldArray& reference)> scale; // of the placement line
};

// The closing label has no number: a second material writes the same label again, as required.
ObjectCode placed_code(const Placement& placement, const PlacedCall& call) {
    ObjectCode code;
    code.triangle = [&placement, call](const DrawBlock&, const BlockTriangle& triangle) {
        const FieldArray reference = split_fields(placement.scale_line);
        const std::string skip = call.skip_label + to_text(triangle.next_line);
        return Lines{std::string(scale_keyword(call.grounding)) + skip + ", " +
                         std::string(reference[2]) + ", " + std::string(reference[3]) + ", " +
                         call.scale(reference) +
                         geo_coordinates(placement, triangle.vertex, call.grounding),
                     call.call, skip + "  label BGLCODE"};
    };
    code.closing = {call.skip_label + "  label BGLCODE"};
    return code;
}

} // namespace

double scale_word(std::string_view scale) {
    const double number = val(scale);
    if (number == 0) {
        throw RuntimeError(ErrorNumber::DivisionByZero, "the library object's scale is 0");
    }
    return std::floor(65536 / number);
}

ObjectCode effects_code(const Placement& placement, const EffectParameters& parameters) {
    return placed_code(
        placement,
        {"SKIP_FX",
         {parameters.fx_OTG, parameters.fx_Terrain_alt},
         "    KZM_FX1 \"" + parameters.lstEffectType + "\" , \"" + parameters.fx_params + "\"",
         [](const FieldArray& reference) { return std::string(reference[4]); }});
}

ObjectCode library_code(const Placement& placement, const LibraryParameters& parameters) {
    return placed_code(placement, {"SKIP_LIB",
                                   {parameters.lib_OTG, parameters.lib_Terrain_alt},
                                   "    KZM_LIBRARY_CALL " + parameters.libGUID,
                                   [scale = parameters.libScale](const FieldArray&) {
                                       return plain_text(scale_word(scale));
                                   }});
}

ObjectCode library_new_code(const LibraryParameters& parameters) {
    const std::string scale = format_decimal(val(parameters.libScale), 1, 1);
    ObjectCode code;
    code.triangle = [scale, call = "    KZM_LIBRARY_CALL " + parameters.libGUID](
                        const DrawBlock&, const BlockTriangle& triangle) {
        const auto field = [&](std::size_t i) { return std::string(triangle.vertex[i]); };
        return Lines{"    BGL_TRANSFORM_MAT " + field(1) + ", " + field(2) + ", " + field(3) +
                         ", " + scale + ", 0.0, 0.0, 0.0, " + scale + ", 0.0, 0.0, 0.0, " + scale,
                     call, "    BGL_TRANSFORM_END"};
    };
    return code;
}

} // namespace morvane
