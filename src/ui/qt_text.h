// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string>
#include <string_view>

class QLineEdit;

namespace morvane {

/// Text as operations give it, for showing. Lines of files are Windows-1252, paths are UTF-8, and a
/// message may hold either: what is well-formed UTF-8 is taken as such.
QString shown_text(std::string_view text);

/// A path as the user typed it, for the operations.
std::string path_bytes(const QString& path);

/// Text that goes into generated code: Windows-1252. A character that this lacks becomes "?"; the
/// edit fields that such text is typed into do not let one in.
std::string code_bytes(const QString& text);

/// Text of generated code, for an edit field.
QString code_text(std::string_view windows1252);

/// Keeps characters that Windows-1252 lacks out of an edit field.
void accept_code_text_only(QLineEdit* field);

/// "Notes|*.a?m;*.txt", as the file dialogs' filters are written down, in the form that Qt takes.
QString dialog_filter(const QString& filter);

} // namespace morvane
