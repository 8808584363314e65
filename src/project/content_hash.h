// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace morvane {

class Disk;

/// A content as 32 hexadecimal digits (XXH3, 128 bits): equal for equal bytes only, as far as any
/// two files of a project are concerned.
std::string content_hash(std::string_view bytes);

/// The same for a file. Throws RuntimeError.
std::string file_hash(Disk& disk, const std::string& path);

} // namespace morvane
