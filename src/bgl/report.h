// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bgl/bgl_file.h"
#include "bgl/library_objects.h"
#include "system/services.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace morvane {

/// The report text of the library browser and its results file "out.txt" in the program folder.
///
/// Lines are separated by CR LF. A box that has grown to `overflow_size` characters is written to
/// "out.txt" and emptied, with a message each time; so a long report is in "out.txt" as a whole.
class OutputBox {
  public:
    static constexpr std::size_t overflow_size = 65401;

    OutputBox(Services services, const std::string& program_folder);

    /// Begins the report of a command: "out.txt" is started anew by the next write.
    void begin_command(bool auto_clear);
    /// Appends the text and, unless `no_break`, a line break. Only a line break can make the box
    /// overflow. Throws RuntimeError when "out.txt" cannot be written; the text is then kept.
    void out_line(std::string_view text, bool no_break = false);
    /// Ends a command: writes what the box holds to "out.txt". Throws RuntimeError.
    void write_results();
    void clear();

    const std::string& text() const { return text_; }

    /// Told of every piece of text as it is appended, for a display that shows it as it comes.
    std::function<void(std::string_view)> on_text;
    /// Told whenever the box was emptied.
    std::function<void()> on_clear;

  private:
    void overflow();
    void write_text(bool append);

    Services services_;
    std::string path_;
    std::string text_;
    bool results_begun_ = false; // "out.txt" already holds a part of this command's report
};

/// Writes what a header says, line by line. The extension counts only when `FL_magic` is not 0.
/// An invalid header gives one line that says so.
void report_header(OutputBox& box, const BglHeader& header, const HeaderExtension& extension,
                   bool show_raw);

/// Writes every field of a header, and of the extension when `FL_magic` is not 0, in hexadecimal.
void dump_raw_header(OutputBox& box, const BglHeader& header, const HeaderExtension& extension);

/// Raw latitude as degrees, north positive.
double lat_degrees(std::int32_t raw);
/// Raw longitude as degrees, east positive.
double lon_degrees(std::int32_t raw);
/// Degrees as "d* m": whole degrees rounded down and positive minutes, so that -1.5 is "-2* 30.0".
std::string deg_min_text(double degrees);

/// An identifier in the form that a placement takes: four words of nine hexadecimal digits and
/// "h", joined by ",".
std::string guid_text(const Guid128& guid);

/// An object's name without the blanks it is padded with.
std::string object_name(const LibraryObject& object);

/// The line of an object in the report of one file.
std::string analysis_line(const LibraryObject& object);

/// The line of an object in the report of a search: no blanks, no image power.
std::string search_line(const LibraryObject& object);

} // namespace morvane
