// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Program.h"
#include "cli/platform/Console.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    cli::keepStandardStreams();
    const cli::Utf8Console utf8;
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("spanlet"));
    QCoreApplication::setApplicationVersion(QStringLiteral(SPANLET_VERSION));
    return cli::runProgram(QCoreApplication::arguments());
}
