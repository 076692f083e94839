// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Program.h"

#include "cli/Invocation.h"
#include "cli/Screen.h"
#include "cli/platform/Interruption.h"

#include <QJsonDocument>

#include <cerrno>
#include <cstring>

namespace cli {

namespace {

void printDocument(Screen& screen, const QJsonObject& document) {
    screen.print(QString::fromUtf8(QJsonDocument(document).toJson()));
}

int run(const Invocation& invocation, Screen& screen) {
    const QString answer = invocation.answer();
    if (!answer.isEmpty()) {
        screen.print(answer);
        return 0;
    }
    const LogOutput log(screen, invocation.verbosity());
    // Until the cameras are closed: one that is not stays taken for some seconds.
    Interruption interruption;
    Context context = invocation.context(screen, interruption);
    const Report report = invocation.run(context);
    if (invocation.wantsJson())
        printDocument(screen, report.document);
    else
        screen.print(report.text);
    return static_cast<int>(report.isSuccess ? ExitCode::Success : ExitCode::Failed);
}

int tell(Screen& screen, const Failure& failure, bool wantsJson) {
    const QString message = QString::fromUtf8(failure.what());
    screen.message(QStringLiteral("spanlet: ") + message);
    if (wantsJson)
        printDocument(screen, {{QStringLiteral("error"), message}});
    if (failure.code() == ExitCode::WrongUse)
        screen.message(QStringLiteral("Try \"spanlet --help\"."));
    return static_cast<int>(failure.code());
}

/// Says why results did not reach the reader, if there still is one.
bool isWritten(Screen& screen) {
    const int error = screen.outputError();
    if (error != 0 && error != EPIPE)
        screen.message(QStringLiteral("spanlet: The output cannot be written: %1.")
                           .arg(QString::fromLocal8Bit(std::strerror(error))));
    return error == 0;
}

} // namespace

int runProgram(const QStringList& arguments) {
    Screen screen;
    int code = 0;
    try {
        code = run(Invocation(arguments), screen);
    } catch (const Failure& failure) {
        code = tell(screen, failure, arguments.contains(QStringLiteral("--json")));
    }
    return code == 0 && !isWritten(screen) ? static_cast<int>(ExitCode::Failed) : code;
}

} // namespace cli
