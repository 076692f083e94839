// SPDX-License-Identifier: BSD-3-Clause
#include "cli/LogOutput.h"

#include "cli/Screen.h"
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

void show(Screen& screen, Verbosity verbosity, const QString& line) {
    for (const Level& level : levels) {
        const QLatin1String prefix(level.prefix);
        if (!line.startsWith(prefix))
            continue;
        if (verbosity >= level.least)
            screen.message(prefix + QLatin1Char(' ') + line.mid(prefix.size()));
        return;
    }
    if (verbosity >= Verbosity::Information)
        screen.message(line);
}

} // namespace

LogOutput::LogOutput(Screen& screen, Verbosity verbosity)
    : m_stream(std::cout, LogMessageType::StdOut) {
    // In the thread that logs: nothing is to be lost when the program ends.
    QObject::connect(
        &m_stream, &Logging::ThreadLogStream::sendLogString, &m_stream,
        [&screen, verbosity](LogMessageType, const QString& line) {
            show(screen, verbosity, line);
        },
        Qt::DirectConnection);
    qInstallMessageHandler(qtMessageHandler);
}

LogOutput::~LogOutput() {
    qInstallMessageHandler(nullptr);
}

} // namespace cli
