// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "logging/ThreadLogStream.h"

namespace cli {

class Screen;

/// Which of the engine's log lines are shown; each includes those before.
enum class Verbosity : int { Warnings = 0, Information = 1, Debugging = 2 };

/// While it lives, log lines become messages on the screen instead of lines on the standard output
/// stream, which is for results. Lines may come from any thread.
class LogOutput {
public:
    /// \p screen must outlive this object.
    LogOutput(Screen& screen, Verbosity verbosity);
    ~LogOutput();

    LogOutput(const LogOutput&) = delete;
    LogOutput& operator=(const LogOutput&) = delete;

private:
    Logging::ThreadLogStream m_stream;
};

} // namespace cli
