// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/text.h"
#include "problems/assembly_checks.h"
#include "problems/literals.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <unordered_set>

namespace morvane {

namespace {

constexpr std::string_view begin_label = "param_extension_dictionary";
constexpr std::string_view end_label = "param_extension_dictionary_end";
constexpr std::string_view header_label = "visual_model_header";

struct Entry {
    const Statement* equate = nullptr;
    const Statement* data = nullptr;
    std::int64_t offset = 0;
    std::int64_t size = 0;
};

struct Dictionary {
    std::vector<Entry> entries;
    std::unordered_map<std::string_view, const Statement*> labels; // of those above
    const Statement* slot = nullptr;      // the line with the dictionary's offset
    const Statement* size_line = nullptr; // the line before 'F','S','8','0'
    const Statement* used = nullptr;      // the first test of a dict_g_ name
};

bool is_dd(const Statement& statement) {
    return statement.kind == Statement::Kind::Call && statement.macro == MacroId::Dd;
}

// A line of the body between the two labels.
void take_body_line(const Statement& statement, Dictionary& dictionary) {
    if (statement.kind == Statement::Kind::Equate) {
        dictionary.entries.push_back({&statement});
    } else if (is_dd(statement) && !dictionary.entries.empty() &&
               dictionary.entries.back().data == nullptr) {
        const Operands operands(statement.rest);
        Entry& entry = dictionary.entries.back();
        entry.data = &statement;
        entry.offset = whole_number(operands[2]).value_or(-1);
        entry.size = whole_number(operands[3]).value_or(-1);
    }
}

bool is_magic(const Statement& statement) {
    return statement.macro == MacroId::Db && statement.rest.starts_with("'F','S','8','0'");
}

void take_header_line(const Statement& statement, const Statement* before, Dictionary& dictionary) {
    if (is_dd(statement) && statement.rest.starts_with(begin_label) && dictionary.slot == nullptr) {
        dictionary.slot = &statement;
    }
    if (is_magic(statement) && before != nullptr && is_dd(*before)) {
        dictionary.size_line = before;
    }
    const bool tests = statement.macro == MacroId::IfMsk || statement.macro == MacroId::IfIn1;
    if (tests && dictionary.used == nullptr && Operands(statement.rest)[2].starts_with("dict_g_")) {
        dictionary.used = &statement;
    }
}

Dictionary read_dictionary(const FlatSource& source) {
    Dictionary dictionary;
    const Statement* before = nullptr;
    bool inside = false;
    for (const Statement& statement : source.statements) {
        if (statement.kind == Statement::Kind::Label &&
            (statement.name == begin_label || statement.name == end_label ||
             statement.name == header_label)) {
            dictionary.labels.try_emplace(statement.name, &statement);
            inside = statement.name == begin_label;
        } else if (inside) {
            take_body_line(statement, dictionary);
        } else {
            take_header_line(statement, before, dictionary);
        }
        before = &statement;
    }
    return dictionary;
}

void check_labels(const FlatSource& source, const Dictionary& dictionary, Problems& problems) {
    if (dictionary.slot == nullptr) {
        return;
    }
    for (const std::string_view name : {begin_label, end_label, header_label}) {
        if (!dictionary.labels.contains(name)) {
            problems.push_back(problem_at(source, *dictionary.slot, Severity::Error,
                                          "dictionary-label",
                                          "the label " + std::string(name) +
                                              " of the parameter dictionary is missing; take the "
                                              "frame file from a new export."));
        }
    }
}

void check_slot(const FlatSource& source, const Dictionary& dictionary, Problems& problems) {
    if (dictionary.used != nullptr && dictionary.slot == nullptr) {
        problems.push_back(problem_at(
            source, *dictionary.used, Severity::Error, "dictionary-slot",
            "a light switch is tested, but the frame file has no visual model header (no line "
            "\"dd  0\") where the parameter dictionary could go; use the frame file of an aircraft "
            "export."));
    }
}

void check_twice(const FlatSource& source, const Dictionary& dictionary, Problems& problems) {
    std::unordered_set<std::string_view> names;
    for (const Entry& entry : dictionary.entries) {
        if (!names.insert(entry.equate->name).second) {
            problems.push_back(problem_at(source, *entry.equate, Severity::Error,
                                          "dictionary-entry-twice",
                                          std::string(entry.equate->name) +
                                              " is in the parameter dictionary twice; remove this "
                                              "entry."));
        }
    }
}

void check_offset(const FlatSource& source, const Entry& entry, std::optional<std::int64_t> end,
                  Problems& problems) {
    const auto named = whole_number(entry.equate->rest);
    if (named && *named != entry.offset) {
        problems.push_back(problem_at(source, *entry.data, Severity::Warning, "dictionary-offset",
                                      std::string(entry.equate->name) + " is " +
                                          std::to_string(*named) + " but its data line says " +
                                          std::to_string(entry.offset) +
                                          "; write the same offset in both."));
    } else if (end && entry.offset != *end) {
        problems.push_back(problem_at(source, *entry.data, Severity::Warning, "dictionary-offset",
                                      "the entry begins at " + std::to_string(entry.offset) +
                                          " but the one before ends at " + std::to_string(*end) +
                                          "; write that offset."));
    }
}

void check_offsets(const FlatSource& source, const Dictionary& dictionary, Problems& problems) {
    std::optional<std::int64_t> end;
    for (const Entry& entry : dictionary.entries) {
        if (entry.data != nullptr && entry.offset >= 0 && entry.size >= 0) {
            check_offset(source, entry, end, problems);
            end = entry.offset + entry.size;
        }
    }
    if (!end || dictionary.size_line == nullptr) {
        return;
    }
    const auto size = whole_number(dictionary.size_line->rest);
    if (size && *size != *end) {
        problems.push_back(
            problem_at(source, *dictionary.size_line, Severity::Warning, "dictionary-size",
                       "the size " + std::to_string(*size) +
                           " is not where the last entry of the parameter dictionary "
                           "ends; write " +
                           std::to_string(*end) + "."));
    }
}

} // namespace

void check_dictionary(const FlatSource& source, Problems& problems) {
    const Dictionary dictionary = read_dictionary(source);
    check_labels(source, dictionary, problems);
    check_slot(source, dictionary, problems);
    check_twice(source, dictionary, problems);
    check_offsets(source, dictionary, problems);
}

} // namespace morvane
