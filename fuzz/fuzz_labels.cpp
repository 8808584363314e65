// SPDX-License-Identifier: GPL-3.0-or-later

// The label suffix against the plain double loop. Sections: suffix, file.

#include "base/errors.h"
#include "target.h"
#include "upkeep/plain_label_suffix.h"
#include "upkeep/rename_labels.h"

using namespace morvane;
using namespace morvane::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> input = sections(data, size, 2);
    const std::string suffix = input[0].substr(0, input[0].find_first_of("\r\n"));
    std::vector<std::string> lines = lines_of(input[1]);
    LineStore store(lines);
    if (collect_labels(store).size() > 50) {
        return 0; // the judge takes its time
    }
    const std::size_t labels = append_label_suffix(store, suffix);
    require(labels == test::plain_label_suffix(lines, suffix), "the number of labels");
    for (std::size_t i = 1; i <= store.count(); ++i) {
        require(store.line(i) == lines[i - 1], "each line as the double loop leaves it");
    }
    require(store.count() == lines.size(), "the number of lines");
    return 0;
}
