// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Benchmark.h"

namespace cli {

class Keyboard;
class Terminal;

/// Shows each interval: redrawn in place on a terminal, else as lines of a log or of JSON. \p
/// seconds is the whole time, 0 where it is open. Ends the measurement when the output cannot be
/// written.
BenchmarkProgress makeLiveProgress(Terminal& terminal, double seconds, bool wantsJson);

/// Which file of packets was written, or why not; empty where none was.
QString captureText(const QJsonObject& document);

/// Scrolls as the keys say; returns false when one of them is to end the command.
bool obeyKeys(Keyboard& keyboard, Terminal& terminal);

} // namespace cli
