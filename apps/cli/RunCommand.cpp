// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Commands.h"
#include "cli/NamedCamera.h"
#include "cli/NamedFeature.h"

#include <QElapsedTimer>

namespace cli {

namespace {

constexpr NumberRange timeouts{1, 600000, 1000};

Report runRun(Context& context) {
    const QStringList operands = context.arguments.operands();
    const double timeout = context.arguments.number(QStringLiteral("timeout"), timeouts);
    const NamedCamera& camera = context.openCamera(operands.constFirst());
    NamedFeature feature(camera.features(), operands[1]);
    QElapsedTimer timer;
    timer.start();
    if (!feature.run(timeout)) {
        const bool isLate = static_cast<double>(timer.elapsed()) > timeout;
        throw Failure(
            isLate
                ? QStringLiteral("%1 was not done within %2 ms.").arg(feature.name()).arg(timeout)
                : QStringLiteral("%1 was not executed.").arg(feature.name()));
    }
    return {QStringLiteral("%1 done\n").arg(operands[1]),
            {{QStringLiteral("camera"), camera.id()},
             {QStringLiteral("module"), feature.module()},
             {QStringLiteral("name"), feature.name()},
             {QStringLiteral("milliseconds"), timer.elapsed()}}};
}

} // namespace

Command runCommand() {
    Command command;
    command.name = QStringLiteral("run");
    command.summary = QStringLiteral("Execute a command of a camera and wait until it is done.");
    command.operands = QStringLiteral("CAMERA [MODULE:]COMMAND");
    command.fewestOperands = command.mostOperands = 2;
    command.options = {{QStringLiteral("timeout"),
                        QStringLiteral("How long to wait at most, 1000 by default."),
                        QStringLiteral("milliseconds")}};
    command.examples =
        QStringList{QStringLiteral("run GEV-21017 TriggerSoftware"),
                    QStringLiteral("run GEV-21017 Stream0:GVSPAdjustPacketSize --timeout 5000")};
    command.run = runRun;
    return command;
}

} // namespace cli
