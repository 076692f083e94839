// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QStringList>

namespace cli {

/// Runs a command line and returns the exit code. \p arguments begin with the program's name.
/// Requires a QCoreApplication.
int runProgram(const QStringList& arguments);

} // namespace cli
