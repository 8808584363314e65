// SPDX-License-Identifier: GPL-3.0-or-later
#include "bgl/report.h"

#include "base/numbers.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "base/text.h"
#include "bgl/bgl_file.h"
#include "system/disk.h"
#include "system/replace_files.h"

#include <array>
#include <cmath>
#include <type_traits>
#include <utility>

namespace morvane {

OutputBox::OutputBox(Services services, const std::string& program_folder)
    : services_(services), path_(join_path(program_folder, "out.txt")) {}

void OutputBox::begin_command(bool auto_clear) {
    results_begun_ = false;
    if (auto_clear) {
        clear();
    }
}

void OutputBox::out_line(std::string_view text, bool no_break) {
    const std::size_t before = text_.size();
    text_ += text;
    if (!no_break) {
        text_ += "\r\n";
    }
    if (on_text) {
        on_text(std::string_view(text_).substr(before));
    }
    if (!no_break && text_.size() >= overflow_size) {
        overflow();
    }
}

void OutputBox::overflow() {
    services_.reporter.repeated_box("Too many data for output box. The complete list can be "
                                    "examined from file 'Out.txt'.",
                                    Icon::Exclamation);
    write_text(results_begun_);
    results_begun_ = true;
    clear();
}

void OutputBox::write_results() {
    write_text(results_begun_);
}

void OutputBox::clear() {
    text_.clear();
    if (on_clear) {
        on_clear();
    }
}

// The box is written as one record, which has a line end of its own after that of its last line.
void OutputBox::write_text(bool append) {
    if (!append) {
        replace_file(services_.disk, path_, [&](TextWriter& out) { out.line(text_); });
        return;
    }
    const auto file = services_.disk.open_for_appending(path_);
    TextWriter out(*file);
    out.line(text_);
    out.flush();
    file->close();
}

namespace {

// A 2-byte field has at most 4 digits: a negative one is not widened first.
template <typename Number>
std::string hex(Number value) {
    return hex_text(static_cast<std::make_unsigned_t<Number>>(value));
}

const char* kind_line(std::int16_t world_set) {
    switch (world_set) {
    case 1:
        return " This is a Visual/Default data file";
    case 2:
        return " This is a ADF/VOR data file";
    case 4:
        return " This is a Special data file";
    default:
        return nullptr; // a valid file of kind 3 has no line
    }
}

void report_bounds(OutputBox& box, const BglHeader& header) {
    box.out_line(" Lat bounds : " + deg_min_text(lat_degrees(header.FL_south_bounds)) + " to " +
                 deg_min_text(lat_degrees(header.FL_north_bounds)));
    box.out_line(" Lon bounds : " + deg_min_text(lon_degrees(header.FL_west_bounds)) + " to " +
                 deg_min_text(lon_degrees(header.FL_east_bounds)));
}

struct Section {
    std::int32_t offset;
    const char* present;
    const char* absent;
};

void report_sections(OutputBox& box, const BglHeader& h, const HeaderExtension& extension) {
    const std::array<Section, 12> sections{{
        {h.FL_object_ptr, "  >> OBJECT data at offset ", "    no object data"},
        {h.FL_library_ptr, "  >> LIBRARY data at offset ", "    no library data"},
        {h.FL_terrain_data, "  >> TERRAIN data at offset ", "    no terrain data"},
        {h.FL_msa_data, "  >> MSA (Minimum Safe Altitude Data) at offset ", "    no msa data"},
        {h.FL_vor_ptr, "  >> VOR data at offset ", "    no VOR data"},
        {h.FL_adf_data, "  >> ADF data at offset ", "    no ADF data"},
        {h.FL_facilities_ptr, "  >> FACILITIES data at offset ", "    no facility data"},
        {h.FL_dynamic_data, "  >> DYNAMIC data at offset ", "    no dynamic data"},
        // Scripts look for the line as it has always been written, misspelling included.
        {h.FL_exceptions, "  >> EXCEPTION data at offset ", "    no Ecxeption data"},
        {h.FL_misc_data, "  >> MISC data at offset ", "    no misc data"},
        {h.FL_magvar, "  >> MAGNETIC VARIATION data at offset ", "    no mag.var.data"},
        {h.FL_magic != 0 ? extension.facility2_data : 0, "  >> AIRPORT FACILITY DATA at offset ",
         "    no afd data"},
    }};
    for (const Section& section : sections) {
        box.out_line(section.offset != 0 ? section.present + hex(section.offset) : section.absent);
    }
}

std::string raw_label(std::size_t offset, const char* name) {
    constexpr std::size_t label_width = 26;
    const std::string digits = "000" + std::to_string(offset);
    std::string label = " " + digits.substr(digits.size() - 3) + " " + name + ":";
    label.resize(label_width, ' ');
    return label;
}

// Without a scale a blank follows the text, on which readers of the reports rely.
std::string scale_text(const LibraryObject& object) {
    return object.stored_scale != 0 ? format_decimal(65536.0 / object.stored_scale, 1, 3) : "0.0 ";
}

} // namespace

void report_header(OutputBox& box, const BglHeader& header, const HeaderExtension& extension,
                   bool show_raw) {
    if (!is_valid_bgl(header)) {
        box.out_line("This is not a valid bgl file.");
        return;
    }
    if (const char* kind = kind_line(header.FL_world_set)) {
        box.out_line(kind);
    }
    box.out_line(header.FL_magic != 0 ? " New file format (fs-7, fs-8)"
                                      : " Old file format (pre fs-7) ");
    report_bounds(box, header);
    box.out_line((header.FL_spare2 != 0 ? " COMPRESSED file (FL_Spare2="
                                        : " UNCOMPRESSED file (FL_Spare2=") +
                 hex(header.FL_spare2) + ")");
    report_sections(box, header, extension);
    if (show_raw) {
        dump_raw_header(box, header, extension);
    }
    box.out_line("=============================================");
}

void dump_raw_header(OutputBox& box, const BglHeader& header, const HeaderExtension& extension) {
    box.out_line("-------------------- Raw header data");
    for_each_field(header, [&](std::size_t offset, const char* name, auto field) {
        box.out_line(raw_label(offset, name) + hex(field));
    });
    if (header.FL_magic == 0) {
        return;
    }
    for_each_field(extension, [&](std::size_t offset, const char* name, auto field) {
        constexpr std::size_t unnamed_offset = 144;
        if (offset != unnamed_offset) {
            // After the unnamed field the labels are four too low; this is intended.
            const std::size_t shown = offset > unnamed_offset ? offset - 4 : offset;
            box.out_line(raw_label(shown, name) + hex(field));
        }
    });
}

double lat_degrees(std::int32_t raw) {
    constexpr double meridian_length = 40006988.638257615; // raw units around the poles
    return raw * 180.0 / (meridian_length / 2);
}

double lon_degrees(std::int32_t raw) {
    return raw * 360.0 / 4294967296.0;
}

std::string deg_min_text(double degrees) {
    const double whole = std::floor(degrees);
    return plain_text(whole) + "* " + format_decimal((degrees - whole) * 60, 1, 4);
}

std::string guid_text(const Guid128& guid) {
    return guid_word(guid[0]) + "h," + guid_word(guid[1]) + "h," + guid_word(guid[2]) + "h," +
           guid_word(guid[3]) + "h";
}

std::string object_name(const LibraryObject& object) {
    return std::string(trim(object.name));
}

std::string analysis_line(const LibraryObject& object) {
    return " " + guid_text(object.guid) + ", " + scale_text(object) + " " +
           std::to_string(object.type) + " " + std::to_string(object.image_power) + " " +
           object_name(object);
}

std::string search_line(const LibraryObject& object) {
    return guid_text(object.guid) + "," + scale_text(object) + "," + std::to_string(object.type) +
           "," + object_name(object);
}

} // namespace morvane
