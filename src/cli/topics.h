// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace morvane {
class Disk;
}

namespace morvane::cli {

/// What `help` prints besides the help of commands: a chapter of the guide, or another page of the
/// documents.
struct Topic {
    // As it is typed: "library-objects" for a chapter; "recipes" for recipes.md, "aircraft.md" for
    // a page that has the name of a chapter.
    std::string name;
    std::string title;
    std::string text; // Markdown
};

/// The chapters of the guide in their order, then the other pages in the order of their names, from
/// the first of these folders that has a guide. Empty when none has.
std::vector<Topic> help_topics(Disk& disk, const std::vector<std::string>& folders);

/// The topic of that name, else the only one whose name has `name` in it ("export" for
/// "an-export"). The ending ".md" makes it a page. Null when there is none, or more than one.
const Topic* find_topic(const std::vector<Topic>& topics, std::string_view name);

/// Markdown for a terminal: links become their text, pictures what they show, code is indented.
std::string terminal_text(std::string_view markdown);

} // namespace morvane::cli
