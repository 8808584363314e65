// SPDX-License-Identifier: GPL-3.0-or-later
#include "source/source_set.h"

#include "base/reporter.h"
#include "source/text_files.h"
#include "system/disk.h"

namespace morvane {

std::string model_file_name(std::string_view base) {
    return std::string(base) + "_0.asm";
}

std::string frame_file_name(std::string_view base) {
    return std::string(base) + ".asm";
}

LoadedSet load_source_set(const Services& services, const std::string& base, LineStore& model,
                          LineStore& frame) {
    const std::string model_name = model_file_name(base);
    const std::string frame_name = frame_file_name(base);
    const LoadedSet loaded{load_file2array(services, model_name, model),
                           load_file2array(services, frame_name, frame)};
    const bool failed = (loaded.model == 0 && services.disk.is_file(model_name)) ||
                        (loaded.frame == 0 && services.disk.is_file(frame_name));
    if (failed) {
        services.reporter.message_box("Error ! Make sure you do not specify the extension, and "
                                      "both azm and asm files are in the same folder.");
        return {};
    }
    return loaded;
}

} // namespace morvane
