// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace morvane::test {

/// Whether a test can make symbolic links. Windows gives that right to administrators, and Wine to
/// nobody.
inline constexpr bool has_symbolic_links =
#ifdef _WIN32
    false;
#else
    true;
#endif

} // namespace morvane::test
