// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace morvane::test {

/// Runs the command line program; gives its exit status, or -1 when it cannot be run. Its program
/// folder is the one given.
int run_cli(const QString& program_folder, const QStringList& arguments);

} // namespace morvane::test
