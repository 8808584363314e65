// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace morvane {

// Source files hold Windows-1252, settings written by hand and JSON hold UTF-8. The five byte
// values that Windows-1252 leaves open (81, 8D, 8F, 90, 9D) stand for the control characters of
// the same number, so that every byte survives the way there and back.

/// Never fails: every byte is a character.
std::string to_utf8(std::string_view windows1252);

/// Nothing when the text is not UTF-8 or holds a character that Windows-1252 lacks.
std::optional<std::string> from_utf8(std::string_view utf8);

/// Text that is typed or named in UTF-8, as source files hold it: in Windows-1252. Bytes that are
/// not UTF-8 (the name of a file from an old disk) are Windows-1252 already and returned as they
/// are. std::nullopt when the text holds a character that Windows-1252 lacks.
std::optional<std::string> source_text(std::string_view text);

/// The message that refuses a text for which source_text returns nothing: `what` names it, e.g.
/// "The suffix".
std::string cannot_be_written(std::string_view what, std::string_view text);

/// The UTF-8 text of bytes that are part UTF-8 (paths), part Windows-1252 (what a file holds):
/// every byte that does not belong to well-formed UTF-8 is taken for Windows-1252.
std::string readable_text(std::string_view bytes);

/// How many bytes from the start on are well-formed UTF-8; the text's size when all are.
std::size_t valid_utf8_length(std::string_view text);

/// The first character of well-formed UTF-8 that Windows-1252 lacks, as it stands in the text;
/// empty when there is none.
std::string_view first_foreign_character(std::string_view utf8);

// Windows takes names of files and arguments of programs in UTF-16; inside the program they are
// UTF-8. Half a surrogate pair, which a file's name there may hold, survives the way there and
// back as three bytes of its own.

/// UTF-16 units of a name in UTF-8. A name that is not UTF-8 (written down by an older program) is
/// taken for Windows-1252.
std::wstring wide_text(std::string_view text);

/// The name in UTF-8.
std::string narrow_text(std::wstring_view units);

} // namespace morvane
