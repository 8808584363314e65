#include "objects/unique_labels.h"

#include "base/text.h"

#include <algorithm>
#include <string_view>

namespace morvane {

namespace {

constexpr std::string_view rest_of_line = "  label BGLCODE";

bool is_closing_label(std::string_view line) {
    return line == "SKIP_FX  label BGLCODE" || line == "SKIP_LIB  label BGLCODE";
}

} // namespace

void number_repeated_label(OpenSet& set, std::size_t row) {
    if (set.generated.empty() || !is_closing_label(set.generated.back().text)) {
        return;
    }
    std::string& last = set.generated.back().text;
    const bool repeated =
        std::any_of(set.generated.begin(), set.generated.end() - 1,
                    [&](const GeneratedRow& other) { return other.text == last; });
    if (repeated) {
        last.insert(last.size() - rest_of_line.size(), to_text(row));
        set.new_code.set_line(set.new_code.base, last);
    }
}

} // namespace morvane
