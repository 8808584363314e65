// SPDX-License-Identifier: GPL-3.0-or-later
#include "recipe/edit_recipe.h"

#include "base/errors.h"
#include "base/text.h"
#include "recipe/apply_recipe.h"
#include "recipe/parameter_keys.h"
#include "toml/toml_document.h"
#include "toml/toml_edit.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace morvane {

namespace {

/// A key and its value as TOML; without a value the key is to be absent.
struct Setting {
    std::string key;
    std::optional<std::string> value;

    bool operator==(const Setting&) const = default;
};

std::optional<std::string> listed(const std::vector<std::string>& values) {
    if (values.empty()) {
        return std::nullopt;
    }
    return values.size() == 1 ? values.front() : toml_list(values);
}

template <typename Values, typename Quote>
std::vector<std::string> each(const Values& values, Quote quote) {
    std::vector<std::string> result;
    std::transform(values.begin(), values.end(), std::back_inserter(result), quote);
    return result;
}

std::vector<Setting> settings_of(const GivenParameters& given, Kind kind) {
    Parameters values = given.values;
    std::vector<Setting> settings;
    for (const ParameterKey& key : parameter_keys(kind)) {
        Setting setting{std::string(key.name), std::nullopt};
        if (given.gives(key.name)) {
            setting.value = key.flag == nullptr ? toml_quoted(key.text(values))
                            : key.flag(values)  ? "true"
                                                : "false";
        }
        settings.push_back(std::move(setting));
    }
    return settings;
}

std::vector<Setting> settings_of(const WrittenAssignment& written) {
    const Assignment& what = written.what;
    std::vector<Setting> settings{
        {"highlight", listed(each(what.highlight, toml_quoted))},
        {"color", listed(each(what.color, toml_quoted))},
        {"material", listed(each(what.material, to_text))},
        {"optional", what.optional ? std::optional<std::string>("true") : std::nullopt},
        {"kind", toml_quoted(kind_text(what.kind))}};
    const std::vector<Setting> parameters = settings_of(written.given, what.kind);
    settings.insert(settings.end(), parameters.begin(), parameters.end());
    return settings;
}

std::vector<Setting> top_settings(const RecipeFile& file) {
    const auto path = [](const IncludedFile& f) { return toml_quoted_utf8(f.path); };
    Setting unique{"unique_labels", std::nullopt};
    if (file.unique_labels) {
        unique.value = *file.unique_labels ? "true" : "false";
    }
    Setting macros{"macros", std::nullopt};
    if (file.macros) {
        macros.value = toml_quoted(*file.macros);
    }
    Setting allow{"allow", std::nullopt};
    if (!file.allow.empty()) {
        allow.value = toml_list(each(file.allow, toml_quoted_utf8));
    }
    return {{"include", listed(each(file.includes, path))}, macros, unique, allow};
}

// Brings the keys of a table from what they are to what is wanted. What is new comes in beside what
// is there, so nothing is removed before.
void change(std::string& text, const TomlTable& table, const std::vector<Setting>& old,
            const std::vector<Setting>& wanted) {
    for (const Setting& setting : wanted) {
        if (setting.value && std::find(old.begin(), old.end(), setting) == old.end()) {
            text = with_toml_value(text, table, setting.key, *setting.value);
        }
    }
    for (const Setting& setting : old) {
        const bool kept = std::any_of(wanted.begin(), wanted.end(), [&](const Setting& other) {
            return other.key == setting.key && other.value;
        });
        if (setting.value && !kept) {
            text = without_toml_key(text, table, setting.key);
        }
    }
}

std::vector<std::string> lines_of(const WrittenAssignment& written) {
    constexpr std::size_t width = 15;
    std::vector<std::string> lines;
    for (const Setting& setting : settings_of(written)) {
        if (setting.value) {
            std::string line = setting.key;
            line.resize(std::max(width, line.size()), ' ');
            lines.push_back(line + " = " + *setting.value);
        }
    }
    return lines;
}

bool same_selectors(const WrittenAssignment& a, const WrittenAssignment& b) {
    return a.what.highlight == b.what.highlight && a.what.color == b.what.color &&
           a.what.material == b.what.material && a.what.kind == b.what.kind;
}

using Assignments = std::vector<WrittenAssignment>;

// length[i][j]: how many assignments can be kept of those from i and j on.
std::vector<std::vector<std::size_t>> common_lengths(const Assignments& a, const Assignments& b) {
    std::vector<std::vector<std::size_t>> length(a.size() + 1,
                                                 std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = a.size(); i-- > 0;) {
        for (std::size_t j = b.size(); j-- > 0;) {
            length[i][j] = same_selectors(a[i], b[j])
                               ? length[i + 1][j + 1] + 1
                               : std::max(length[i + 1][j], length[i][j + 1]);
        }
    }
    return length;
}

/// Which old assignment becomes which new one; both ascend.
using Pairs = std::vector<std::pair<std::size_t, std::size_t>>;

// Those with equal selectors, and between them the others one by one, so that an assignment whose
// selectors changed keeps its comment.
Pairs pair_up(const Assignments& old, const Assignments& wanted) {
    const auto length = common_lengths(old, wanted);
    Pairs kept;
    for (std::size_t i = 0, j = 0; i < old.size() && j < wanted.size();) {
        if (same_selectors(old[i], wanted[j])) {
            kept.emplace_back(i++, j++);
        } else if (length[i + 1][j] >= length[i][j + 1]) {
            ++i;
        } else {
            ++j;
        }
    }
    kept.emplace_back(old.size(), wanted.size());
    Pairs pairs;
    std::size_t i = 0;
    std::size_t j = 0;
    for (const auto& [next_old, next_wanted] : kept) {
        while (i < next_old && j < next_wanted) {
            pairs.emplace_back(i++, j++);
        }
        pairs.emplace_back(next_old, next_wanted);
        i = next_old + 1;
        j = next_wanted + 1;
    }
    pairs.pop_back(); // the two ends
    return pairs;
}

void change_assignments(std::string& text, const Assignments& old, const Assignments& wanted) {
    const Pairs pairs = pair_up(old, wanted);
    std::size_t at = 0; // number of the table in the text as it is by now
    std::size_t i = 0;
    std::size_t j = 0;
    const auto pass_to = [&](std::size_t next_old, std::size_t next_wanted) {
        for (; i < next_old; ++i) {
            text = without_toml_element(text, "assign", at);
        }
        for (; j < next_wanted; ++j) {
            text = with_toml_element(text, "assign", at++, lines_of(wanted[j]));
        }
    };
    for (const auto& [next_old, next_wanted] : pairs) {
        pass_to(next_old, next_wanted);
        change(text, {{"assign"}, at++}, settings_of(old[i++]), settings_of(wanted[j++]));
    }
    pass_to(old.size(), wanted.size());
}

} // namespace

std::string edit_recipe(const RecipeFile& file, const RecipeFile& wanted) {
    std::string text = file.text;
    change(text, {}, top_settings(file), top_settings(wanted));
    for (const Kind kind : all_kinds) {
        const TomlTable table{{"defaults", std::string(kind_text(kind))}, std::nullopt};
        change(text, table, settings_of(file.defaults_of(kind), kind),
               settings_of(wanted.defaults_of(kind), kind));
    }
    change_assignments(text, file.assignments, wanted.assignments);
    const RecipeFileReading check = parse_recipe_file(file.path, text);
    if (!check.file || !same_content(*check.file, wanted)) {
        throw RuntimeError(ErrorNumber::InvalidProcedureCall,
                           file.path + " is written in a form that cannot be changed in place");
    }
    return text;
}

namespace {

bool same_parameters(Kind kind, const Parameters& a, const Parameters& b) {
    const auto value = [](const ParameterKey& key, Parameters p) {
        return key.flag != nullptr ? std::string(key.flag(p) ? "true" : "false") : key.text(p);
    };
    const std::vector<ParameterKey>& keys = parameter_keys(kind);
    return std::all_of(keys.begin(), keys.end(),
                       [&](const ParameterKey& key) { return value(key, a) == value(key, b); });
}

// Adds the keys without which `base` and what is given would not make the wanted parameters.
void give_missing(GivenParameters& given, const Parameters& base, Kind kind,
                  const Parameters& wanted) {
    for (const ParameterKey& key : parameter_keys(kind)) {
        Parameters result = base;
        take_over(result, given, kind);
        Parameters source = wanted;
        const bool same = key.flag != nullptr ? key.flag(result) == key.flag(source)
                                              : key.text(result) == key.text(source);
        if (same) {
            continue;
        }
        if (key.flag != nullptr) {
            key.flag(given.values) = key.flag(source);
        } else {
            key.text(given.values) = key.text(source);
        }
        if (!given.gives(key.name)) {
            given.keys.push_back(key.name);
        }
    }
}

void turn_into(WrittenAssignment& written, const Recipe& recipe, const MadeMaterial& made) {
    if (written.what.kind != made.kind) {
        written.what.kind = made.kind;
        written.given = {};
    }
    give_missing(written.given, recipe.base_of(made.kind), made.kind, made.parameters);
}

/// One run of with_made: which assignment each made material falls to, and what follows.
class Merging {
  public:
    Merging(const OpenSet& set, const RecipeFile& file, const Recipe& recipe,
            const std::vector<MadeMaterial>& made)
        : set_(set), recipe_(recipe), made_(made), result_{file, {}},
          included_(recipe.assignments.size() - file.assignments.size()),
          before_(file.assignments.size()) {
        for (const PlannedStep& step : plan_all(set, recipe)) {
            rows_[step.assignment].push_back(step.row);
        }
    }

    MadeRecipe run() {
        for (const auto& [assignment, rows] : rows_) {
            merge(assignment, rows);
        }
        for (const MadeMaterial& item : made_) {
            if (!falls_to_any(item.row)) {
                add_own(after_, item);
            }
        }
        put_together();
        return std::move(result_);
    }

  private:
    // What falls to whom in the set as it was opened.
    static std::vector<PlannedStep> plan_all(OpenSet set, const Recipe& recipe) {
        for (Translation& material : set.translations) {
            material.processed.clear();
        }
        return plan_recipe(set, recipe).steps;
    }

    bool falls_to_any(std::size_t row) const {
        return std::any_of(rows_.begin(), rows_.end(), [&](const auto& entry) {
            return std::find(entry.second.begin(), entry.second.end(), row) != entry.second.end();
        });
    }

    bool makes_the_same(const Assignment& assignment, const MadeMaterial& item) const {
        return assignment.kind == item.kind &&
               same_parameters(item.kind, assignment.parameters, item.parameters);
    }

    void merge(std::size_t number, const std::vector<std::size_t>& rows) {
        const Assignment& assignment = recipe_.assignments[number];
        std::vector<MadeMaterial> others;
        for (const MadeMaterial& item : made_) {
            if (std::find(rows.begin(), rows.end(), item.row) != rows.end() &&
                !makes_the_same(assignment, item)) {
                others.push_back(item);
            }
        }
        if (others.empty()) {
            return;
        }
        if (number < included_) {
            refuse(assignment, others);
            return;
        }
        const std::size_t own = number - included_;
        const MadeMaterial& first = others.front();
        const bool alike = std::all_of(others.begin(), others.end(), [&](const MadeMaterial& item) {
            return item.kind == first.kind &&
                   same_parameters(item.kind, item.parameters, first.parameters);
        });
        if (alike && others.size() == rows.size()) {
            turn_into(result_.file.assignments[own], recipe_, first);
            return;
        }
        for (const MadeMaterial& item : others) {
            add_own(before_[own], item);
        }
        if (others.size() == rows.size() && !assignment.optional) {
            dropped_.push_back(own);
        }
    }

    void refuse(const Assignment& assignment, const std::vector<MadeMaterial>& others) {
        for (const MadeMaterial& item : others) {
            result_.problems.push_back({"material " + to_text(item.row) +
                                            " falls to this assignment, which another file "
                                            "includes; change it here",
                                        file_of(recipe_, assignment), assignment.source_line,
                                        Severity::Warning});
        }
    }

    void add_own(Assignments& to, const MadeMaterial& item) {
        WrittenAssignment written;
        written.what = record_recipe(set_, {item}).assignments.front();
        written.what.kind = item.kind;
        give_missing(written.given, recipe_.base_of(item.kind), item.kind, item.parameters);
        // The effect list's first line, which is the default, is another on every machine.
        if (item.kind == Kind::Effects && !written.given.gives("lstEffectType")) {
            written.given.values.effects.lstEffectType = item.parameters.effects.lstEffectType;
            written.given.keys.insert(written.given.keys.begin(), "lstEffectType");
        }
        to.push_back(std::move(written));
    }

    void put_together() {
        Assignments all;
        for (std::size_t i = 0; i < before_.size(); ++i) {
            all.insert(all.end(), before_[i].begin(), before_[i].end());
            if (std::find(dropped_.begin(), dropped_.end(), i) == dropped_.end()) {
                all.push_back(result_.file.assignments[i]);
            }
        }
        all.insert(all.end(), after_.begin(), after_.end());
        result_.file.assignments = std::move(all);
    }

    const OpenSet& set_;
    const Recipe& recipe_;
    const std::vector<MadeMaterial>& made_;
    MadeRecipe result_;
    std::size_t included_; // how many assignments come from other files
    std::vector<Assignments> before_;
    Assignments after_;
    std::vector<std::size_t> dropped_;
    std::map<std::size_t, std::vector<std::size_t>> rows_; // of each assignment
};

} // namespace

MadeRecipe with_made(const OpenSet& set, const RecipeFile& file, const Recipe& recipe,
                     const std::vector<MadeMaterial>& made) {
    return Merging(set, file, recipe, made).run();
}

} // namespace morvane
