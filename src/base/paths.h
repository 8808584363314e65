// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace morvane {

/// The path operations take "\" and "/" as separators on every platform.

/// The text before the last separator, without it; empty when there is none.
std::string folder_part(std::string_view path);

/// The text after the last separator; the whole path when there is none.
std::string file_name_part(std::string_view path);

/// The text after the last ".", in upper case; empty when there is none. A dot in a folder's name
/// counts when the file's name has none.
std::string extension_part(std::string_view path);

/// Whether the path ends in `ending` (e.g. ".BGL"), letter case aside.
bool has_ending(std::string_view path, std::string_view ending);

/// `folder` and `name` with the platform's separator between them; `name` alone when the folder is
/// empty.
std::string join_path(std::string_view folder, std::string_view name);

/// Whether the path begins at a root or a drive.
bool is_absolute_path(std::string_view path);

/// Where a path that a file names is, seen from the current folder: paths in a file are relative to
/// the file's own folder. Backslashes separate folders on every platform.
std::string path_beside(std::string_view file, std::string path);

/// The full name of a file, by the current folder when it has none of its own. The file need not be
/// there.
std::string absolute_path(const std::string& path);

/// The full name of a file that is named as seen from `folder`, which is itself a full name;
/// without "." and "..". A path that is full already stays as it is.
std::string absolute_path(const std::string& path, const std::string& folder);

} // namespace morvane
