#pragma once

#include "source/open_set.h"
#include "system/services.h"

#include <string>
#include <vector>

namespace morvane {

class TextWriter;

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

/// Writes the model store with each record's generated code before its insertion line. The records
/// must be in ascending order. Throws SubscriptOutOfRange for a record without code.
void write_merged_model(const OpenSet& set, TextWriter& out);

/// The lines of a record's generated code. Throws SubscriptOutOfRange when it has none.
std::vector<std::string> generated_lines(const OpenSet& set, const ReplacementRecord& record);

} // namespace morvane
