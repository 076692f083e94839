// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Command.h"

#include <QString>

#include <vector>

namespace cli {

/// The program's purpose and its commands.
QString overviewText(const std::vector<Command>& commands);

/// A command's purpose, its options (those of \p parser) and examples.
QString helpText(const QCommandLineParser& parser, const Command& command);

} // namespace cli
