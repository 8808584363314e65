// SPDX-License-Identifier: GPL-3.0-or-later
#include "bgl/output_box.h"

#include "base/paths.h"
#include "base/reporter.h"
#include "system/disk.h"
#include "system/replace_files.h"
#include "system/text_writer.h"

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

} // namespace morvane
