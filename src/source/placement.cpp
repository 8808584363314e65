#include "source/placement.h"

#include "base/numbers.h"
#include "source/fields.h"

#include <string>

namespace morvane {

namespace {

// Drops the last character, the "h" of a MASM number; a plain "0" thereby reads as 0 too.
double masm_hex(std::string_view operand) {
    return hex_value(operand.substr(0, operand.empty() ? 0 : operand.size() - 1));
}

double read_rotation(std::string_view line, Reporter& reporter) {
    const FieldArray fields = split_fields(line);
    if (!fields[0].starts_with("INSTANCE_CALL")) {
        return 0;
    }
    const double rotation = hex_value(fields[4]);
    reporter.add_message("Rotation is " + plain_text(rotation * 360 / 65536) + " degrees");
    return rotation;
}

} // namespace

Placement read_placement(const LineStore& frame, Reporter& reporter) {
    Placement result;
    for (std::size_t i = 1; i <= frame.upper(); ++i) {
        const FieldArray fields = split_fields(frame.line(i));
        if (!fields[0].starts_with("SCALE_AGL")) {
            continue;
        }
        const double fraction = masm_hex(fields[8]) / 65536;
        result.placement_a = masm_hex(fields[7]) + fraction;
        result.placement_b = masm_hex(fields[5]) + fraction;
        result.placement_b_degrees = result.placement_b / 12734620 * 360 / pi;
        result.placement_line = frame.line(i);
        result.placement_rotation = read_rotation(frame.line(i + 1), reporter);
    }
    return result;
}

} // namespace morvane
