// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "logging/ThreadLogStream.h"

namespace cli {

class Terminal;

/// Which log lines are shown; each level includes those before.
enum class Verbosity : int { Warnings = 0, Information = 1, Debugging = 2 };

/// Redirects log lines from the standard output stream, which is for results, to messages on the
/// terminal until it is destroyed. Lines may come from any thread.
class LogOutput {
public:
    /// \p terminal must outlive this object.
    LogOutput(Terminal& terminal, Verbosity verbosity);
    ~LogOutput();

    LogOutput(const LogOutput&) = delete;
    LogOutput& operator=(const LogOutput&) = delete;

private:
    Logging::ThreadLogStream m_stream;
};

} // namespace cli
