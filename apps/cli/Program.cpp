// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Program.h"

#include "cli/Invocation.h"
#include "cli/Table.h"
#include "cli/Terminal.h"
#include "cli/platform/Interruption.h"

#include <QJsonDocument>

#include <cerrno>
#include <system_error>

namespace cli {

namespace {

void printDocument(Terminal& terminal, const QJsonObject& document, bool isLine) {
    terminal.print(isLine ? jsonLine(document)
                          : QString::fromUtf8(QJsonDocument(document).toJson()));
}

/// The text with "(simulated)" at the end of the first line of each paragraph.
QString withSimulatedHeadings(const QString& text) {
    QStringList lines = text.split(QLatin1Char('\n'));
    bool isHeading = true;
    for (QString& line : lines) {
        const bool isEmpty = line.isEmpty();
        if (isHeading && !isEmpty)
            line += QStringLiteral(" (simulated)");
        isHeading = isEmpty;
    }
    return lines.join(QLatin1Char('\n'));
}

void print(Terminal& terminal, const Report& report, const Context& context, bool wantsJson) {
    const bool isSimulated = context.areCamerasSimulated();
    QJsonObject document = report.document;
    document[QStringLiteral("simulated")] = isSimulated;
    if (wantsJson)
        printDocument(terminal, document, report.isLine);
    else
        terminal.print(isSimulated && report.hasHeadings ? withSimulatedHeadings(report.text)
                                                         : report.text);
}

int run(const Invocation& invocation, Terminal& terminal) {
    const QString answer = invocation.answer();
    if (!answer.isEmpty()) {
        terminal.print(answer);
        return 0;
    }
    const LogOutput log(terminal, invocation.verbosity());
    // Outlives the context, so that a signal cannot end the program before the cameras are closed:
    // a camera that is not closed stays occupied for some seconds.
    Interruption interruption;
    Context context = invocation.context(terminal, interruption);
    const Report report = invocation.run(context);
    print(terminal, report, context, invocation.wantsJson());
    return static_cast<int>(report.isSuccess ? ExitCode::Success : ExitCode::Failed);
}

int report(Terminal& terminal, const Failure& failure, const QStringList& arguments) {
    const QString message = QString::fromUtf8(failure.what());
    terminal.message(QStringLiteral("spanlet: ") + message);
    // One line, since some commands print a document on each.
    if (arguments.contains(QStringLiteral("--json")))
        printDocument(terminal, {{QStringLiteral("error"), message}}, true);
    if (failure.code() == ExitCode::WrongUse)
        terminal.message(QStringLiteral("Try \"%1\".").arg(Invocation::helpLine(arguments)));
    return static_cast<int>(failure.code());
}

/// Whether all output was written. Reports why not, except for a closed pipe.
bool checkOutput(Terminal& terminal) {
    const int error = terminal.outputError();
    if (error != 0 && error != EPIPE)
        terminal.message(
            QStringLiteral("spanlet: The output cannot be written: %1.")
                .arg(QString::fromLocal8Bit(std::generic_category().message(error).c_str())));
    return error == 0;
}

} // namespace

int runProgram(const QStringList& arguments) {
    Terminal terminal;
    int code = 0;
    try {
        code = run(Invocation(arguments), terminal);
    } catch (const Failure& failure) {
        code = report(terminal, failure, arguments);
    }
    return code == 0 && !checkOutput(terminal) ? static_cast<int>(ExitCode::Failed) : code;
}

} // namespace cli
