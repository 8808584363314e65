// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "toml/document_errors.h"

#include <toml++/toml.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

class Disk;

/// A TOML file that was read.
struct TomlDocument {
    std::string file;
    std::string text; // UTF-8
    toml::table table;
};

struct TomlReading {
    std::optional<TomlDocument> document;
    std::vector<std::string> errors;
    std::vector<Note> problems; // the same errors, with their places
};

/// Reads a TOML file of at most 1 MiB. Never throws: a file that cannot be read, is no UTF-8 or no
/// TOML gives an error. `what` names in errors what the file should be, e.g. "recipe".
TomlReading read_toml(Disk& disk, const std::string& path, std::string_view what);

/// The same for a text at hand; `path` names it in errors.
TomlReading parse_toml(const std::string& path, std::string text);

/// One key of a table with its value.
struct TomlEntry {
    std::string_view key;
    const toml::node& value;
    Place key_place;
    Place value_place;
};

/// The entries of a table in no particular order.
std::vector<TomlEntry> entries_of(const toml::table& table);

/// A table of an array of tables, and where it begins.
struct TomlElement {
    const toml::table& table;
    Place place;
};

/// The tables of `[[name]]`, which is all that the document may hold; anything else, and a document
/// without one, is an error.
std::vector<TomlElement> elements_of(const TomlDocument& document, std::string_view name,
                                     DocumentErrors& errors);

/// The tables of an entry that is written `[[key]]`; any other entry is an error.
std::vector<TomlElement> elements_of(const TomlEntry& entry, DocumentErrors& errors);

/// The entries of an entry that is written `[key]`; any other entry is an error.
std::vector<TomlEntry> table_entries(const TomlEntry& entry, DocumentErrors& errors);

/// The values of a list as entries of their own, or the entry itself when it is no list. An empty
/// list is an error.
std::vector<TomlEntry> values_of(const TomlEntry& entry, DocumentErrors& errors);

/// The entry of a key; null when the table has none.
const TomlEntry* find_entry(const std::vector<TomlEntry>& entries, std::string_view key);

/// The value of a key as text in Windows-1252, on one line. Otherwise an error is added and
/// std::nullopt returned; so too with the following.
std::optional<std::string> text_value(const TomlEntry& entry, DocumentErrors& errors);
/// A text on one line as it is in the file (UTF-8): a path or a name that is not written into a
/// source file.
std::optional<std::string> utf8_value(const TomlEntry& entry, DocumentErrors& errors);
std::optional<bool> flag_value(const TomlEntry& entry, DocumentErrors& errors);
/// A whole number from `least` to `most`.
std::optional<long long> whole_value(const TomlEntry& entry, long long least, long long most,
                                     DocumentErrors& errors);
/// A finite number, whole or with a point.
std::optional<double> number_value(const TomlEntry& entry, DocumentErrors& errors);

/// The text between quotes as TOML writes it, from Windows-1252.
std::string toml_quoted(std::string_view windows1252);
std::string toml_quoted_utf8(std::string_view utf8);
/// A list of values that are written as TOML already.
std::string toml_list(const std::vector<std::string>& values);

} // namespace morvane
