// SPDX-License-Identifier: BSD-3-Clause
#include "cli/CameraLimit.h"
#include "cli/CameraNames.h"
#include "cli/Cameras.h"
#include "cli/Commands.h"
#include "cli/InterfaceDescription.h"
#include "cli/Table.h"

#include <QJsonArray>

namespace cli {

namespace {

QString interfaceText(const QJsonObject& interface) {
    const double others = interface[QStringLiteral("otherBytesPerSecond")].toDouble();
    const QString ofOthers =
        others > 0 ? QStringLiteral(", %1 of it by others").arg(others / 1e6, 0, 'f', 1)
                   : QString();
    const QString heading =
        QStringLiteral("%1 (%2), %3: %4 in use%5\n")
            .arg(interface[QStringLiteral("name")].toString(),
                 interface[QStringLiteral("id")].toString(),
                 interface[QStringLiteral("type")].toString(),
                 usageText(interface[QStringLiteral("bandwidthBytesPerSecond")].toDouble() + others,
                           interface[QStringLiteral("bitsPerSecond")].toDouble()),
                 ofOthers + sharingText(interface));
    return heading +
           joined(tableLines(
               {{QStringLiteral("Camera"), QStringLiteral("id")},
                {QStringLiteral("Name"), QStringLiteral("name")},
                {QStringLiteral("Model"), QStringLiteral("model")},
                {QStringLiteral("Serial"), QStringLiteral("serialNumber")},
                {QStringLiteral("MB/s"), QStringLiteral("bandwidthBytesPerSecond"), 1e6, 1},
                {QStringLiteral("Triggered"), QStringLiteral("triggered")},
                {QStringLiteral("Warning"), QStringLiteral("warning")}},
               withUnlimited(interface[QStringLiteral("cameras")].toArray())));
}

QString namesText(const QJsonObject& interface) {
    return QStringLiteral("%1 (%2)\n")
               .arg(interface[QStringLiteral("name")].toString(),
                    interface[QStringLiteral("id")].toString()) +
           joined(tableLines({{QStringLiteral("Camera"), QStringLiteral("id")},
                              {QStringLiteral("Name"), QStringLiteral("name")},
                              {QStringLiteral("Model"), QStringLiteral("model")},
                              {QStringLiteral("Serial"), QStringLiteral("serialNumber")}},
                             interface[QStringLiteral("cameras")].toArray()));
}

Report makeReport(const QJsonArray& interfaces, QString (*text)(const QJsonObject& interface)) {
    QStringList texts;
    for (const QJsonValue& interface : interfaces)
        texts.append(text(interface.toObject()));
    Report report{texts.join(QLatin1Char('\n')), {{QStringLiteral("interfaces"), interfaces}}};
    report.hasHeadings = !texts.isEmpty();
    if (texts.isEmpty())
        report.text = QStringLiteral("There is no camera.\n");
    return report;
}

Report runList(Context& context) {
    if (context.arguments.has(QStringLiteral("names")))
        return makeReport(context.readNames().interfaces(), namesText);
    Cameras& cameras = context.openCameras();
    cameras.warnOfLimits();
    QJsonArray interfaces;
    for (const HostInterface& interface : cameras.interfaces())
        interfaces.append(describeInterface(cameras, interface));
    return makeReport(interfaces, interfaceText);
}

} // namespace

Command listCommand() {
    Command command;
    command.name = QStringLiteral("list");
    command.summary = QStringLiteral("Show the interfaces of this host and the cameras on them.");
    command.options = {{QStringLiteral("names"),
                        QStringLiteral("IDs, names, models and serial numbers only, without "
                                       "opening the cameras.")}};
    command.examples = QStringList{QStringLiteral("list"), QStringLiteral("list --names"),
                                   QStringLiteral("list --config :oversubscribed --json")};
    command.run = runList;
    return command;
}

} // namespace cli
