// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/save.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "base/text.h"
#include "source/source_set.h"
#include "system/replace_files.h"

#include <algorithm>

namespace morvane {

namespace {

bool is_refused(const OpenSet& set, Reporter& reporter) {
    if (set.saved) {
        reporter.message_box(
            "This file has already been saved. Reload or restore to continue modifications");
        return true;
    }
    if (set.replacements.empty()) {
        reporter.message_box("No material matches");
        return true;
    }
    return false;
}

// The frame file comes first and the model file last, so that whoever finds the new model file
// finds a frame file that fits.
std::vector<FileReplacement> replacements(const OpenSet& set, const std::string& output) {
    std::vector<FileReplacement> files;
    if (set.frame_changed) {
        files.push_back({frame_file_name(output), [&set](TextWriter& out) {
                             write_lines(out, set.frame, 1, set.frame.upper());
                         }});
    }
    files.push_back(
        {model_file_name(output), [&set](TextWriter& out) { write_merged_model(set, out); }});
    return files;
}

// What another program has written into a file of the set since Open would be lost.
void add_if_changed(Disk& disk, const std::string& target, const std::string& source,
                    const OpenedFile& opened, const LineStore& store,
                    std::vector<std::string>& changed) {
    if (is_same_file(disk, target, source) &&
        was_changed(disk, target, opened, store.loaded_bytes())) {
        changed.push_back(target);
    }
}

std::vector<std::string> changed_files(Disk& disk, const OpenSet& set, const std::string& output) {
    std::vector<std::string> changed;
    add_if_changed(disk, model_file_name(output), model_file_name(set.base), set.model_file,
                   set.model, changed);
    if (set.frame_changed) {
        add_if_changed(disk, frame_file_name(output), frame_file_name(set.base), set.frame_file,
                       set.frame, changed);
    }
    return changed;
}

bool may_write(const Services& services, const OpenSet& set, const std::string& output) {
    const std::vector<std::string> changed = changed_files(services.disk, set, output);
    if (changed.empty()) {
        return true;
    }
    std::string text = "Another program has changed this since it was opened:\n";
    for (const std::string& path : changed) {
        text += path + "\n";
    }
    return services.reporter.ask(text + "Write over it all the same?", Icon::Exclamation);
}

} // namespace

std::vector<const Replacement*> ordered_replacements(const OpenSet& set) {
    std::vector<const Replacement*> ordered;
    for (const Replacement& replacement : set.replacements) {
        ordered.push_back(&replacement);
    }
    std::stable_sort(ordered.begin(), ordered.end(),
                     [](const auto* a, const auto* b) { return a->before_line < b->before_line; });
    return ordered;
}

void require_code(const OpenSet& set) {
    for (const Replacement& replacement : set.replacements) {
        if (replacement.code.empty()) {
            throw RuntimeError(ErrorNumber::SubscriptOutOfRange,
                               "nothing was generated for the material at line " +
                                   to_text(replacement.before_line) + " of the model file");
        }
    }
}

void write_merged_model(const OpenSet& set, TextWriter& out) {
    require_code(set);
    std::size_t next = 1;
    for (const Replacement* replacement : ordered_replacements(set)) {
        write_lines(out, set.model, next, replacement->before_line - 1);
        for (const std::string& line : replacement->code) {
            out.line(line);
        }
        next = replacement->before_line;
    }
    write_lines(out, set.model, next, set.model.upper());
}

SaveResult save_set(const Services& services, OpenSet& set, const std::string& output) {
    if (is_refused(set, services.reporter)) {
        return {};
    }
    SaveResult result;
    try {
        if (!may_write(services, set, output)) {
            return {};
        }
        const std::vector<FileReplacement> files = replacements(set, output);
        replace_files(services.disk, files);
        for (const FileReplacement& file : files) {
            result.paths.insert(result.paths.begin(), file.path);
        }
    } catch (const RuntimeError& error) {
        report_error(services.reporter, error, "ERROR : ", ": ");
        return {};
    }
    set.saved = true;
    result.saved = true;
    services.reporter.add_message("Done. ");
    services.reporter.message_box("Finished. Use 'bglc /bgl " + file_name_part(output) +
                                      ".asm' to compile.",
                                  Icon::Information);
    return result;
}

void write_traces(Disk& disk, const OpenSet& set, const std::optional<std::string>& folder,
                  bool frame_written) {
    if (!folder) {
        return;
    }
    save_array2file(disk, join_path(*folder, "bgl_code.txt"), set.model);
    replace_file(disk, join_path(*folder, "bgl_new_code.txt"), [&](TextWriter& out) {
        for (const Replacement& replacement : set.replacements) {
            for (const std::string& line : replacement.code) {
                out.line(line);
            }
        }
    });
    if (frame_written) {
        write_frame_trace(disk, set.frame, folder);
    }
}

void write_frame_trace(Disk& disk, const LineStore& frame,
                       const std::optional<std::string>& folder) {
    if (folder) {
        save_array2file(disk, join_path(*folder, "new_azm.txt"), frame);
    }
}

} // namespace morvane
