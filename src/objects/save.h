// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "source/open_set.h"
#include "system/services.h"

#include <optional>
#include <string>
#include <vector>

namespace morvane {

class TextWriter;
class Disk;

struct SaveResult {
    bool saved = false;
    std::vector<std::string> paths; // files written, the model file first
};

/// The Save command: writes the model file with the generated code merged in, and the frame file
/// when Process changed it, under the base path `output`. Not saved, after a message box: saved
/// before, nothing processed, or a run-time error; both files are then as they were. When a file
/// to be written is one that was opened and another program has changed it since, the user is
/// asked first; not saved when the answer is No.
SaveResult save_set(const Services& services, OpenSet& set, const std::string& output);

/// The replacements in the order in which they are written: by their place in the model store,
/// those of one place in the order of Process.
std::vector<const Replacement*> ordered_replacements(const OpenSet& set);

/// Throws SubscriptOutOfRange when a replacement has no code, which cannot be saved.
void require_code(const OpenSet& set);

/// Writes the model store with each replacement's code at its place. Throws like require_code,
/// besides what writing throws.
void write_merged_model(const OpenSet& set, TextWriter& out);

/// Writes what a Process has made into `folder`, when one is given: "bgl_code.txt" (the whole model
/// store), "bgl_new_code.txt" (the code of all materials in the order of Process) and, when the
/// frame store was rewritten, "new_azm.txt". Throws RuntimeError.
void write_traces(Disk& disk, const OpenSet& set, const std::optional<std::string>& folder,
                  bool frame_written);

/// Writes "new_azm.txt" (the frame store) into `folder`, when one is given. Throws RuntimeError.
void write_frame_trace(Disk& disk, const LineStore& frame,
                       const std::optional<std::string>& folder);

} // namespace morvane
