// SPDX-License-Identifier: GPL-3.0-or-later

// What goes into the packages beside the programs: file types, versions, notices, documents.

#include "base/version.h"
#include "support/source_folder.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace morvane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

std::string text_of(const std::string& path) {
    return read_file(source_folder() + "/" + path);
}

std::vector<std::string> matches(const std::string& text, const std::string& pattern) {
    const std::regex wanted(pattern);
    std::vector<std::string> found;
    for (std::sregex_iterator i(text.begin(), text.end(), wanted), end; i != end; ++i) {
        found.push_back((*i)[1].str());
    }
    return found;
}

// Every TOML file would open in Morvane otherwise.
TEST(Packages, RecipesHaveAFileTypeOfTheirOwn) {
    EXPECT_THAT(matches(text_of("packaging/linux/morvane.desktop"), "MimeType=(.*)"),
                ElementsAre("application/x-morvane+toml;"));
    const std::string types = text_of("packaging/linux/morvane-mime.xml");
    EXPECT_THAT(matches(types, "<mime-type type=\"([^\"]*)\""),
                ElementsAre("application/x-morvane+toml"));
    EXPECT_THAT(matches(types, "<glob pattern=\"([^\"]*)\""),
                UnorderedElementsAre("*.morvane.toml", "morvane.toml"));
    EXPECT_THAT(matches(types, "value=\"([^\"]*)\""), ElementsAre("# morvane"));
    EXPECT_THAT(text_of("packaging/linux/morvane.metainfo.xml"),
                HasSubstr("<mediatype>application/x-morvane+toml</mediatype>"));
}

TEST(Packages, VersionAndCaptionAreTheSameEverywhere) {
    EXPECT_EQ(version_number, "0.20");
    EXPECT_EQ(version_caption, "v0.20b");
    EXPECT_THAT(text_of("CHANGELOG.md"), HasSubstr("\n## 0.20\n"));
    EXPECT_THAT(matches(text_of("CMakeLists.txt"), "project\\(\\w+ VERSION ([0-9.]+)"),
                ElementsAre("0.20"));
}

TEST(Packages, LicenceAndNoticesAreThere) {
    EXPECT_THAT(text_of("LICENSE"), HasSubstr("GNU GENERAL PUBLIC LICENSE"));
    const std::string copyright = text_of("packaging/linux/copyright");
    EXPECT_THAT(copyright, HasSubstr("License: GPL-3"));
    for (const char* library : {"Qt 6", "toml++", "CLI11", "JSON"}) {
        EXPECT_THAT(text_of("NOTICES.md"), HasSubstr(library));
    }
}

TEST(Packages, ManualPagesNameEachOther) {
    for (const std::string page : {"morvane.1", "morvane-cli.1.in", "morvane-recipe.5"}) {
        const std::string text = text_of("docs/" + page);
        const std::size_t see_also = text.find(".SH SEE ALSO");
        ASSERT_NE(see_also, std::string::npos) << page;
        const std::set<std::string> named = [&] {
            const auto names = matches(text.substr(see_also), "(morvane[a-z\\\\-]*) \\(");
            return std::set<std::string>(names.begin(), names.end());
        }();
        EXPECT_EQ(named.size(), 2U) << page;
    }
}

// The anchor that a heading of a document has.
std::string anchor_of(const std::string& heading) {
    std::string anchor;
    for (const char c : heading) {
        const auto letter = static_cast<unsigned char>(c);
        if (c == ' ') {
            anchor += '-';
        } else if (std::isalnum(letter) != 0 || c == '-' || c == '_' || letter >= 0x80) {
            anchor += static_cast<char>(std::tolower(letter));
        }
    }
    return anchor;
}

// Without what is shown as it stands, where "#" begins a comment.
std::string prose_of(const std::string& document) {
    std::istringstream lines(document);
    std::string prose;
    bool shown_as_is = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.find("```") != std::string::npos) {
            shown_as_is = !shown_as_is;
        } else if (!shown_as_is && !line.starts_with("    ")) {
            prose += line + "\n";
        }
    }
    return prose;
}

bool has_anchor(const fs::path& document, const std::string& anchor) {
    const auto headings = matches("\n" + prose_of(read_file(document.string())), "\n#+ ([^\n]*)");
    return std::any_of(headings.begin(), headings.end(),
                       [&](const std::string& heading) { return anchor_of(heading) == anchor; });
}

bool leads_somewhere(const fs::path& document, const std::string& link) {
    if (link.starts_with("http") || link.starts_with("mailto:")) {
        return true;
    }
    const std::size_t hash = link.find('#');
    const std::string file = link.substr(0, hash);
    const fs::path target = file.empty() ? document : document.parent_path() / file;
    return fs::exists(target) &&
           (hash == std::string::npos || has_anchor(target, link.substr(hash + 1)));
}

std::vector<fs::path> documents_in(const fs::path& folder) {
    std::vector<fs::path> documents;
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == ".md") {
            documents.push_back(entry.path());
        }
    }
    EXPECT_GT(documents.size(), 10U);
    return documents;
}

std::vector<std::string> dead_links(const std::vector<fs::path>& documents) {
    std::vector<std::string> dead;
    for (const fs::path& document : documents) {
        for (const std::string& link :
             matches(prose_of(read_file(document.string())), "\\]\\(([^)\\s]+)\\)")) {
            if (!leads_somewhere(document, link)) {
                dead.push_back(document.filename().string() + ": " + link);
            }
        }
    }
    return dead;
}

TEST(Packages, LinksOfTheDocumentsWork) {
    std::vector<fs::path> documents = documents_in(fs::path(source_folder()) / "docs");
    documents.push_back(fs::path(source_folder()) / "README.md");
    EXPECT_THAT(dead_links(documents), IsEmpty());
}

// There the documents lie side by side.
TEST(Packages, LinksOfTheDocumentsWorkWhereTheyAreInstalled) {
    const TempFolder folder;
    const fs::path source = source_folder();
    fs::copy(source / "docs", folder.path(), fs::copy_options::recursive);
    for (const char* name : {"packaging/index.md", "CHANGELOG.md", "NOTICES.md"}) {
        fs::copy(source / name, folder.path());
    }
    EXPECT_THAT(dead_links(documents_in(folder.path())), IsEmpty());
    EXPECT_THAT(text_of("packaging/Packaging.cmake"),
                HasSubstr("packaging/index.md CHANGELOG.md NOTICES.md DESTINATION"));
}

} // namespace
} // namespace morvane::test
