// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Commands.h"
#include "cli/NamedCamera.h"
#include "cli/NamedFeature.h"

#include <QJsonArray>

namespace cli {

namespace {

Report runGet(Context& context) {
    const QStringList operands = context.arguments.operands();
    const NamedCamera& camera = context.openCamera(operands.constFirst());
    Report report;
    QJsonArray rows;
    for (const QString& name : operands.mid(1)) {
        context.checkInterruption();
        const NamedFeature feature(camera.features(), name);
        feature.requireValue();
        rows.append(feature.describe());
        report.text += feature.valueText() + QLatin1Char('\n');
    }
    report.document = {{QStringLiteral("camera"), camera.id()}, {QStringLiteral("features"), rows}};
    return report;
}

} // namespace

Command getCommand() {
    Command command;
    command.name = QStringLiteral("get");
    command.summary = QStringLiteral("Print the values of features, one on each line.");
    command.operands = QStringLiteral("CAMERA [MODULE:]FEATURE...");
    command.fewestOperands = 2;
    command.mostOperands = 1000;
    command.examples = QStringList{QStringLiteral("get GEV-21017 Width Height"),
                                   QStringLiteral("get GEV-21017 Stream0:GVSPDriver")};
    command.run = runGet;
    return command;
}

} // namespace cli
