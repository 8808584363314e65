// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/text.h"
#include "problems/set_checks.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace morvane {

namespace {

bool is_word_letter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '@' || c == '?' || c == '$';
}

std::vector<std::string_view> words_of(std::string_view text) {
    std::vector<std::string_view> words;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at;
        while (end < text.size() && is_word_letter(text[end])) {
            ++end;
        }
        if (end > at) {
            words.push_back(text.substr(at, end - at));
        }
        at = end + 1;
    }
    return words;
}

// What all names end in; empty for fewer than two.
std::string_view common_ending(const std::vector<std::string_view>& names) {
    if (names.size() < 2) {
        return {};
    }
    std::string_view ending = names.front();
    for (const std::string_view name : names) {
        while (!name.ends_with(ending)) {
            ending.remove_prefix(1);
        }
    }
    return ending;
}

struct FileNames {
    std::vector<std::string_view> labels;
    // Labels without the ending that all of them have, or the end of that: "wing_left" of
    // "wing_leftG2", though a "wing_rightG2" beside it has the "t" too.
    std::unordered_set<std::string_view> old;
};

void add_old_names(FileNames& file) {
    const std::size_t longest = common_ending(file.labels).size();
    for (const std::string_view label : file.labels) {
        for (std::size_t ending = 1; ending <= longest && ending < label.size(); ++ending) {
            file.old.insert(label.substr(0, label.size() - ending));
        }
    }
}

class RenamingChecker {
  public:
    RenamingChecker(const FlatSource& source, Problems& problems)
        : source_(source), problems_(problems), files_(source.files.size()) {
        for (const Statement& statement : source.statements) {
            if (statement.kind == Statement::Kind::Label) {
                files_[statement.file].labels.push_back(statement.name);
            }
            if (!statement.name.empty()) {
                defined_.insert(statement.name);
            }
        }
        for (FileNames& file : files_) {
            add_old_names(file);
        }
    }

    void check(const Statement& statement) {
        for (const std::string_view word : words_of(statement.rest)) {
            check_word(statement, word);
        }
        if (statement.name.find("label") != std::string_view::npos) {
            report_label_in_name(statement, statement.name);
        }
    }

  private:
    void check_word(const Statement& statement, std::string_view word) {
        if (files_[statement.file].old.contains(word) && !defined_.contains(word)) {
            problems_.push_back(problem_at(
                source_, statement, Severity::Warning, "renamed-label-left",
                std::string(word) + " is the name of a label before it was renamed; give it the "
                                    "same ending here."));
        }
        if (word.find("label") != std::string_view::npos && word != "label") {
            report_label_in_name(statement, word);
        }
    }

    void report_label_in_name(const Statement& statement, std::string_view word) {
        if (reported_.insert(word).second) {
            problems_.push_back(
                problem_at(source_, statement, Severity::Warning, "label-inside-name",
                           "rename-labels and assemble take what is before "
                           "\"label\" in " +
                               std::string(word) + " for a label; rename it by hand before."));
        }
    }

    const FlatSource& source_;
    Problems& problems_;
    std::vector<FileNames> files_;
    std::unordered_set<std::string_view> defined_;
    std::unordered_set<std::string_view> reported_;
};

bool may_hold_names(const Statement& statement) {
    switch (statement.macro) {
    case MacroId::BglLight:
    case MacroId::KzmFx1:
    case MacroId::MaterialDef:
    case MacroId::Material:
    case MacroId::TextureDef:
        return false;
    default:
        return statement.kind == Statement::Kind::Call || !statement.name.empty();
    }
}

} // namespace

void check_renaming(const FlatSource& source, Problems& problems) {
    RenamingChecker checker(source, problems);
    for (const Statement& statement : source.statements) {
        if (may_hold_names(statement)) {
            checker.check(statement);
        }
    }
}

} // namespace morvane
