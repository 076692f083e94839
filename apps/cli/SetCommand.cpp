// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Commands.h"
#include "cli/NamedCamera.h"
#include "cli/NamedFeature.h"

#include <QJsonArray>

#include <vector>

namespace cli {

namespace {

Report runSet(Context& context) {
    const QStringList operands = context.arguments.operands();
    if (operands.size() % 2 == 0)
        throw Failure(QStringLiteral("There is no value for \"%1\".").arg(operands.constLast()),
                      ExitCode::WrongUse);
    const NamedCamera& camera = context.openCamera(operands.constFirst());
    // Checks all names and values before writing any.
    std::vector<NamedFeature> features;
    for (int i = 1; i < operands.size(); i += 2) {
        features.emplace_back(camera.features(), operands[i]);
        features.back().requireNotation(operands[i + 1]);
    }
    Report report;
    QJsonArray rows;
    int operand = 1;
    for (NamedFeature& feature : features) {
        context.checkInterruption();
        feature.write(operands[operand + 1]);
        rows.append(feature.describe());
        report.text += QStringLiteral("%1 = %2\n").arg(operands[operand], feature.valueText());
        operand += 2;
    }
    report.document = {{QStringLiteral("camera"), camera.id()}, {QStringLiteral("features"), rows}};
    return report;
}

} // namespace

Command setCommand() {
    Command command;
    command.name = QStringLiteral("set");
    command.summary = QStringLiteral(
        "Write features and print what the camera reports afterwards. They are written one after "
        "the other until one fails. Integers may be hexadecimal (0x1f).");
    command.operands = QStringLiteral("CAMERA [MODULE:]FEATURE VALUE [[MODULE:]FEATURE VALUE]...");
    command.fewestOperands = 3;
    command.mostOperands = 1001;
    command.examples =
        QStringList{QStringLiteral("set GEV-21017 ExposureTime 8000"),
                    QStringLiteral("set GEV-21017 TriggerMode On TriggerSource Line1")};
    command.run = runSet;
    return command;
}

} // namespace cli
