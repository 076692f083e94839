// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QStringList>

namespace cli {

/// Does what a command line says and answers the exit code. \p arguments begin with the program's
/// name. Needs an application object.
int runProgram(const QStringList& arguments);

} // namespace cli
