// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace cli {

/// Characters that a terminal shows.
struct ConsoleSize {
    int columns = 80;
    int rows = 24;
};

/// Whether the standard output stream is a terminal that moves its cursor when it is told to.
bool isConsole();
/// Size of that terminal now.
ConsoleSize consoleSize();

} // namespace cli
