// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Context.h"

#include <QCommandLineOption>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

namespace cli {

/// The result of a command, once as text and once as JSON. The program adds whether the cameras are
/// simulated: to the document, and to the headings of the text.
struct Report {
    QString text;
    QJsonObject document;
    bool isSuccess = true;
    /// Whether the document is one line, the last one of several documents.
    bool isLine = false;
    /// Whether each paragraph of the text begins with a heading.
    bool hasHeadings = false;
};

/// A subcommand of the program.
struct Command {
    QString name;
    /// One or more sentences; the overview shows the first.
    QString summary;
    /// Synopsis of the operands, and how many of them there may be.
    QString operands;
    int fewestOperands = 0;
    int mostOperands = 0;
    QList<QCommandLineOption> options;
    /// Command lines, without the program's name. They run as they are, within seconds.
    QStringList examples;
    /// The report repeats the warnings of the log, so the log is shown with --verbose only.
    bool isQuiet = false;
    /// Null for "help", which an Invocation answers itself.
    Report (*run)(Context& context) = nullptr;
};

} // namespace cli
