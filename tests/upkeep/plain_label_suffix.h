// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace morvane::test {

inline bool delimits(const std::string& line, std::size_t at) {
    return at >= line.size() || line[at] == ' ' || line[at] == ',' || line[at] == ';';
}

/// The judge of the fast operation: the plain double loop over labels and lines.
inline std::size_t plain_label_suffix(std::vector<std::string>& lines, const std::string& suffix) {
    std::vector<std::string> labels;
    for (const std::string& line : lines) {
        const std::size_t at = line.find("label");
        if (at != std::string::npos) {
            std::string name = line.substr(0, at);
            while (!name.empty() && name.back() == ' ') {
                name.pop_back();
            }
            name.erase(0, name.find_first_not_of(' ') == std::string::npos
                              ? name.size()
                              : name.find_first_not_of(' '));
            labels.push_back(name);
        }
    }
    for (const std::string& name : labels) {
        for (std::string& line : lines) {
            const std::size_t at = name.empty() ? std::string::npos : line.find(name);
            if (at != std::string::npos && (at == 0 || delimits(line, at - 1)) &&
                delimits(line, at + name.size())) {
                line.insert(at + name.size(), suffix);
            }
        }
    }
    return labels.size();
}

} // namespace morvane::test
