// SPDX-License-Identifier: BSD-3-Clause
#include "cli/LogOutput.h"

#include "cli/Terminal.h"
#include "logging/QtMessageHandler.h"

#include <iostream>

namespace cli {

namespace {

struct Level {
    const char* prefix;
    Verbosity least;
};

constexpr Level levels[] = {
    {"Error:", Verbosity::Warnings},
    {"Warning:", Verbosity::Warnings},
    {"Info:", Verbosity::Information},
    {"Debug:", Verbosity::Debugging},
};

const QLatin1String warningPrefix("Warning:");

} // namespace

LogOutput::LogOutput(Terminal& terminal, Verbosity verbosity)
    : m_terminal(terminal), m_verbosity(verbosity), m_stream(std::cout, LogMessageType::StdOut) {
    // In the thread that logs, so that no line is pending when the program ends.
    QObject::connect(
        &m_stream, &Logging::ThreadLogStream::sendLogString, &m_stream,
        [this](LogMessageType, const QString& line) { show(line); }, Qt::DirectConnection);
    qInstallMessageHandler(qtMessageHandler);
}

bool LogOutput::isRepeatedWarning(const QString& line) {
    if (!line.startsWith(warningPrefix))
        return false;
    const std::lock_guard lock(m_mutex);
    return !m_warnings.insert(line).second;
}

void LogOutput::show(const QString& line) {
    if (isRepeatedWarning(line))
        return;
    for (const Level& level : levels) {
        const QLatin1String prefix(level.prefix);
        if (!line.startsWith(prefix))
            continue;
        if (m_verbosity >= level.least)
            m_terminal.message(prefix + QLatin1Char(' ') + line.mid(prefix.size()));
        return;
    }
    if (m_verbosity >= Verbosity::Information)
        m_terminal.message(line);
}

LogOutput::~LogOutput() {
    qInstallMessageHandler(nullptr);
}

} // namespace cli
