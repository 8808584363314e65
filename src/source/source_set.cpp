#include "source/source_set.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "source/text_files.h"

#include <algorithm>

namespace morvane {

std::string model_file_name(std::string_view base) {
    return std::string(base) + "_0.asm";
}

std::string frame_file_name(std::string_view base) {
    return std::string(base) + ".asm";
}

int load_source_set(const Services& services, const std::string& base, LineStore& model,
                    LineStore& frame) {
    try {
        const std::size_t sum = load_file2array(services, model_file_name(base), model) +
                                load_file2array(services, frame_file_name(base), frame);
        // The result is a 16-bit integer; callers only ask whether it is 0.
        return static_cast<int>(std::min<std::size_t>(sum, 32767));
    } catch (const RuntimeError&) {
        services.reporter.message_box("Error ! Make sure you do not specify the extension, and "
                                      "both azm and asm files are in the same folder.");
        return 0;
    }
}

} // namespace morvane
