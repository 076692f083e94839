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

void show(Terminal& terminal, Verbosity verbosity, const QString& line) {
    for (const Level& level : levels) {
        const QLatin1String prefix(level.prefix);
        if (!line.startsWith(prefix))
            continue;
        if (verbosity >= level.least)
            terminal.message(prefix + QLatin1Char(' ') + line.mid(prefix.size()));
        return;
    }
    if (verbosity >= Verbosity::Information)
        terminal.message(line);
}

} // namespace

LogOutput::LogOutput(Terminal& terminal, Verbosity verbosity)
    : m_stream(std::cout, LogMessageType::StdOut) {
    // In the thread that logs, so that no line is pending when the program ends.
    QObject::connect(
        &m_stream, &Logging::ThreadLogStream::sendLogString, &m_stream,
        [&terminal, verbosity](LogMessageType, const QString& line) {
            show(terminal, verbosity, line);
        },
        Qt::DirectConnection);
    qInstallMessageHandler(qtMessageHandler);
}

LogOutput::~LogOutput() {
    qInstallMessageHandler(nullptr);
}

} // namespace cli
