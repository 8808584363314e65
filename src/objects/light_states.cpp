// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/light_states.h"

#include "base/numbers.h"
#include "base/text.h"
#include "objects/model_header.h"

#include <algorithm>

namespace morvane {

namespace {

constexpr double first_offset = 152; // of the first entry in a new dictionary

DictionaryRow light_states_row(double offset) {
    const std::string text = plain_text(offset);
    return {"    dict_g_lightStates equ " + text,
            "    dd 2," + text + ",4, 057F0E99Dh, 04E9C0523h, 0BB12B6BCh, 0063FE72Fh"};
}

} // namespace

bool holds_light_states(const std::vector<DictionaryRow>& dictionary) {
    return std::any_of(dictionary.begin(), dictionary.end(), [](const DictionaryRow& row) {
        return trim(row.equ_line).starts_with("dict_g_lightStates");
    });
}

bool ensure_light_states(const Services& services, OpenSet& set) {
    if (set.dictionary.empty()) {
        set.dictionary = load_ext_parameters(services, set.base);
    }
    set.frame_changed = true;
    if (set.dictionary.empty()) {
        set.dictionary.push_back(light_states_row(first_offset));
        insert_model_header(services.disk, set.frame, set.dictionary);
        return true;
    }
    if (!holds_light_states(set.dictionary)) {
        set.dictionary.push_back(light_states_row(dictionary_size(set.dictionary)));
        update_model_header(services.disk, set.frame, set.dictionary);
        return true;
    }
    return false;
}

} // namespace morvane
