// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "logging/ThreadLogStream.h"

#include <QString>

#include <mutex>
#include <set>

namespace cli {

class Terminal;

/// Which log lines are shown; each level includes those before.
enum class Verbosity : int { Nothing = -1, Warnings = 0, Information = 1, Debugging = 2 };

/// Redirects log lines from the standard output stream, which is for results, to messages on the
/// terminal until it is destroyed. Shows warnings of the same text once. Lines may come from any
/// thread.
class LogOutput {
public:
    /// \p terminal must outlive this object.
    LogOutput(Terminal& terminal, Verbosity verbosity);
    ~LogOutput();

    LogOutput(const LogOutput&) = delete;
    LogOutput& operator=(const LogOutput&) = delete;

private:
    bool isRepeatedWarning(const QString& line);
    void show(const QString& line);

    Terminal& m_terminal;
    const Verbosity m_verbosity;
    std::mutex m_mutex;
    /// Those shown. Guarded by m_mutex.
    std::set<QString> m_warnings;
    /// Declared last: its destructor waits for lines that other threads are showing.
    Logging::ThreadLogStream m_stream;
};

} // namespace cli
