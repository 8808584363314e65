// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// A table of a TOML text: the top for no names, `[a.b]` for two, and with a number (from 0) one of
/// the tables `[[a]]`.
struct TomlTable {
    std::vector<std::string> names{};
    std::optional<std::size_t> element{};
};

// These change the text of a TOML document in place: whatever is not named stays byte for byte,
// comments, order and line ends too. Values are texts as TOML writes them. Each throws
// InvalidProcedureCall when the text is not TOML, a table is not there, or the text is written in a
// form that cannot be changed so (tables in a list on one line); the text is UTF-8.

/// Gives a key another value, or adds it after the table's last key. A table `[a.b]` that is
/// missing is put before the first `[[...]]` table.
std::string with_toml_value(const std::string& text, const TomlTable& table, std::string_view key,
                            std::string_view value);

/// Removes a key with its line. A key that is not there is no error.
std::string without_toml_key(const std::string& text, const TomlTable& table, std::string_view key);

/// Adds a table `[[name]]` of these lines as number `position` (from 0).
std::string with_toml_element(const std::string& text, const std::string& name,
                              std::size_t position, const std::vector<std::string>& lines);

/// Removes one of the tables `[[name]]` and the comment directly above it.
std::string without_toml_element(const std::string& text, const std::string& name,
                                 std::size_t position);

} // namespace morvane
