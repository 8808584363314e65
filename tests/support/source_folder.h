// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace morvane::test {

/// The folder of this checkout, without a separator at its end.
const std::string& source_folder();

} // namespace morvane::test
