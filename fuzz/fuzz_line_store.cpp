// SPDX-License-Identifier: GPL-3.0-or-later

// The line store against a plain vector of texts. Sections: operations, file.

#include "base/errors.h"
#include "source/line_store.h"
#include "target.h"

namespace {

using namespace morvane;
using namespace morvane::fuzz;

LineStore store_of(const std::string& text) {
    FileBytes bytes{std::make_unique_for_overwrite<char[]>(text.size()), text.size()};
    text.copy(bytes.data.get(), text.size());
    return LineStore(std::move(bytes));
}

void require_equal(const LineStore& store, const std::vector<std::string>& lines) {
    require(store.upper() == lines.size(), "the number of lines");
    require(store.element0() == std::to_string(lines.size()), "element 0");
    for (std::size_t i = 1; i <= store.upper(); ++i) {
        require(store.line(i) == lines[i - 1], "each line");
    }
}

using Position = std::vector<std::string>::difference_type;

// `lines` holds the spare element too, as its last.
void change(LineStore& store, std::vector<std::string>& lines, unsigned operation,
            std::size_t where) {
    const std::size_t index = 1 + where % store.upper();
    const auto place = lines.begin() + static_cast<Position>(index - 1);
    switch (operation % 5) {
    case 0:
        store.set_line(index, "changed");
        *place = "changed";
        break;
    case 1:
        store.comment_out(index);
        place->insert(0, "; ");
        break;
    case 2:
        store.insert_lines(index, {"one", ""});
        lines.insert(place, {"one", ""});
        break;
    case 3:
        store.append_line("appended");
        lines.insert(lines.end() - 1, "appended");
        break;
    default:
        if (index <= store.count()) {
            store.erase_lines(index, store.count());
            lines.erase(place, lines.end() - 1);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> input = sections(data, size, 2);
    LineStore store = store_of(input[1]);
    std::vector<std::string> lines = lines_of(input[1]);
    require(store.loaded_bytes() == input[1], "the bytes are kept");
    lines.emplace_back();
    require_equal(store, lines);
    const LineStore copy = store;
    const std::vector<std::string> copied = lines;
    for (std::size_t i = 0; i + 1 < input[0].size() && i < 40; i += 2) {
        change(store, lines, static_cast<unsigned char>(input[0][i]),
               static_cast<unsigned char>(input[0][i + 1]));
    }
    require_equal(store, lines);
    require_equal(copy, copied);
    return 0;
}
