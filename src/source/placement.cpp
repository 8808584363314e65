// SPDX-License-Identifier: GPL-3.0-or-later
#include "source/placement.h"

#include "base/errors.h"
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

// Reads a line of the frame into `result` if it is a SCALE_AGL line; false for any other.
bool read_scale(std::string_view line, Placement& result) {
    const FieldArray fields = split_fields(line);
    if (!fields[0].starts_with("SCALE_AGL")) {
        return false;
    }
    const double fraction = masm_hex(fields[8]) / 65536;
    result.longitude = masm_hex(fields[7]) + fraction;
    result.latitude = masm_hex(fields[5]) + fraction;
    result.latitude_degrees = result.latitude / 12734620 * 360 / pi;
    result.scale_line = line;
    return true;
}

} // namespace

Placement read_placement(const LineStore& frame, Reporter& reporter) {
    Placement result;
    for (std::size_t i = 1; i <= frame.upper(); ++i) {
        if (with_line(i, [&] { return read_scale(frame.line(i), result); })) {
            result.rotation =
                with_line(i + 1, [&] { return read_rotation(frame.line(i + 1), reporter); });
        }
    }
    return result;
}

} // namespace morvane
