// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/topics.h"

#include "base/paths.h"
#include "system/disk.h"
#include "system/file_bytes.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace morvane::cli {

namespace {

constexpr std::string_view chapter_mark = "## ";
constexpr std::string_view title_mark = "# ";
constexpr std::string_view page_ending = ".md";

// "Library objects" is typed as library-objects.
std::string typed(std::string_view title) {
    std::string name;
    for (const char character : title) {
        if (character == ' ') {
            name += '-';
        } else if (std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '-') {
            name += static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
        }
    }
    return name;
}

std::vector<Topic> chapters_of(const std::string& guide) {
    std::vector<Topic> chapters;
    std::istringstream lines(guide);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(chapter_mark)) {
            const std::string title = line.substr(chapter_mark.size());
            chapters.push_back({typed(title), title, {}});
        }
        if (!chapters.empty()) {
            chapters.back().text += line + '\n';
        }
    }
    return chapters;
}

Topic page_topic(const std::string& name, const std::string& text) {
    const std::string first = text.substr(0, text.find('\n'));
    const bool titled = first.starts_with(title_mark);
    return {name, titled ? first.substr(title_mark.size()) : name, text};
}

const Topic* topic_named(const std::vector<Topic>& topics, std::string_view name) {
    const auto found = std::find_if(topics.begin(), topics.end(),
                                    [&](const Topic& topic) { return topic.name == name; });
    return found == topics.end() ? nullptr : &*found;
}

std::string read_page(Disk& disk, const std::string& folder, const std::string& name) {
    return std::string(read_bytes(disk, join_path(folder, name)).view());
}

// "![A runway](runway.png)" and "[recipes](recipes.md)": what is between the brackets.
std::string without_links(std::string_view line) {
    std::string text;
    while (!line.empty()) {
        const std::size_t middle = line.find("](");
        const std::size_t open = line.rfind('[', middle);
        const std::size_t end = line.find(')', middle);
        if (open == std::string_view::npos || end == std::string_view::npos) {
            break;
        }
        const bool picture = open > 0 && line[open - 1] == '!';
        text += line.substr(0, picture ? open - 1 : open);
        text += picture ? "[Picture: " : "";
        text += line.substr(open + 1, middle - open - 1);
        text += picture ? "]" : "";
        line.remove_prefix(end + 1);
    }
    return text.append(line);
}

// What a line of HTML shows: only pictures are written in it.
std::string picture_text(std::string_view line) {
    constexpr std::string_view attribute = "alt=\"";
    const std::size_t begin = line.find(attribute);
    if (begin == std::string_view::npos) {
        return {};
    }
    const std::string_view text = line.substr(begin + attribute.size());
    return "[Picture: " + std::string(text.substr(0, text.find('"'))) + "]\n";
}

bool is_html(std::string_view line) {
    const std::size_t begin = line.find_first_not_of(' ');
    return begin != std::string_view::npos && line[begin] == '<';
}

std::string terminal_line(const std::string& line) {
    if (line.starts_with("    ")) { // code
        return line + '\n';
    }
    return is_html(line) ? picture_text(line) : without_links(line) + '\n';
}

} // namespace

std::vector<Topic> help_topics(Disk& disk, const std::vector<std::string>& folders) {
    const auto folder = std::find_if(folders.begin(), folders.end(), [&](const std::string& path) {
        return disk.is_file(join_path(path, "guide.md"));
    });
    if (folder == folders.end()) {
        return {};
    }
    std::vector<Topic> topics = chapters_of(read_page(disk, *folder, "guide.md"));
    for (const FolderEntry& entry : disk.list_folder(*folder)) {
        if (entry.file && has_ending(entry.name, page_ending) && entry.name != "guide.md") {
            const std::string name = entry.name.substr(0, entry.name.size() - page_ending.size());
            topics.push_back(page_topic(topic_named(topics, name) == nullptr ? name : entry.name,
                                        read_page(disk, *folder, entry.name)));
        }
    }
    return topics;
}

const Topic* find_topic(const std::vector<Topic>& topics, std::string_view name) {
    if (const Topic* topic = topic_named(topics, name)) {
        return topic;
    }
    if (has_ending(name, page_ending)) {
        return topic_named(topics, name.substr(0, name.size() - page_ending.size()));
    }
    const auto similar = [&](const Topic& topic) {
        return topic.name.find(name) != std::string::npos;
    };
    const bool one = std::count_if(topics.begin(), topics.end(), similar) == 1;
    return one ? &*std::find_if(topics.begin(), topics.end(), similar) : nullptr;
}

std::string terminal_text(std::string_view markdown) {
    std::istringstream lines{std::string(markdown)};
    std::string text;
    bool in_code = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("```")) {
            in_code = !in_code;
        } else if (in_code) {
            text += line.empty() ? "\n" : "    " + line + '\n';
        } else {
            text += terminal_line(line);
        }
    }
    return text;
}

} // namespace morvane::cli
