// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Command.h"

#include <QString>

#include <vector>

namespace cli {

/// What the program is for, and its commands.
QString overviewText(const std::vector<Command>& commands);

/// What a command does, its options, which \p parser has, and examples.
QString helpText(const QCommandLineParser& parser, const Command& command);

} // namespace cli
