// SPDX-License-Identifier: GPL-3.0-or-later
#include "recipe/recipe_file.h"

#include "base/paths.h"
#include "base/text.h"
#include "recipe/parameter_keys.h"
#include "source/materials.h"
#include "source/open_set.h"
#include "toml/nearest_key.h"
#include "toml/toml_document.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace morvane {

namespace {

constexpr std::array<std::string_view, 5> common_keys{"highlight", "color", "material", "kind",
                                                      "optional"};
const std::vector<std::string_view> top_keys{"assign",        "include", "macros",
                                             "unique_labels", "allow",   "defaults"};

std::string quoted(std::string_view key) {
    return "\"" + std::string(key) + "\"";
}

bool is_common(std::string_view key) {
    return std::find(common_keys.begin(), common_keys.end(), key) != common_keys.end();
}

std::vector<std::string_view> kind_names() {
    std::vector<std::string_view> names;
    std::transform(all_kinds.begin(), all_kinds.end(), std::back_inserter(names), kind_text);
    return names;
}

std::optional<Kind> read_kind(const TomlElement& element, const std::vector<TomlEntry>& entries,
                              DocumentErrors& errors) {
    const TomlEntry* entry = find_entry(entries, "kind");
    const std::vector<std::string_view> names = kind_names();
    if (entry == nullptr) {
        errors.add(element.place, "\"kind\" is missing" + suggestion("", names));
        return std::nullopt;
    }
    const std::optional<std::string> text = text_value(*entry, errors);
    const std::optional<Kind> kind = text ? kind_from_text(*text) : std::nullopt;
    if (text && !kind) {
        errors.add(entry->value_place, "\"kind\" is no kind of object" + suggestion(*text, names));
    }
    return kind;
}

std::optional<std::string> highlight_value(const TomlEntry& entry, DocumentErrors& errors) {
    std::optional<std::string> text = text_value(entry, errors);
    if (!text) {
        return std::nullopt;
    }
    std::vector<std::string_view> names;
    for (int index = 1; index <= 7; ++index) {
        names.push_back(highlight_color_name(highlight_digits(index)));
    }
    if (std::find(names.begin(), names.end(), *text) == names.end()) {
        errors.add(entry.value_place,
                   "\"highlight\" is none of the seven colours" + suggestion(*text, names));
        return std::nullopt;
    }
    return text;
}

std::optional<std::string> color_value(const TomlEntry& entry, DocumentErrors& errors) {
    const std::optional<std::string> text = text_value(entry, errors);
    if (!text) {
        return std::nullopt;
    }
    if (text->size() != 6 ||
        text->find_first_not_of("0123456789ABCDEFabcdef") != std::string::npos) {
        errors.add(entry.value_place,
                   "\"color\" must be six hexadecimal digits RRGGBB, as in \"FF7F00\"");
        return std::nullopt;
    }
    return upper_case(*text);
}

std::optional<std::size_t> material_value(const TomlEntry& entry, DocumentErrors& errors) {
    constexpr long long most = OpenSet::max_translations;
    const std::optional<long long> number = whole_value(entry, 1, most, errors);
    return number ? std::optional(static_cast<std::size_t>(*number)) : std::nullopt;
}

// The values of a key, each read by `read`; none when the table lacks it.
template <typename Value>
std::vector<Value> read_list(const std::vector<TomlEntry>& entries, std::string_view key,
                             std::optional<Value> (*read)(const TomlEntry&, DocumentErrors&),
                             DocumentErrors& errors) {
    std::vector<Value> list;
    if (const TomlEntry* entry = find_entry(entries, key)) {
        for (const TomlEntry& item : values_of(*entry, errors)) {
            if (const std::optional<Value> value = read(item, errors)) {
                list.push_back(*value);
            }
        }
    }
    return list;
}

std::string unknown_key(std::string_view key, Kind kind, bool selectors) {
    for (const Kind other : all_kinds) {
        if (find_parameter_key(other, key) != nullptr) {
            return quoted(key) + " belongs to the kind " + quoted(kind_text(other)) + ", not to " +
                   quoted(kind_text(kind));
        }
    }
    std::vector<std::string_view> valid;
    if (selectors) {
        valid.assign(common_keys.begin(), common_keys.end());
    }
    for (const ParameterKey& parameter : parameter_keys(kind)) {
        valid.push_back(parameter.name);
    }
    return "unknown key " + quoted(key) + suggestion(key, valid);
}

// False when the value was wrong.
bool read_value(const TomlEntry& entry, const ParameterKey& key, Parameters& values,
                DocumentErrors& errors) {
    if (key.flag != nullptr) {
        const std::optional<bool> flag = flag_value(entry, errors);
        if (flag) {
            key.flag(values) = *flag;
        }
        return flag.has_value();
    }
    const std::optional<std::string> text = text_value(entry, errors);
    if (!text) {
        return false;
    }
    if (const std::string problem = key.problem ? key.problem(*text) : ""; !problem.empty()) {
        errors.add(entry.value_place, quoted(entry.key) + " " + problem);
        return false;
    }
    key.text(values) = *text;
    return true;
}

// `selectors`: whether the table may hold those too.
GivenParameters read_given(const std::vector<TomlEntry>& entries, Kind kind, bool selectors,
                           DocumentErrors& errors) {
    GivenParameters given;
    for (const TomlEntry& entry : entries) {
        if (selectors && is_common(entry.key)) {
            continue;
        }
        if (find_parameter_key(kind, entry.key) == nullptr) {
            errors.add(entry.key_place, unknown_key(entry.key, kind, selectors));
        }
    }
    for (const ParameterKey& key : parameter_keys(kind)) {
        const TomlEntry* entry = find_entry(entries, key.name);
        if (entry != nullptr && read_value(*entry, key, given.values, errors)) {
            given.keys.push_back(key.name);
        }
    }
    return given;
}

WrittenAssignment read_assignment(const TomlElement& element, DocumentErrors& errors) {
    const std::vector<TomlEntry> entries = entries_of(element.table);
    WrittenAssignment written;
    Assignment& what = written.what;
    what.source_line = element.place.line;
    what.highlight = read_list<std::string>(entries, "highlight", highlight_value, errors);
    what.color = read_list<std::string>(entries, "color", color_value, errors);
    what.material = read_list<std::size_t>(entries, "material", material_value, errors);
    if (const TomlEntry* optional = find_entry(entries, "optional")) {
        what.optional = flag_value(*optional, errors).value_or(false);
    }
    if (const std::optional<Kind> kind = read_kind(element, entries, errors)) {
        what.kind = *kind;
        written.given = read_given(entries, *kind, true, errors);
    }
    return written;
}

void read_defaults(const TomlEntry& entry, RecipeFile& file, DocumentErrors& errors) {
    for (const TomlEntry& table : table_entries(entry, errors)) {
        const std::optional<Kind> kind = kind_from_text(table.key);
        if (!kind) {
            errors.add(table.key_place, quoted(table.key) + " is no kind of object" +
                                            suggestion(table.key, kind_names()));
        } else {
            file.defaults_of(*kind) =
                read_given(table_entries(table, errors), *kind, false, errors);
        }
    }
}

void read_macros(const TomlEntry& entry, RecipeFile& file, DocumentErrors& errors) {
    file.macros = text_value(entry, errors);
    if (file.macros && file_name_part(*file.macros).empty()) {
        errors.add(entry.value_place, "\"macros\" must be the name of a file");
    }
}

void read_includes(const TomlEntry& entry, RecipeFile& file, DocumentErrors& errors) {
    for (const TomlEntry& item : values_of(entry, errors)) {
        if (const std::optional<std::string> path = utf8_value(item, errors)) {
            file.includes.push_back({*path, item.value_place.line, item.value_place.column});
        }
    }
}

void read_top_entry(const TomlEntry& entry, RecipeFile& file, DocumentErrors& errors) {
    if (entry.key == "assign") {
        for (const TomlElement& element : elements_of(entry, errors)) {
            file.assignments.push_back(read_assignment(element, errors));
        }
    } else if (entry.key == "include") {
        read_includes(entry, file, errors);
    } else if (entry.key == "macros") {
        read_macros(entry, file, errors);
    } else if (entry.key == "unique_labels") {
        file.unique_labels = flag_value(entry, errors);
    } else if (entry.key == "defaults") {
        read_defaults(entry, file, errors);
    } else if (entry.key != "allow") {
        errors.add(entry.key_place, "unknown key " + quoted(entry.key) + " outside of [[assign]]" +
                                        suggestion(entry.key, top_keys));
    }
}

RecipeFileReading from_document(const TomlReading& reading) {
    if (!reading.document) {
        return {std::nullopt, reading.errors, reading.problems};
    }
    const TomlDocument& document = *reading.document;
    DocumentErrors errors(document.file, document.text);
    RecipeFile file;
    file.path = document.file;
    file.text = document.text;
    const std::vector<TomlEntry> entries = entries_of(document.table);
    for (const TomlEntry& entry : entries) {
        read_top_entry(entry, file, errors);
    }
    file.allow = read_list<std::string>(entries, "allow", utf8_value, errors);
    if (entries.empty()) {
        errors.add({}, "there is no [[assign]] in this file");
    }
    if (!errors.empty()) {
        return {std::nullopt, errors.texts(), errors.problems()};
    }
    return {std::move(file), {}, {}};
}

void copy_value(const ParameterKey& key, Parameters& to, const Parameters& from) {
    Parameters source = from;
    if (key.flag != nullptr) {
        key.flag(to) = key.flag(source);
    } else {
        key.text(to) = key.text(source);
    }
}

bool same_selectors(const Assignment& a, const Assignment& b) {
    return a.highlight == b.highlight && a.color == b.color && a.material == b.material &&
           a.kind == b.kind && a.optional == b.optional;
}

bool same_paths(const std::vector<IncludedFile>& a, const std::vector<IncludedFile>& b) {
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(),
        [](const IncludedFile& x, const IncludedFile& y) { return x.path == y.path; });
}

} // namespace

std::size_t position_of(Kind kind) {
    return static_cast<std::size_t>(std::find(all_kinds.begin(), all_kinds.end(), kind) -
                                    all_kinds.begin());
}

bool GivenParameters::gives(std::string_view key) const {
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

void take_over(Parameters& parameters, const GivenParameters& given, Kind kind) {
    for (const ParameterKey& key : parameter_keys(kind)) {
        if (given.gives(key.name)) {
            copy_value(key, parameters, given.values);
        }
    }
    if (given.gives("LightVariable") && !given.gives("FlashMask")) {
        parameters.lights.FlashMask = flash_mask_of(given.values.lights.LightVariable);
    }
}

GivenParameters& RecipeFile::defaults_of(Kind kind) {
    return defaults.at(position_of(kind));
}

const GivenParameters& RecipeFile::defaults_of(Kind kind) const {
    return defaults.at(position_of(kind));
}

RecipeFileReading read_recipe_file(Disk& disk, const std::string& path) {
    return from_document(read_toml(disk, path, "recipe"));
}

RecipeFileReading parse_recipe_file(const std::string& path, std::string text) {
    return from_document(parse_toml(path, std::move(text)));
}

bool same_given(const GivenParameters& a, const GivenParameters& b, Kind kind) {
    Parameters x = a.values;
    Parameters y = b.values;
    const std::vector<ParameterKey>& keys = parameter_keys(kind);
    return std::all_of(keys.begin(), keys.end(), [&](const ParameterKey& key) {
        if (!a.gives(key.name) || !b.gives(key.name)) {
            return a.gives(key.name) == b.gives(key.name);
        }
        return key.flag != nullptr ? key.flag(x) == key.flag(y) : key.text(x) == key.text(y);
    });
}

bool same_content(const RecipeFile& a, const RecipeFile& b) {
    return same_paths(a.includes, b.includes) && a.macros == b.macros &&
           a.unique_labels == b.unique_labels && a.allow == b.allow &&
           std::all_of(all_kinds.begin(), all_kinds.end(),
                       [&](Kind kind) {
                           return same_given(a.defaults_of(kind), b.defaults_of(kind), kind);
                       }) &&
           std::equal(a.assignments.begin(), a.assignments.end(), b.assignments.begin(),
                      b.assignments.end(),
                      [](const WrittenAssignment& x, const WrittenAssignment& y) {
                          return same_selectors(x.what, y.what) &&
                                 same_given(x.given, y.given, x.what.kind);
                      });
}

} // namespace morvane
