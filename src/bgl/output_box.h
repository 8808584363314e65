// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "system/services.h"

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

} // namespace morvane
