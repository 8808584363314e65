// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/design.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "base/text.h"
#include "library/library_list.h"
#include "source/fields.h"
#include "source/source_set.h"

namespace morvane {

namespace {

// The first line that holds the word, 0 when none does.
std::size_t find_scale_line(const LineStore& frame) {
    for (std::size_t i = 1; i <= frame.count(); ++i) {
        if (frame.line(i).find("SCALE_AGL ") != std::string_view::npos) {
            return i;
        }
    }
    return 0;
}

DesignDescription describe_line(std::string_view line, const std::string& base) {
    const FieldArray fields = split_fields(trim(line));
    if (fields.count() < 4) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange, "fewer than four operands");
    }
    const double stored = size_value(fields[4]);
    if (stored == 0) {
        throw RuntimeError(ErrorNumber::DivisionByZero, "a scale of 0");
    }
    return {plain_text(unit_scale / stored), std::string(fields[3]), file_name_part(base)};
}

} // namespace

std::string design_base(const std::string& file_name) {
    return file_name.substr(0, file_name.size() - std::min<std::size_t>(file_name.size(), 4));
}

double size_value(std::string_view text) {
    const std::string_view number = trim(text);
    const std::string_view digits = number.substr(0, number.empty() ? 0 : number.size() - 1);
    if ((number.ends_with('h') || number.ends_with('H')) && !digits.empty() &&
        digits.find_first_not_of("0123456789ABCDEFabcdef") == std::string_view::npos) {
        return hex_value(digits);
    }
    return number_field(number);
}

DesignReading read_design(const LineStore& frame, const std::string& base) {
    const std::size_t line = find_scale_line(frame);
    if (line == 0) {
        return {std::nullopt, "The file " + base + ".asm has not SCALE command.", ""};
    }
    try {
        return {describe_line(frame.line(line), base), "", ""};
    } catch (const RuntimeError& error) {
        return {std::nullopt, "Error in file " + base + ".asm.",
                "line " + to_text(line) + " of " + base + ".asm: " + error.what()};
    }
}

std::optional<DesignDescription> describe_design(const Services& services,
                                                 const std::string& base) {
    LineStore model;
    LineStore frame;
    if (!load_source_set(services, base, model, frame).any()) {
        services.reporter.message_box("Invalid filename", Icon::Exclamation);
        return std::nullopt;
    }
    const DesignReading reading = read_design(frame, base);
    if (!reading.description) {
        services.reporter.message_box(reading.problem, Icon::Exclamation);
        if (!reading.detail.empty()) {
            services.reporter.note({reading.detail});
        }
    }
    return reading.description;
}

} // namespace morvane
