// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Program.h"

#include "cli/Invocation.h"
#include "cli/Terminal.h"
#include "cli/platform/Interruption.h"

#include <QJsonDocument>

#include <cerrno>
#include <cstring>

namespace cli {

namespace {

void printDocument(Terminal& terminal, const QJsonObject& document) {
    terminal.print(QString::fromUtf8(QJsonDocument(document).toJson()));
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
    if (invocation.wantsJson())
        printDocument(terminal, report.document);
    else
        terminal.print(report.text);
    return static_cast<int>(report.isSuccess ? ExitCode::Success : ExitCode::Failed);
}

int report(Terminal& terminal, const Failure& failure, const QStringList& arguments) {
    const QString message = QString::fromUtf8(failure.what());
    terminal.message(QStringLiteral("spanlet: ") + message);
    if (arguments.contains(QStringLiteral("--json")))
        printDocument(terminal, {{QStringLiteral("error"), message}});
    if (failure.code() == ExitCode::WrongUse)
        terminal.message(QStringLiteral("Try \"%1\".").arg(Invocation::helpLine(arguments)));
    return static_cast<int>(failure.code());
}

/// Whether all output was written. Reports why not, except for a closed pipe.
bool checkOutput(Terminal& terminal) {
    const int error = terminal.outputError();
    if (error != 0 && error != EPIPE)
        terminal.message(QStringLiteral("spanlet: The output cannot be written: %1.")
                             .arg(QString::fromLocal8Bit(std::strerror(error))));
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
