#include "cli/json_text.h"

#include "base/windows1252.h"

#include <iostream>

namespace morvane::cli {

Json json_text(std::string_view bytes) {
    return to_utf8(bytes);
}

Json json_texts(const std::vector<std::string>& lines) {
    Json result = Json::array();
    for (const std::string& line : lines) {
        result.push_back(json_text(line));
    }
    return result;
}

Json json_path(std::string_view path) {
    try {
        Json candidate = std::string(path);
        static_cast<void>(candidate.dump()); // throws unless it is UTF-8
        return candidate;
    } catch (const Json::type_error&) {
        return json_text(path);
    }
}

void print_json(const Json& document) {
    std::cout << document.dump(2) << '\n';
}

} // namespace morvane::cli
