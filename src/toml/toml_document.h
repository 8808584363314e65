#pragma once

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
};

/// Reads a TOML file of at most 1 MiB. Never throws: a file that cannot be read, is no UTF-8 or no
/// TOML gives an error. `what` names in errors what the file should be, e.g. "recipe".
TomlReading read_toml(Disk& disk, const std::string& path, std::string_view what);

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

/// The value of a key as text in Windows-1252, on one line. Otherwise an error is added and nothing
/// given; so too with the following.
std::optional<std::string> text_value(const TomlEntry& entry, DocumentErrors& errors);
std::optional<bool> flag_value(const TomlEntry& entry, DocumentErrors& errors);
/// A whole number from `least` to `most`.
std::optional<long long> whole_value(const TomlEntry& entry, long long least, long long most,
                                     DocumentErrors& errors);
/// A finite number, whole or with a point.
std::optional<double> number_value(const TomlEntry& entry, DocumentErrors& errors);

/// The text between quotes as TOML writes it, from Windows-1252.
std::string toml_quoted(std::string_view windows1252);

} // namespace morvane
